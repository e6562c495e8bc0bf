#pragma once

// Copies one contiguous run of bytes with 32-byte stores, forward, backward or past the cache: the plain copy
// of images without gaps in the two newest variants.

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_plan.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

/// One or two pieces for the whole of a row that is shorter than twice Piece::size and not below it.
template <class Piece>
inline void copyEnds(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  const Piece first = Piece::load(src);
  const Piece last = Piece::load(src + length - Piece::size);
  first.store(dst);
  last.store(dst + length - Piece::size);
}

/// At most 128 bytes.
inline void copyFew(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  if (length >= 64) return copyEnds<WideBytes64>(src, dst, length);
  if (length >= 32) return copyEnds<Vector32>(src, dst, length);
  if (length >= 16) return copyEnds<Vector16>(src, dst, length);
  if (length >= 8) return copyEnds<Bytes8>(src, dst, length);
  if (length >= 4) return copyEnds<Bytes4>(src, dst, length);
  CopyRun{src, dst, length}.takeBits<Bytes2, Bytes1>(length);
}

/// Any length. Unaligned blocks at both ends, aligned stores between them.
inline void copyForward(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun row{src, dst, length};
  if (length <= 2 * WideBytes64::size) return copyFew(src, dst, length);
  row.alignByPiece<WideBytes64>(64);
  row.takeAll<WideBytes256, AlignedStores>();
  row.takeAll<WideBytes64, AlignedStores>();
  if (row.length != 0) row.takeLast<WideBytes64>();
}

/// `length` bytes, a multiple of 64, from the end to the start. The destination is 32-byte aligned.
inline void copyBlocksBackward(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  for (; length >= WideBytes256::size; length -= WideBytes256::size) {
    WideBytes256::load(src + length - WideBytes256::size).storeAligned(dst + length - WideBytes256::size);
  }
  for (; length != 0; length -= WideBytes64::size) {
    WideBytes64::load(src + length - WideBytes64::size).storeAligned(dst + length - WideBytes64::size);
  }
}

/// At least 64 bytes.
inline void copyBackward(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  const std::int64_t peel = bytesToBoundary(dst, 64);
  const std::int64_t blocks = (length - peel) & ~std::int64_t{63};
  const std::int64_t tail = peel + blocks;
  copyFew(src + tail, dst + tail, length - tail);
  copyBlocksBackward(src + peel, dst + peel, blocks);
  copyFew(src, dst, peel);
}

/// At least 64 bytes. The fence is the caller's.
inline void copyStreaming(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun run{src, dst, length};
  const std::int64_t peel = bytesToBoundary(run.dst, 64);
  copyFew(src, dst, peel);
  run.skip(peel);
  run.takeAll<WideBytes256, StreamingStores>();
  run.takeAll<WideBytes64, StreamingStores>();
  copyFew(run.src, run.dst, run.length);
}

inline void copyRun(RunCopyForm form, const unsigned char* src, unsigned char* dst, std::int64_t length) {
  switch (form) {
    case RunCopyForm::forward:
      return copyForward(src, dst, length);
    case RunCopyForm::backward:
      return copyBackward(src, dst, length);
    case RunCopyForm::streaming:
      copyStreaming(src, dst, length);
      return fenceStores();
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
