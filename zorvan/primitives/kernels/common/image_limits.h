#pragma once

// The one home of all limits that depend on how large an image is: from how many bytes, pixels or rows on it
// is streamed, prefetched, cut into bands, blocks and tiles, or kept from running as one row. None of them
// shows in a result: a path on either side of a limit computes the same pixels.
//
// A path that only large images reach is a path that hardly any test reaches. Therefore each limit has two
// values: the one of the library, and a low one with which the kernels are compiled once more, as a library
// that tests alone link. There images of a few bytes take every path, at every address and width.
//
// A low value is as low as its path allows. A path that needs rows of some length, since its first vectors
// overlap or its peel is within the row, states that length; with a low value below it the path would leave
// its rows, and the library would not be at fault.
//
// Not here: lengths of rows that follow from the width of a vector, and what a result depends on (the float
// additions between two roundings, `floatAdditions`, and the sides of a row's sums that wrap).

#include <cstdint>

namespace Zorvan::Primitives {
namespace {

#ifdef ZORVAN_LOWERED_LIMITS
template <class T>
consteval T imageLimit(T, T low) {
  return low;
}
#else
template <class T>
consteval T imageLimit(T value, T) {
  return value;
}
#endif

// ---- copies ----

/// 16-byte stores.
struct Copy16Limits {
  static constexpr auto streamAboveBytes = imageLimit<std::int64_t>(0x100000, 96);
  static constexpr int fuseBelowPixels = imageLimit(32768, 48);  // of 8-bit images, in each direction
};

struct Leaf2CopyLimits {
  static constexpr auto queryAboveBytes = imageLimit<std::int64_t>(0x20000, 64);
  static constexpr std::int64_t leastRowBytes = 64;  // of `copyRowLeaf2Streaming`
};

struct LargeCopyLimits {
  static constexpr auto leastRowBytes = imageLimit<std::int64_t>(1024, 128);  // shorter rows never query
  static constexpr auto queryAboveTwice = imageLimit<std::int64_t>(0x400000, 512);  // source and destination
};

struct RunCopyLimits {
  static constexpr auto forwardBelowBytes = imageLimit<std::int64_t>(32768, 64);
  static constexpr auto queryAboveBytes = imageLimit<std::int64_t>(0x400000, 128);
};

struct Copy32Limits {
  static constexpr auto streamAlwaysAboveBytes = imageLimit<std::int64_t>(0x7FFFFFFF, 8192);
  static constexpr auto queryAboveBytes = imageLimit<std::int64_t>(0x300000, 256);
  static constexpr auto narrowBelowBytes = imageLimit<std::int64_t>(512, 96);
};

// ---- fills ----

/// The older variants: a limit in bytes.
struct Fill16Limits {
  static constexpr auto queryAboveBytes = imageLimit<std::int64_t>(0x80000, 96);
};

/// The newest two variants. The limits in pixels are 6 MiB for every type, and the cache's size is compared
/// in pixels. Lines are prefetched for writing while a cache has room for all: it delays those that come from
/// memory.
template <int pixelBytes>
struct Fill32Limits {
  static constexpr std::int64_t queryAbovePixels = imageLimit(0x600000, 256) / pixelBytes;
  static constexpr auto prefetchAboveBytes =
      imageLimit<std::int64_t>(0x100000, 96);                // smaller images fit nearer caches
  static constexpr int cacheShift = pixelBytes / 2;          // 1, 2, 4 bytes: 0, 1, 2
  static constexpr int streamFromBits = imageLimit(32, 13);  // sum of the bits of width and height
};

// ---- masked fills and copies ----

/// Rows are joined if both width and height are below it.
constexpr int joinMaskedBelow = imageLimit(32768, 48);

struct MaskedStoreLimits {
  static constexpr auto skipAboveBytes =
      imageLimit<std::int64_t>(0x8000, 256);  // the nearest cache has room for it
  /// Of all images. Where any cache has room for them, prefetches take more time than they save.
  static constexpr auto prefetchFromBytes = imageLimit<std::int64_t>(0x1000000, 1024);
  static constexpr auto prefetchDistance = imageLimit<std::int64_t>(1024, 64);
};

// ---- conversions ----

/// Rows of floats from this length on start their stores on a boundary, which lies within 16 pixels.
constexpr auto toFloatAlignFromPixels = imageLimit<std::int64_t>(256, 16);

// ---- comparisons and logical operations ----

struct Compare16Limits {
  static constexpr auto streamAboveBytes = imageLimit<std::int32_t>(0x100000, 128);  // both steps, all rows
};

struct Compare32Limits {
  static constexpr int fuseUpToBits = imageLimit(32768, 63);  // of width | height
};

struct CombineLimits {
  static constexpr int fuseUpToBits = imageLimit(32768, 63);  // of width | height
};

// ---- arithmetic ----

/// The nearer caches hold smaller images, and their prefetchers are fast enough for them. Larger ones come
/// from memory, of which the processor has enough loads in flight on its own.
constexpr auto prefetchInPlaceFromBytes = imageLimit<std::int64_t>(0x100000, 64);
constexpr auto prefetchInPlaceUpToBytes = imageLimit<std::int64_t>(0x400000, 1024);

/// Iterations of 8 pixels: about 1 MiB over three images.
constexpr auto floatRowStreamAboveIterations = imageLimit<std::int64_t>(0x2AAA, 3);

/// Images up to this size stay in the nearer caches, where loads and stores take most of the time.
constexpr auto floats64UpToPixels = imageLimit<std::int64_t>(0x10000, 512);

/// Bytes of source and destination together. Streaming stores need a destination other than the source.
/// Processors that report their largest cache stream without loss as soon as the second level is full; the
/// others would lose what still fits into the last level.
struct UnaryLimits {
  static constexpr auto prefetchFromBytes = imageLimit<std::int32_t>(32769, 128);
  static constexpr auto streamAboveBytes = imageLimit<std::int32_t>(0x600000, 512);
  static constexpr auto streamByteImagesAboveBytes = imageLimit<std::int32_t>(0x300000, 128);
  static constexpr auto streamUnknownCacheAboveBytes = imageLimit<std::int32_t>(0x1800000, 2048);
};

/// Masked accumulations peel rows of this length up to a cache line, by 15 pixels at most.
constexpr int accumulateAlignFromPixels = imageLimit(180, 16);

// ---- statistics ----

/// Smaller regions lie in the first or second cache: loads are fast, and prefetches would only compete with
/// them.
constexpr auto nearBytes = imageLimit<std::int64_t>(std::int64_t{3} << 19, 256);

/// Smaller regions lie in the third cache, which is faster than memory.
constexpr auto farBytes = imageLimit<std::int64_t>(std::int64_t{8} << 20, 2048);

/// Of blocks of words: 32768 times 65535 is below 2^31.
constexpr int sumBlockPixels = imageLimit(32768, 40);

/// Pixels of a region whose sum of signed words fits one set of 32-bit lanes.
constexpr auto regionInLanesBelow = imageLimit<std::int64_t>(65536, 200);

/// Pixels of a tile. Two signed words share a lane, so their limit is the larger one.
constexpr int unsignedTilePixels = imageLimit(32768, 90);
constexpr int signedTilePixels = imageLimit(0x10002, 101);

/// Rows of a tile that may share lanes: where tiles are narrower than a vector, a lane gets at most two
/// signed words from each row. Only tiles one or two pixels wide have more rows.
constexpr int stripRows = imageLimit(32767, 5);

/// Masked means of bytes are unrolled in regions with fewer pixels.
constexpr auto unrolledByteSumBelow = imageLimit<std::int32_t>(0x800000, 200);

/// Iterations over 64 words whose sums fit signed lanes of 32 bits: each adds two words to a lane.
constexpr int wordIterationsInLanes = imageLimit(16384, 3);

/// Bytes of a row whose squares fit lanes of 32 bits, whatever the vector's width: a lane gets at most four
/// squares from each 16 bytes. A multiple of the largest vector.
constexpr auto squaresInLanes = imageLimit<std::int64_t>(std::int64_t{1} << 17, 128);

/// Pixels of a block: some hundred iterations between two reductions of the lanes, and few enough to be
/// searched again for a position at hardly any cost.
constexpr int extremeBlockPixels = imageLimit(8192, 100);

// ---- neighbourhoods: morphology and the Laplace filter ----

/// Larger results would only evict their source rows from the caches. Lines that are stored in several
/// vectors take longer, so they are streamed later.
constexpr auto streamFromBytes = imageLimit<std::int64_t>(4 << 20, 64);
constexpr auto streamPartsFromBytes = imageLimit<std::int64_t>(0x700000, 64);

// ---- morphology ----

/// The ring of rows takes at most this size, so that it shares a nearest cache of 32 KiB with the source
/// rows; but bands do not get narrower than the second value. Bands are whole cache lines.
constexpr auto morphRingBytes = imageLimit<std::int64_t>(16 << 10, 320);
constexpr auto morphLeastBandBytes = imageLimit<std::int64_t>(512, 64);

/// Images from this size on come from far caches or from memory. Below it, prefetches take more time than
/// they save.
constexpr auto morphPrefetchFromBytes = imageLimit<std::int64_t>(0x700000, 512);

/// The source rows of several rows of the result take at most this size of a second-level cache, which
/// delivers them as fast as they are combined.
constexpr auto morphStripBytes = imageLimit<std::int64_t>(256 << 10, 512);

/// The rows of an intermediate image take at most this size, so that they share a second-level cache with the
/// rows that are read and written.
constexpr auto morphBetweenBytes = imageLimit<std::int64_t>(256 << 10, 512);

/// This size of short rows is computed together as one long row; at least one row, which has 64 bytes at
/// most.
constexpr auto morphPackedBytes = imageLimit<std::int64_t>(2048, 192);

// ---- the Laplace filter ----

/// A band has few rows, so that their lines stay in a nearest cache even if rows lie whole pages apart. Each
/// column of a band reads and writes its sums, so a region that fits that cache has bands of more rows.
constexpr auto laplaceNearestBytes = imageLimit<std::int64_t>(32 << 10, 256);
constexpr int laplaceBandRows = imageLimit(8, 2), laplaceNearestBandRows = imageLimit(64, 7);

/// Rows that are multiples of this size apart compete for the same lines of a nearest cache, which has room
/// for a band of four rows that are read and four that are written.
constexpr auto collidingStepBytes = imageLimit<std::int64_t>(4096, 64);
constexpr int laplaceCollidingBandRows = imageLimit(4, 3);

/// The sums that the columns of one band hand on to the next one. Longer rows are divided, but not much
/// shorter ones: the hardware's prefetcher starts anew for each part.
constexpr int laplaceCarriedBytes = imageLimit(32 << 10, 1024);

/// Results from this size on lie in far caches or in memory, as do their sources.
constexpr auto laplacePrefetchFromBytes = imageLimit<std::int64_t>(4 << 20, 512);
constexpr auto laplacePrefetchDistance = imageLimit<std::int64_t>(512, 64);

/// Rows of narrow regions that are copied at a time.
constexpr auto narrowBandRows = imageLimit<std::int64_t>(16, 3);

// ---- flood fill ----

/// Rows this far apart have addresses with equal low bits, which the processor compares first.
constexpr int aliasedStepBytes = imageLimit(4096, 64);

/// From so many pixels on the runs of a region are searched in windows of bits.
constexpr auto windowedFillPixels = imageLimit<std::int64_t>(0x4000, 100);

}  // namespace
}  // namespace Zorvan::Primitives
