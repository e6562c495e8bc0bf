#pragma once

// The list of all exported operations, in each form and for each pixel type, for tests that call every one.

#include <cstddef>
#include <fstream>
#include <functional>
#include <regex>
#include <string>
#include <type_traits>

#include "zorvan/ipp.h"

namespace Zorvan::Test {

/// What an operation allocates, besides the text of its exception.
enum class Allocates { nothing, image, workMemory, newImage, maskState, newImageAndMaskState };

/// Calls `use(name, operation, allocates)` for each operation; `operation` is a pointer to the function.
template <class Use>
class ExportedOperations {
 public:
  explicit ExportedOperations(Use use) : use_(use) {}

  void forEach() {
    initializer<u8>("u8");
    initializer<u16>("u16");
    initializer<s16>("s16");
    initializer<int>("int");
    initializer<float>("float");
    convert();
    arithmetic<u8>("u8");
    arithmetic<float>("float");
    logical<u8>("u8");
    logical<float>("float");
    comparer();
    statistic<u8>("u8");
    statistic<u16>("u16");
    statistic<float>("float");
    morphology<u8>("u8");
    morphology<float>("float");
    filtering<u8>("u8");
    filtering<s16>("s16");
    filtering<float>("float");
    computerVision<u8>("u8");
    computerVision<u16>("u16");
    computerVision<int>("int");
    computerVision<float>("float");
  }

 private:
  template <class T>
  using Image = Ipp::Image::IppIMemory<T>;
  using Mask = Image<u8>;
  using Initializer = Ipp::Image::Initializer;
  template <class T>
  using IppIArithmetic = Ipp::Image::IppIArithmetic<T>;
  template <class T>
  using IppILogical = Ipp::Image::IppILogical<T>;
  template <class T>
  using Comparer = Ipp::Image::Comparer<T>;
  template <class T>
  using Statistic = Ipp::Image::Statistic<T>;
  template <class T>
  using IppIMorphology = Ipp::Image::IppIMorphology<T>;
  using FilteringFunction = Ipp::Image::FilteringFunction;
  using ComputerVision = Ipp::Image::ComputerVision;

  /// The name, result and parameters with `type` in place of T.
  static std::string nameOf(const std::string& name, const std::string& signature, const std::string& type) {
    return std::regex_replace(name + ": " + signature, std::regex(R"(\bT\b)"), type);
  }

#define ZORVAN_OPERATION(allocates, Signature, ...)                                                      \
  use_(nameOf(#__VA_ARGS__, #Signature, type), static_cast<std::add_pointer_t<Signature>>(&__VA_ARGS__), \
       Allocates::allocates)

  template <class T>
  void initializer(const char* type) {
    ZORVAN_OPERATION(image, Image<T>(int, int), Initializer::Allocate<T>);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), Initializer::Copy<T>);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&), Initializer::Copy<T>);
    ZORVAN_OPERATION(newImage, Image<T>(Image<T>&, Rect, bool), Initializer::Copy<T>);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Mask&, Rect), Initializer::CopyWithMask<T>);
    ZORVAN_OPERATION(nothing, void(Image<T>&, T, Rect), Initializer::Fill<T>);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Mask&, T, Rect), Initializer::FillWithMask<T>);
  }

  void convert(const char* type = "") {
    ZORVAN_OPERATION(nothing, void(Image<int>&, Image<u8>&, Rect), Initializer::Convert<int, u8>);
    ZORVAN_OPERATION(nothing, void(Image<int>&, Image<float>&, Rect), Initializer::Convert<int, float>);
  }

  template <class T>
  void arithmetic(const char* type) {
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Add);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Add);
    ZORVAN_OPERATION(nothing, void(Image<T>&, T, Rect), IppIArithmetic<T>::AddC);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<float>&, Mask&, Rect), IppIArithmetic<T>::AddWithMask);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Mask&, T, Rect), IppIArithmetic<T>::AddCWithMask);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Subtract);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Subtract);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Multiply);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Multiply);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Divide);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Divide);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Absolute);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Rect), IppIArithmetic<T>::Absolute);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::Square);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Rect), IppIArithmetic<T>::Square);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppIArithmetic<T>::SquareRoot);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Rect), IppIArithmetic<T>::SquareRoot);
  }

  template <class T>
  void logical(const char* type) {
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppILogical<T>::And);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppILogical<T>::And);
    ZORVAN_OPERATION(newImage, Image<T>(Image<T>&, Image<T>&, Rect, bool), IppILogical<T>::And);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppILogical<T>::Or);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppILogical<T>::Or);
    ZORVAN_OPERATION(newImage, Image<T>(Image<T>&, Image<T>&, Rect, bool), IppILogical<T>::Or);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppILogical<T>::Xor);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Image<T>&, Rect), IppILogical<T>::Xor);
    ZORVAN_OPERATION(newImage, Image<T>(Image<T>&, Image<T>&, Rect, bool), IppILogical<T>::Xor);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Rect), IppILogical<T>::Not);
    ZORVAN_OPERATION(nothing, void(Image<T>&, Image<T>&, Rect), IppILogical<T>::Not);
    ZORVAN_OPERATION(newImage, Image<T>(Image<T>&, Rect, bool), IppILogical<T>::Not);
  }

  void comparer(const char* type = "") {
    ZORVAN_OPERATION(nothing, void(Image<float>&, Mask&, Rect, float, eComparison), Comparer<float>::Compare);
  }

  template <class T>
  void statistic(const char* type) {
    ZORVAN_OPERATION(nothing, T(Image<T>&, Rect), Statistic<T>::Min);
    ZORVAN_OPERATION(nothing, T(Image<T>&, Rect), Statistic<T>::Max);
    ZORVAN_OPERATION(nothing, T(Image<T>&, Rect), Statistic<T>::Mean);
    ZORVAN_OPERATION(nothing, T(Image<T>&, Mask&, Rect), Statistic<T>::Mean);
    ZORVAN_OPERATION(nothing, MeanStdDev(Image<T>&, Mask&, Rect),
                     Statistic<T>::MeanAndStandardDeviationWithMask);
    ZORVAN_OPERATION(nothing, MinMaxIndex(Image<T>&, Mask&), Statistic<T>::MinMaxIndexWithMask);
    ZORVAN_OPERATION(nothing, MinMaxIndex(Image<T>&, Mask&, Rect), Statistic<T>::MinMaxIndexWithMask);
  }

  template <class T>
  void morphology(const char* type) {
    ZORVAN_OPERATION(newImageAndMaskState, Image<T>(Image<T>&, Rect, bool, Size), IppIMorphology<T>::Erode);
    ZORVAN_OPERATION(maskState, void(Image<T>&, Image<T>&, Rect, Size), IppIMorphology<T>::Erode);
    ZORVAN_OPERATION(newImageAndMaskState, Image<T>(Image<T>&, Rect, bool, Size), IppIMorphology<T>::Dilate);
    ZORVAN_OPERATION(maskState, void(Image<T>&, Image<T>&, Rect, Size), IppIMorphology<T>::Dilate);
    ZORVAN_OPERATION(newImageAndMaskState, Image<T>(Image<T>&, Rect, bool, Size), IppIMorphology<T>::Open);
    ZORVAN_OPERATION(maskState, void(Image<T>&, Image<T>&, Rect, Size), IppIMorphology<T>::Open);
    ZORVAN_OPERATION(newImageAndMaskState, Image<T>(Image<T>&, Rect, bool, Size), IppIMorphology<T>::Close);
    ZORVAN_OPERATION(maskState, void(Image<T>&, Image<T>&, Rect, Size), IppIMorphology<T>::Close);
  }

  template <class T>
  void filtering(const char* type) {
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, Rect, bool, eBorderType, T),
                     FilteringFunction::LaplaceBorder<T>);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, bool, eBorderType, T),
                     FilteringFunction::LaplaceBorder<T>);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, Rect, eBorderType, T),
                     FilteringFunction::LaplaceBorder3x3<T>);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, eBorderType, T),
                     FilteringFunction::LaplaceBorder3x3<T>);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, Rect, eBorderType, T),
                     FilteringFunction::LaplaceBorder5x5<T>);
    ZORVAN_OPERATION(workMemory, void(Image<T>&, Image<T>&, eBorderType, T),
                     FilteringFunction::LaplaceBorder5x5<T>);
  }

  template <class T>
  void computerVision(const char* type) {
    ZORVAN_OPERATION(workMemory, ConnectionInfo(Image<T>&, Point, T, Rect), ComputerVision::FloodFill<T>);
  }

#undef ZORVAN_OPERATION

  Use use_;
};

/// Calls `use(name, operation, allocates)` for each exported operation.
template <class Use>
void forEachExportedOperation(Use use) {
  ExportedOperations<Use>(use).forEach();
}

/// The number of operations in the list of exported names: a test that calls fewer has missed one.
inline std::size_t countOfExportedOperations() {
  const std::regex operation(
      R"(Image::(Initializer|IppIArithmetic<[a-z ]+>|IppILogical<[a-z ]+>|Comparer<float>|Statistic<[a-z ]+>|)"
      R"(IppIMorphology<[a-z ]+>|FilteringFunction|ComputerVision)::[A-Z])");
  std::ifstream list(ZORVAN_EXPORTED_NAMES);
  std::size_t count = 0;
  for (std::string line; std::getline(list, line);) count += std::regex_search(line, operation);
  return count;
}

}  // namespace Zorvan::Test
