#include "bench/families.h"
#include "bench/plain_logical.h"
#include "zorvan/operations/logical/Comparer.h"
#include "zorvan/operations/logical/IppILogical.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::Comparer;
using Ipp::Image::IppIMemory;
using Logical = Ipp::Image::IppILogical<u8>;
using Image = IppIMemory<u8>;

constexpr float threshold = 120;

void addCompare(Suite& suite, const char* name, eComparison comparison,
                void (*plain)(const float*, u8*, float, Size)) {
  suite.add<Read<float>, Write<u8>>(
      name, "f32_u8",
      [comparison](IppIMemory<float>& src, Image& dst, Rect rect) {
        Comparer<float>::Compare(src, dst, rect, threshold, comparison);
      },
      [plain](const float* src, u8* dst, Size size) { plain(src, dst, threshold, size); });
}

}  // namespace

void addLogical(Suite& suite) {
  suite.add<Read<u8>, Read<u8>, Write<u8>>(
      "and", "u8", [](Image& a, Image& b, Image& dst, Rect rect) { Logical::And(a, b, dst, rect); },
      Plain::bitAnd);
  suite.add<Read<u8>, Read<u8>, Write<u8>>(
      "or", "u8", [](Image& a, Image& b, Image& dst, Rect rect) { Logical::Or(a, b, dst, rect); },
      Plain::bitOr);
  suite.add<Read<u8>, Read<u8>, Write<u8>>(
      "xor", "u8", [](Image& a, Image& b, Image& dst, Rect rect) { Logical::Xor(a, b, dst, rect); },
      Plain::bitXor);
  suite.add<Read<u8>, Write<u8>>(
      "not", "u8", [](Image& src, Image& dst, Rect rect) { Logical::Not(src, dst, rect); }, Plain::bitNot);
  suite.add<Read<u8>, Update<u8>>(
      "and_inplace", "u8", [](Image& src, Image& srcDst, Rect rect) { Logical::And(src, srcDst, rect); },
      Plain::bitAndInPlace);
  suite.add<Update<u8>>(
      "not_inplace", "u8", [](Image& srcDst, Rect rect) { Logical::Not(srcDst, rect); },
      Plain::bitNotInPlace);
  addCompare(suite, "compare_gt", eGreater, Plain::compareGreater);
  addCompare(suite, "compare_lt", eLess, Plain::compareLess);
}

}  // namespace Zorvan::Bench
