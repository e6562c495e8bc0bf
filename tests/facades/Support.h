#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <vector>

#include "zorvan/ipp.h"

namespace Zorvan::Test {

using Ipp::IppException;
using Ipp::Image::IppIMemory;

/// The text of the IppException that `call` throws, or a text that states what happened instead.
template <class Call>
std::string ippTextOf(Call call) {
  try {
    call();
  } catch (const IppException& thrown) {
    return thrown.what();
  } catch (const std::exception& thrown) {
    return std::string("a plain exception: ") + thrown.what();
  }
  return "no exception";
}

/// The text of the std::exception, not an IppException, that `call` throws.
template <class Call>
std::string plainTextOf(Call call) {
  try {
    call();
  } catch (const IppException& thrown) {
    return std::string("an IppException: ") + thrown.what();
  } catch (const std::exception& thrown) {
    return thrown.what();
  }
  return "no exception";
}

inline constexpr const char* rectDoesNotFitText =
    "ippStsWrongIntersectROI: ROI has no intersection with the source or destination ROI. No operation( "
    "error "
    "Code : 29 )";
inline constexpr const char* badSizeText = "ippStsSizeErr: Incorrect value for data size( error Code : -6 )";
inline constexpr const char* noBufferText = "ippStsNullPtrErr: Null pointer error( error Code : -8 )";

/// An image around pixels that the test owns, row by row.
template <class T>
IppIMemory<T> wrap(std::vector<T>& pixels, int width, int height) {
  return IppIMemory<T>::CreateContainer(pixels.data(), width, height);
}

/// 0, 1, 2, ... in the pixel type.
template <class T>
std::vector<T> counted(int count) {
  std::vector<T> pixels;
  for (int i = 0; i < count; ++i) pixels.push_back(static_cast<T>(i));
  return pixels;
}

}  // namespace Zorvan::Test
