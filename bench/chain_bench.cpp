#include "bench/families.h"
#include "bench/plain_arithmetic.h"
#include "bench/plain_initializer.h"
#include "bench/plain_statistic.h"
#include "zorvan/operations/arithmetic/IppIArithmetic.h"
#include "zorvan/operations/initializer/Initializer.h"
#include "zorvan/operations/statistic/Statistic.h"

// Two operations, of which the second reads what the first has just written: the result of streaming stores
// comes from memory again.

namespace Zorvan::Bench {

namespace {

using Ipp::Image::Initializer;
using Ipp::Image::IppIArithmetic;
using Ipp::Image::IppIMemory;
using Ipp::Image::Statistic;

}  // namespace

void addChains(Suite& suite) {
  using Bytes = IppIMemory<u8>;
  using Floats = IppIMemory<float>;
  suite.add<Read<u8>, Write<u8>>(
      "copy_mean", "u8",
      [](Bytes& src, Bytes& dst, Rect rect) {
        Initializer::Copy(src, dst, rect);
        use(Statistic<u8>::Mean(dst, rect));
      },
      [](const u8* src, u8* dst, Size size) {
        Plain::copy(src, dst, size);
        use(Plain::mean(dst, size));
      });
  suite.add<Read<float>, Write<float>>(
      "copy_max", "f32",
      [](Floats& src, Floats& dst, Rect rect) {
        Initializer::Copy(src, dst, rect);
        use(Statistic<float>::Max(dst, rect));
      },
      [](const float* src, float* dst, Size size) {
        Plain::copy(src, dst, size);
        use(Plain::maximum(dst, size));
      });
  suite.add<Read<float>, Read<float>, Write<float>>(
      "add_max", "f32",
      [](Floats& a, Floats& b, Floats& dst, Rect rect) {
        IppIArithmetic<float>::Add(a, b, dst, rect);
        use(Statistic<float>::Max(dst, rect));
      },
      [](const float* a, const float* b, float* dst, Size size) {
        Plain::Arithmetic<float>::add(a, b, dst, size);
        use(Plain::maximum(dst, size));
      });
  suite.add<Read<float>, Write<float>>(
      "abs_max", "f32",
      [](Floats& src, Floats& dst, Rect rect) {
        IppIArithmetic<float>::Absolute(src, dst, rect);
        use(Statistic<float>::Max(dst, rect));
      },
      [](const float* src, float* dst, Size size) {
        Plain::Arithmetic<float>::absolute(src, dst, size);
        use(Plain::maximum(dst, size));
      });
}

}  // namespace Zorvan::Bench
