// Catch every failure
//
// Operations raise IppException, with a code at the end of its text. Errors
// have negative codes, warnings positive ones. Containers, and operations that
// allocate, throw other classes derived from std::exception. Before an error or
// the status 29 nothing has been written; before a warning all pixels have.

#include <cstdio>
#include <functional>

#include "recipe.h"
#include "status_code.h"

using namespace Recipes;
using Zorvan::Ipp::IppException;

void report(const char* what, const std::function<void()>& operation) {
  std::printf("%s\n", what);
  try {
    operation();
    std::printf("  done\n");
  } catch (const IppException& raised) {
    const int code = Examples::codeOf(raised);
    const bool written =
        code > 0 && code != Zorvan::Ipp::ippStsWrongIntersectROI;
    std::printf("  %s %d: %s\n", written ? "warning" : "error", code,
                raised.what());
  } catch (const std::exception& failure) {
    std::printf("  no operation: %s\n", failure.what());
  }
}

int main() {
  IppIMemory<u8> picture = coinPicture(), zeros, empty;
  makeConstant<u8>(zeros, picture, 0);
  const IppIMemory<u8> before = picture;  // a copy of the pixels
  const Rect left{0, 0, 120, 160};

  report("a region wider than the image", [&] {
    Initializer::Fill<u8>(picture, 0, {0, 0, 241, 1});
  });
  report("a region without pixels", [&] {
    Initializer::Fill<u8>(picture, 0, {0, 0, 0, 5});
  });
  report("an image without pixels", [&] {
    Initializer::Fill<u8>(empty, 0, {0, 0, 0, 0});
  });
  report("a seed outside the region", [&] {
    ComputerVision::FloodFill<u8>(picture, {130, 5}, 0, left);
  });
  report("a mask that selects nothing",
         [&] { Statistic<u8>::MinMaxIndexWithMask(picture, zeros); });
  report("an image of no extent", [] { IppIMemory<u8> none(0, 5); });
  report("a mask size of zero", [&] {
    IppIMorphology<u8>::Erode(picture, zeros, left, {3, 0});
  });
  report("division by zero, in the left half",
         [&] { IppIArithmetic<u8>::Divide(zeros, picture, left); });

  writePng("before.png", before);
  writePng("after.png", picture);
}
