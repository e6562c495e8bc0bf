#pragma once

// One call of a morphology entry with all its memory: the mask's state and the work memory of exactly the
// reported sizes, the source with exactly the surroundings that the border word declares readable, all
// between unreadable pages.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/reference/Images.h"
#include "tests/support/Comparison.h"
#include "tests/support/Guarded.h"
#include "tests/support/Pixels.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Test {

struct MorphMaskCells {
  Size size;
  std::vector<u8> cells;

  u8& at(int row, int column) { return cells[static_cast<std::size_t>(row * size.width + column)]; }
};

inline MorphMaskCells emptyMask(Size size) {
  return {size, std::vector<u8>(static_cast<std::size_t>(size.width * size.height), 0)};
}
inline MorphMaskCells solidMask(Size size) {
  return {size, std::vector<u8>(static_cast<std::size_t>(size.width * size.height), 1)};
}

struct MorphCase {
  MorphMaskCells mask;
  Size roi;
  int word;
  int gap = 0;  ///< bytes between the readable parts of rows
  Content content = Content::random;
  Placement placement = {Placement::Edge::back, 0};
  std::uint64_t seed = 1;

  std::string text() const {
    std::string cells;
    for (const u8 cell : mask.cells) cells += cell != 0 ? '#' : '.';
    return "mask " + std::to_string(mask.size.width) + " by " + std::to_string(mask.size.height) + " " +
           (cells.size() <= 90 ? cells : "") + ", region " + std::to_string(roi.width) + " by " +
           std::to_string(roi.height) + ", word " + std::to_string(word) + ", gap " + std::to_string(gap) +
           ", placement " + std::to_string(static_cast<int>(placement.edge)) + "+" +
           std::to_string(placement.shift) + ", seed " + std::to_string(seed);
  }
};

/// The entries that prepare the state, by its record and pixel type.
template <class Spec, class T>
struct MorphState;
#define STATE(Spec, T, getSize, init)                                                          \
  template <>                                                                                  \
  struct MorphState<Primitives::Spec, T> {                                                     \
    static int sizes(Size roi, Size mask, int* spec, int* buffer) {                            \
      return Primitives::getSize(roi, mask, spec, buffer);                                     \
    }                                                                                          \
    static int fill(Size roi, const u8* mask, Size size, Primitives::Spec* spec, u8* buffer) { \
      return Primitives::init(roi, mask, size, spec, buffer);                                  \
    }                                                                                          \
  };
STATE(MorphSpec, u8, ippiMorphologyBorderGetSize_8u_C1R, ippiMorphologyBorderInit_8u_C1R)
STATE(MorphSpec, float, ippiMorphologyBorderGetSize_32f_C1R, ippiMorphologyBorderInit_32f_C1R)
STATE(MorphAdvSpec, u8, ippiMorphAdvGetSize_8u_C1R, ippiMorphAdvInit_8u_C1R)
STATE(MorphAdvSpec, float, ippiMorphAdvGetSize_32f_C1R, ippiMorphAdvInit_32f_C1R)
#undef STATE

template <class T, class Spec>
class MorphCall {
 public:
  using Routine = int(const T*, int, T*, int, Size, int, T, const Spec*, u8*);

  explicit MorphCall(const MorphCase& c, T value = T(100))
      : case_(c),
        value_(value),
        sizes_(sizesOf(c)),
        state_(0, specBytes(), c.placement, c.seed),
        source_(1, sourceBytes(), c.placement, c.seed + 1),
        work_(2, workBytes(), c.placement, c.seed + 2) {
    // The rotated mask contains cells after the last one of a mask of even size.
    std::vector<u8> cells = c.mask.cells;
    cells.resize(static_cast<std::size_t>((c.mask.size.width | 1) * (c.mask.size.height | 1)), 0);
    MorphState<Spec, T>::fill(c.roi, cells.data(), c.mask.size, spec(), work_.data());
    std::vector<T> pixels(source_.size() / sizeof(T));
    fillPixels<T>(pixels.data(), pixels.size(), c.content, c.seed + 3);
    for (T& pixel : pixels) {
      if (pixel != pixel) pixel = T(0);  // results of NaN are not specified
    }
    std::memcpy(source_.data(), pixels.data(), pixels.size() * sizeof(T));
  }

  /// The difference between the two routines, empty if there is none. It may also lie in the source or the
  /// mask's state, which no routine writes, or around the work memory.
  std::string compare(Routine* reference, Routine* actual) {
    const int dstStep = case_.roi.width * pixelBytes + case_.gap;
    const auto bytes =
        static_cast<std::size_t>((case_.roi.height - 1) * dstStep + case_.roi.width * pixelBytes);
    const Block expected[] = {Block(3, bytes, case_.placement, case_.seed + 4), copyOf(5, state_, case_.seed),
                              copyOf(6, source_, case_.seed + 1), copyOf(7, work_, case_.seed + 2)};
    Block result[] = {Block(4, bytes, case_.placement, case_.seed + 4), state_, source_, work_};
    const int expectedStatus = run(reference, expected[0], dstStep);
    const std::string difference = differenceOf(
        expectedStatus, [&] { return run(actual, result[0], dstStep); }, expected, result,
        [&](const Block& want, Block& got) {
          if (&want == &expected[0]) agreeOnZeros(want, got, dstStep);
          return &want == &expected[3] ? sameAround(want, got) : want.sameBytes(got);
        });
    return difference.empty() ? "" : difference + "\n" + case_.text();
  }

 private:
  static constexpr int pixelBytes = sizeof(T);
  struct Sizes {
    int spec, buffer;
  };

  static Sizes sizesOf(const MorphCase& c) {
    Sizes sizes{};
    MorphState<Spec, T>::sizes(c.roi, c.mask.size, &sizes.spec, &sizes.buffer);
    return sizes;
  }
  std::size_t specBytes() const { return static_cast<std::size_t>(sizes_.spec); }
  std::size_t workBytes() const { return static_cast<std::size_t>(sizes_.buffer); }

  int reachX() const { return case_.mask.size.width / 2; }
  int reachY() const { return case_.mask.size.height / 2; }
  int left() const { return case_.word & 0x40 ? reachX() : 0; }
  int right() const { return case_.word & 0x80 ? reachX() : 0; }
  int above() const { return case_.word & 0x10 ? reachY() : 0; }
  int below() const { return case_.word & 0x20 ? reachY() : 0; }
  int srcStep() const { return (case_.roi.width + left() + right()) * pixelBytes + case_.gap; }
  std::size_t sourceBytes() const {
    return static_cast<std::size_t>((case_.roi.height + above() + below() - 1) * srcStep() +
                                    (case_.roi.width + left() + right()) * pixelBytes);
  }

  /// With the same bytes around, if `seed` is that of the block.
  Block copyOf(int slot, const Block& block, std::uint64_t seed) const {
    const Block copy(slot, block.size(), case_.placement, seed);
    std::memcpy(copy.data(), block.data(), block.size());
    return copy;
  }

  Spec* spec() const { return reinterpret_cast<Spec*>(state_.data()); }

  int run(Routine* routine, const Block& dst, int dstStep) const {
    const unsigned char* const first = source_.data() + above() * srcStep() + left() * pixelBytes;
    return routine(reinterpret_cast<const T*>(first), srcStep(), reinterpret_cast<T*>(dst.data()), dstStep,
                   case_.roi, case_.word, value_, spec(), work_.data());
  }

  /// Of two zeros of different sign either may be the extreme.
  void agreeOnZeros(const Block& expected, Block& got, int dstStep) const {
    for (int r = 0; r < case_.roi.height; ++r) {
      for (int c = 0; c < case_.roi.width; ++c) {
        auto* const there = reinterpret_cast<T*>(got.data());
        const T wanted = Reference::get(reinterpret_cast<const T*>(expected.data()), dstStep, r, c);
        if (Reference::get<T>(there, dstStep, r, c) == wanted) Reference::put(there, dstStep, r, c, wanted);
      }
    }
  }

  MorphCase case_;
  T value_;
  Sizes sizes_;
  Block state_, source_, work_;
};

}  // namespace Zorvan::Test
