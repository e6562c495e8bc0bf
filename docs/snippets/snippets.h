#pragma once

// Common to the snippets of the documentation: the examples' helpers, and images with known pixels.

#include <gtest/gtest.h>

#include <vector>

#include "examples/common/region.h"
#include "examples/common/status_code.h"
#include "zorvan/ipp.h"

namespace Snippets {

using namespace Zorvan::Ipp::Image;
using namespace Examples;
using Zorvan::ConnectionInfo;
using Zorvan::Rect;
using Zorvan::u8;
using Zorvan::Ipp::IppException;

/// An image around pixels that outlive it.
template <class T>
IppIMemory<T> wrap(std::vector<T>& pixels, int width, int height) {
  return IppIMemory<T>::CreateContainer(pixels.data(), width, height);
}

template <class T>
std::vector<T> pixelsOf(const IppIMemory<T>& image) {
  const auto buffer = image.buffer();
  return std::vector<T>(buffer.get(), buffer.get() + image.width() * image.height());
}

/// The code of the IppException that `call` raises; 0 if it raises none.
template <class Call>
int raisedCode(Call call) {
  try {
    call();
  } catch (const IppException& exception) {
    return codeOf(exception);
  }
  return 0;
}

}  // namespace Snippets
