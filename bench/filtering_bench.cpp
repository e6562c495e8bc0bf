#include "bench/families.h"
#include "bench/plain_filtering.h"
#include "zorvan/operations/filtering/FilteringFunction.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::FilteringFunction;
using Ipp::Image::IppIMemory;

template <class T>
void addLaplace(Suite& suite, const char* pixels) {
  suite.add<Read<T>, Write<T>>(
      "laplace3x3", pixels,
      [](IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
        FilteringFunction::LaplaceBorder3x3(src, dst, rect, eBorderReplicate, T{0});
      },
      Plain::laplace3x3<T>);
  suite.add<Read<T>, Write<T>>(
      "laplace5x5", pixels,
      [](IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
        FilteringFunction::LaplaceBorder5x5(src, dst, rect, eBorderReplicate, T{0});
      },
      Plain::laplace5x5<T>);
}

}  // namespace

void addFiltering(Suite& suite) {
  addLaplace<u8>(suite, "u8");
  addLaplace<s16>(suite, "s16");
  addLaplace<float>(suite, "f32");
}

}  // namespace Zorvan::Bench
