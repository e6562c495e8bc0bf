#include <cstring>
#include <vector>

#include "tests/support/EntryTests.h"

// Plain copies. Besides the cases of all entries: places and sizes that reach every form of a copy, with the
// answer about the cache forced, so that small images stream.

namespace Zorvan::Test {
namespace {

template <class T>
using CopyRoutine = int(const T*, int, T*, int, Size);

/// Rows of bytes, and the place in a page where each image begins.
struct Place {
  int rowBytes, rows;
  int srcStep, dstStep;
  int srcAt = 0, dstAt = 0;

  std::int64_t srcSpan() const { return std::int64_t{rows - 1} * std::abs(srcStep) + rowBytes; }
  std::int64_t dstSpan() const { return std::int64_t{rows - 1} * std::abs(dstStep) + rowBytes; }
};

constexpr int watchedBytes = 128;  // bytes around the destination

class CopyForms {
 public:
  explicit CopyForms(int variant) : variant_(variant), src_(arenaBytes), dst_(arenaBytes) {
    Random random(options().seed);
    for (unsigned char* p = src_.begin(); p + 8 <= src_.end(); p += 8) {
      const std::uint64_t bits = random.next();
      std::memcpy(p, &bits, 8);
    }
  }

  void all() {
    using Primitives::table;
    const ForcedCache tiny(1);
    formsOf(table.ippiCopy_8u_C1R.routine[1 + variant_]);
    formsOf(table.ippiCopy_16s_C1R.routine[1 + variant_]);
    formsOf(table.ippiCopy_32s_C1R.routine[1 + variant_]);
    const ForcedCache unknown(0, 0, 37);
    runs(table.ippiCopy_8u_C1R.routine[1 + variant_]);
    rowsWithGaps(table.ippiCopy_8u_C1R.routine[1 + variant_]);
    if (isFull()) endlessRows(table.ippiCopy_8u_C1R.routine[1 + variant_]);
  }

 private:
  static constexpr std::size_t arenaBytes = 6 << 20;

  static bool isFull() { return options().level == Level::full; }
  static bool isFew() { return options().level == Level::few; }

  template <class T>
  void formsOf(CopyRoutine<T>* copy) {
    narrowRows(copy);
    deltas(copy);
    runs(copy);
    rowsWithGaps(copy);
    inPlace(copy);
  }

  /// All classes of narrow rows, and their neighbours.
  template <class T>
  void narrowRows(CopyRoutine<T>* copy) {
    for (int bytes = sizeof(T); bytes <= 700; bytes += sizeof(T)) {
      check(copy, {bytes, 3, bytes + 5, bytes + 32, bytes % 37, bytes % 71});
      check(copy, {bytes, 3, -bytes - 3, bytes + 1, 0, 0});
      check(copy, {bytes, 3, bytes, -bytes - 9, 0, 33});
      check(copy, {bytes, 3, 0, bytes + 64, 0, 64});
      check(copy, {bytes, 3, bytes, 0, 1, 32});
    }
  }

  /// The destination after the source by up to a little more than the distance that makes a copy go backward.
  template <class T>
  void deltas(CopyRoutine<T>* copy) {
    for (int delta = 0; delta <= 164; ++delta) {
      const bool atLimit = delta % 32 <= 1 || delta % 32 == 31;
      if (!atLimit && !isFull()) continue;
      for (const int dstAt : {192, 224, 201}) {
        check(copy, {512, 4, 576, 576, dstAt - delta, dstAt});
        check(copy, {544, 4, 608, 608, dstAt - delta, dstAt});
        check(copy, {544, 4, 576, 608, dstAt - delta, dstAt});
        check(copy, {544, 4, 544, 0, dstAt - delta, dstAt});
        check(copy, {544, 4, -576, -576, dstAt - delta, dstAt});
        check(copy, {32768 + dstAt % 64 * 4, 1, 0, 0, dstAt - delta, dstAt});
        check(copy, {4096, 9, 4096, 4096, dstAt - delta, dstAt});
      }
    }
  }

  /// Images without gaps around every limit on their total.
  template <class T>
  void runs(CopyRoutine<T>* copy) {
    constexpr int pixel = sizeof(T);
    for (const int limit : {0x8000, 0x20000, 0x100000, 0x200000, 0x300000, 0x400000}) {
      if (limit > 0x100000 && isFew()) continue;
      for (const int bytes : {limit - pixel, limit, limit + pixel}) {
        for (const int at : {0, 1, 63}) {
          if (at == 1 || isFull()) check(copy, {bytes, 1, bytes, bytes, 64 - at, at});
        }
      }
      check(copy, {1024, limit / 1024 + 1, 1024, 1024, 0, 2048});
    }
    check(copy, {4 * pixel, 32768, 4 * pixel, 4 * pixel, 0, 3});
    check(copy, {32 * pixel, 32769, 32 * pixel, 32 * pixel, 16, 3});
  }

  /// Images with gaps that are large enough to stream: every end of a row, at various places.
  template <class T>
  void rowsWithGaps(CopyRoutine<T>* copy) {
    constexpr int pixel = sizeof(T);
    for (const int total : {0x20000, 0x100000, 0x380000}) {
      if (total == 0x100000 && !isFull()) continue;
      if (total > 0x20000 && isFew()) continue;
      for (const int extra : {0, pixel, 16, 32, 48, 64, 96, 124}) {
        if (extra % 48 == 0 && extra != 0 && !isFull()) continue;
        const int bytes = 1024 + extra;
        check(copy, {bytes, total / 1024 + 1, bytes + 64, 1152, extra, 2048});
        check(copy, {bytes, total / 1024 + 1, bytes + 3, 1153, 0, extra});
        check(copy, {bytes, total / 1024 + 1, 1152, 1152, 64, 64});
        check(copy, {bytes, total / 1024 + 1, 1152, 1184, 64, 32});
        check(copy, {bytes, total / 1024 + 1, 1152, -1216, 65, 64});
      }
      check(copy, {68, total / 68 + 1, 72, 96, 0, 61});
      check(copy, {128, total / 128 + 1, 129, 132, 1, 32});
      check(copy, {4096, total / 4096 + 1, 0, 0, 0, 63});
    }
  }

  /// An image copied onto itself stays as it is.
  template <class T>
  void inPlace(CopyRoutine<T>* copy) {
    for (const int bytes : {4, 60, 100, 508, 544, 4096, 40004, 0x480004}) {
      for (const int rows : {1, 5}) {
        if (std::int64_t{bytes} * rows > (isFew() ? 1 << 20 : 5 << 20)) continue;
        for (const int gap : {0, 32}) {
          unsigned char* const first = src_.begin() + 32;
          const std::vector<unsigned char> before(first, first + std::int64_t{bytes + gap} * rows);
          const Size roi{bytes / static_cast<int>(sizeof(T)), rows};
          auto* const pixels = reinterpret_cast<T*>(first);
          EXPECT_EQ(copy(pixels, bytes + gap, pixels, bytes + gap, roi), 0);
          EXPECT_EQ(std::memcmp(before.data(), first, before.size()), 0) << bytes << " x " << rows;
        }
      }
    }
  }

  /// More than 2 GiB in total, in rows that lie on one another.
  void endlessRows(CopyRoutine<u8>* copy) {
    check(copy, {40, 53687093, 0, 0, 3, 3});  // rows that end before a boundary
    check(copy, {1 << 20, 2049, 0, 0, 0, 0});
    check(copy, {(1 << 20) + 7, 2049, 0, 0, 3, 5});
  }

  /// Once at the given place, once with both images directly before unreadable pages.
  template <class T>
  void check(CopyRoutine<T>* copy, const Place& place) {
    ASSERT_LE(place.srcAt + place.srcSpan(), std::int64_t{arenaBytes});
    ASSERT_LE(place.dstAt + place.dstSpan(), std::int64_t{arenaBytes});
    if (::testing::Test::HasFailure()) return;
    checkAt(copy, place, src_.begin() + place.srcAt, dst_.begin() + place.dstAt);
    checkAt(copy, place, src_.end() - place.srcSpan(), dst_.end() - place.dstSpan());
  }

  template <class T>
  void checkAt(CopyRoutine<T>* copy, const Place& place, const unsigned char* src, unsigned char* dst) {
    unsigned char* const begin = std::max(dst_.begin(), dst - watchedBytes);
    unsigned char* const end = std::min(dst_.end(), dst + place.dstSpan() + watchedBytes);
    std::memset(begin, 0x5A, static_cast<std::size_t>(end - begin));
    expected_.assign(static_cast<std::size_t>(end - begin), 0x5A);

    if (place.srcStep < 0) src += place.srcSpan() - place.rowBytes;
    if (place.dstStep < 0) dst += place.dstSpan() - place.rowBytes;
    for (std::int64_t r = 0; r < place.rows; ++r) {
      std::memcpy(expected_.data() + (dst - begin) + r * place.dstStep, src + r * place.srcStep,
                  static_cast<std::size_t>(place.rowBytes));
    }
    const Size roi{place.rowBytes / static_cast<int>(sizeof(T)), place.rows};
    int status = -1;
    const std::string fault = faultOf([&] {
      status =
          copy(reinterpret_cast<const T*>(src), place.srcStep, reinterpret_cast<T*>(dst), place.dstStep, roi);
    });
    const bool same = std::memcmp(expected_.data(), begin, expected_.size()) == 0;
    EXPECT_TRUE(fault.empty() && status == 0 && same)
        << fault << " status " << status << (same ? "" : ", other bytes") << "\n  " << place.rows
        << " rows of " << place.rowBytes << " bytes, steps " << place.srcStep << " and " << place.dstStep
        << ", places in the page " << reinterpret_cast<std::uintptr_t>(src) % 4096 << " and "
        << reinterpret_cast<std::uintptr_t>(dst) % 4096 << ", pixels of " << sizeof(T) << " bytes";
  }

  int variant_;
  Arena src_, dst_;
  std::vector<unsigned char> expected_;
};

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {192, 320, 384, 448, 512, 1024};
  rules.largeRegions = {{32768, 1}, {509, 131}, {1031, 509}, {4099, 1601}};
  // Copies under a mask have tests of their own.
#define ENTRY(...) CHECK_PLAIN(__VA_ARGS__)
#define CHECK_PLAIN(name, ...)                                              \
  if constexpr (EntryCall<Primitives::name##_Routine>::imageCount() == 2) { \
    CHECK_ENTRY("Copy", rules, name, __VA_ARGS__)                           \
  }
#include "zorvan/primitives/frame/entries/Copy.def"
#undef ENTRY
  registerForEachVariant("Copy", "ippiCopy_C1R_forms", [](int variant) { CopyForms(variant).all(); });
}
