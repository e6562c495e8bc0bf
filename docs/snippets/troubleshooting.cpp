// The code of docs/troubleshooting.md: each snippet ends with the failure of its section.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "zorvan/ipp.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TROUBLESHOOTING_SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TROUBLESHOOTING_SANITIZED
#endif

namespace {

using namespace Zorvan::Ipp::Image;
using Zorvan::Rect;
using Zorvan::u16;
using Zorvan::u8;
using Zorvan::IppS::IppSMemory;

std::string page() {
  std::ostringstream text;
  text << std::ifstream(TROUBLESHOOTING_PAGE).rdbuf();
  return text.str();
}

template <class Lines>
std::string failureOf(Lines lines) {
  try {
    lines();
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "no failure";
}

void expectOnPage(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_NE(page().find(line), std::string::npos) << "not on the page: " << line;
  }
}

/// The snippet fails with this text, and the page contains the text.
template <class Lines>
void expectFailure(const std::string& text, Lines lines) {
  EXPECT_EQ(failureOf(lines), text);
  expectOnPage(text);
}

TEST(Troubleshooting, WrongIntersectRoi) {
  expectFailure(
      "ippStsWrongIntersectROI: ROI has no intersection with the source or destination ROI. No operation( "
      "error "
      "Code : 29 )",
      [] {
        // snippet
        IppIMemory<u8> image(8, 4);
        const Rect rect{0, 5, 3, 2};  // row 0, column 5: inside, but 5 + 2 exceeds the height
        Initializer::Fill<u8>(image, 7, rect);
        // end of snippet
      });
}

TEST(Troubleshooting, NullPtrErr) {
  expectFailure("ippStsNullPtrErr: Null pointer error( error Code : -8 )", [] {
    // snippet
    IppIMemory<u8> image(1 << 20, 1 << 20);  // a terabyte: no memory, and image.buffer() is null
    Initializer::Fill<u8>(image, 7, {0, 0, 1, 1});
    // end of snippet
  });
}

TEST(Troubleshooting, SizeErr) {
  expectFailure("ippStsSizeErr: Incorrect value for data size( error Code : -6 )", [] {
    // snippet
    IppIMemory<u8> image(8, 4);
    Initializer::Fill<u8>(image, 7, {0, 0, 0, 4});
    // end of snippet
  });
}

TEST(Troubleshooting, StepErr) {
  expectFailure("ippStsStepErr: Step value is not valid( error Code : -16 )", [] {
    // snippet
    u8 pixels[32] = {};
    auto image = IppIMemory<u8>::CreateContainer(pixels, 0, 4);
    IppILogical<u8>::Not(image, image.SizeToRoi());
    // end of snippet
  });
}

TEST(Troubleshooting, OutOfRangeErr) {
  expectFailure(
      "ippStsOutOfRangeErr: Argument is out of range, or point is outside the image( error Code : -11 )", [] {
        // snippet
        IppIMemory<u8> image(8, 4);
        const Zorvan::Point seed{2, 5};  // column 2, row 5
        ComputerVision::FloodFill<u8>(image, seed, 7, image.SizeToRoi());
        // end of snippet
      });
}

TEST(Troubleshooting, DataTypeErr) {
  expectFailure("ippStsDataTypeErr: Data type is incorrect or not supported( error Code : -59 )", [] {
    // snippet
    IppIMemory<float> image(8, 4);
    IppILogical<float>::Not(image, image.SizeToRoi());
    // end of snippet
  });
}

TEST(Troubleshooting, NoOperation) {
  expectFailure("ippStsNoOperation: No operation has been executed( error Code : 1 )", [] {
    // snippet
    IppIMemory<u8> image(8, 4), mask(8, 4);
    Initializer::Fill<u8>(mask, 0, mask.SizeToRoi());
    Statistic<u8>::MinMaxIndexWithMask(image, mask);
    // end of snippet
  });
}

TEST(Troubleshooting, DivByZero) {
  expectFailure("ippStsDivByZero: Zero value(s) for the divisor in the Div function( error Code : 2 )", [] {
    // snippet
    IppIMemory<u8> divisors(8, 4), image(8, 4);
    Initializer::Fill<u8>(divisors, 0, divisors.SizeToRoi());
    IppIArithmetic<u8>::Divide(divisors, image, image.SizeToRoi());  // the first divides the second
    // end of snippet
  });
}

TEST(Troubleshooting, SqrtNegArg) {
  expectFailure("ippStsSqrtNegArg: Negative value(s) for the argument in the Sqrt function( error Code : 3 )",
                [] {
                  // snippet
                  IppIMemory<float> image(8, 4);
                  Initializer::Fill<float>(image, -1, image.SizeToRoi());
                  IppIArithmetic<float>::SquareRoot(image, image.SizeToRoi());
                  // end of snippet
                });
}

TEST(Troubleshooting, InvalidImageSize) {
  expectFailure("invalid image size", [] {
    // snippet
    IppIMemory<u8> empty;
    IppIMemory<u8> copy = empty;
    // end of snippet
  });
}

TEST(Troubleshooting, InvalidLength) {
  expectFailure("invalid length", [] {
    // snippet
    IppIMemory<u8> image(8, 4);
    ComputerVision::FloodFill<u8>(image, {0, 0}, 7, {0, 0, 8, 0});
    // end of snippet
  });
}

TEST(Troubleshooting, MorphBorderGetSizeError) {
  expectFailure("Morph border get size error.", [] {
    // snippet
    IppIMemory<u8> image(8, 4), eroded(8, 4);
    IppIMorphology<u8>::Erode(image, eroded, image.SizeToRoi(), {3, 0});
    // end of snippet
  });
}

TEST(Troubleshooting, AssignError) {
  expectFailure("Assign error in IppIMemory", [] {
    // snippet
    IppIMemory<u16> image(8, 4);
    IppIMemory<u16> copy = image;
    // end of snippet
  });
}

TEST(Troubleshooting, CannotAllocateMemory) {
  expectFailure("Cannot allocate memory.\nNot supported type.\ntype is d", [] {
    // snippet
    IppIMemory<double> image(8, 4);
    // end of snippet
  });
}

TEST(Troubleshooting, NotSupportedType) {
  expectFailure("not supported type", [] {
    // snippet
    IppSMemory<double> buffer(100);
    // end of snippet
  });
}

// Runs in its own process, because it runs out of memory.
TEST(Troubleshooting, MorphBorderInitError) {
#ifdef TROUBLESHOOTING_SANITIZED
  GTEST_SKIP() << "a sanitizer ends programs that run out of memory";
#endif
  const std::string text = "Morph border init error.";
  const auto lines = [] {
    // snippet
    IppIMemory<u8> image(64, 64), opened(64, 64);
    const rlimit noMore{1, 1};
    setrlimit(RLIMIT_AS, &noMore);
    IppIMorphology<u8>::Open(image, opened, image.SizeToRoi(), {4000, 4000});
    // end of snippet
  };
  EXPECT_EXIT(std::exit(failureOf(lines) == text ? 0 : 1), testing::ExitedWithCode(0), "");
  expectOnPage(text);
}

// Runs in its own process, because it uses up the memory.
TEST(Troubleshooting, BadAlloc) {
#ifdef TROUBLESHOOTING_SANITIZED
  GTEST_SKIP() << "a sanitizer ends programs that run out of memory";
#endif
  const std::string text = "std::bad_alloc";
  const auto lines = [] {
    // snippet
    IppIMemory<u8> image(8, 4);
    const rlimit noMore{1, 1};
    setrlimit(RLIMIT_AS, &noMore);
    for (std::size_t bytes = 4096; bytes > 0; --bytes) {
      for (void* volatile block = &image; block != nullptr;) block = std::malloc(bytes);
    }
    Initializer::Fill<u8>(image, 7, {0, 5, 3, 2});  // would throw 29
    // end of snippet
  };
  EXPECT_EXIT(std::exit(failureOf(lines) == text ? 0 : 1), testing::ExitedWithCode(0), "");
  expectOnPage(text);
}

// Problems without an exception.

TEST(Troubleshooting, RegionInAnotherPlace) {
  // snippet
  IppIMemory<u8> image(8, 8);
  Initializer::Fill<u8>(image, 0, image.SizeToRoi());
  Initializer::Fill<u8>(image, 7, {1, 5, 1, 1});  // row 1, column 5: image.buffer()[1 * 8 + 5]
  // end of snippet
  EXPECT_EQ(image.buffer()[13], 7);
}

TEST(Troubleshooting, DifferencesOfZero) {
  // snippet
  IppIMemory<u8> dark(8, 4), bright(8, 4);
  Initializer::Fill<u8>(dark, 20, dark.SizeToRoi());
  Initializer::Fill<u8>(bright, 50, bright.SizeToRoi());
  IppIArithmetic<u8>::Subtract(dark, bright, dark.SizeToRoi());  // bright - dark, into bright
  // end of snippet
  EXPECT_EQ(bright.buffer()[0], 30);
}

TEST(Troubleshooting, PixelsThatChange) {
  // snippet
  IppIMemory<u8> image(8, 4), shared;
  shared = image;                // the same pixels
  IppIMemory<u8> copy = shared;  // its own pixels
  // end of snippet
  EXPECT_EQ(shared.buffer(), image.buffer());
  EXPECT_NE(copy.buffer(), image.buffer());
}

TEST(Troubleshooting, ThresholdsBeyondBytes) {
  IppIMemory<u8> mask(8, 4);
  // snippet
  IppIMemory<float> image(8, 4);
  Initializer::Fill<float>(image, 260, image.SizeToRoi());
  Comparer<float>::Compare(image, mask, image.SizeToRoi(), 300, Zorvan::eGreater);  // compares with 44
  // end of snippet
  EXPECT_EQ(mask.buffer()[0], 255);
}

}  // namespace
