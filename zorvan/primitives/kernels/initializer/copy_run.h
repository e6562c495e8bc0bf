#pragma once

// Copies one contiguous run of bytes with 32-byte stores, forward, backward or past the cache: the plain copy
// of images without gaps in the two newest variants.

#include "zorvan/primitives/kernels/initializer/CopyPlan.h"
#include "zorvan/primitives/kernels/initializer/copy_pieces.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

/// One or two pieces for the whole of a row that is shorter than twice Piece::size and not below it.
template <class Piece>
inline void copyEnds(CopyRun row) {
  const Piece first = Piece::load(row.src);
  const Piece last = Piece::load(row.src + row.length - Piece::size);
  first.store(row.dst);
  last.store(row.dst + row.length - Piece::size);
}

/// At most 128 bytes.
inline void copyFew(CopyRun row) {
  if (row.length >= 64) return copyEnds<Twice<Vector32>>(row);
  if (row.length >= 32) return copyEnds<Vector32>(row);
  if (row.length >= 16) return copyEnds<Vector16>(row);
  if (row.length >= 8) return copyEnds<Bytes8>(row);
  if (row.length >= 4) return copyEnds<Bytes4>(row);
  row.takeBits<Bytes2, Bytes1>(row.length);
}

/// Any length. Unaligned blocks at both ends, aligned stores between them.
inline void copyForward(CopyRun row) {
  using Bytes64 = Twice<Vector32>;
  using Bytes256 = Twice<Twice<Bytes64>>;
  if (row.length <= 2 * Bytes64::size) return copyFew(row);
  row.alignByPiece<Bytes64>(64);
  row.takeAll<Bytes256, AlignedStores>();
  row.takeAll<Bytes64, AlignedStores>();
  if (row.length != 0) row.takeLast<Bytes64>();
}

/// `length` bytes, a multiple of 64, from the end to the start. The destination is 32-byte aligned.
inline void copyBlocksBackward(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  using Bytes64 = Twice<Vector32>;
  using Bytes256 = Twice<Twice<Bytes64>>;
  for (; length >= Bytes256::size; length -= Bytes256::size) {
    Bytes256::load(src + length - Bytes256::size).storeAligned(dst + length - Bytes256::size);
  }
  for (; length != 0; length -= Bytes64::size) {
    Bytes64::load(src + length - Bytes64::size).storeAligned(dst + length - Bytes64::size);
  }
}

/// At least 64 bytes.
inline void copyBackward(CopyRun run) {
  const std::int64_t head = bytesToBoundary(run.dst, 64);
  const std::int64_t blocks = (run.length - head) & ~std::int64_t{63};
  const std::int64_t tail = run.length - head - blocks;
  copyFew({run.src + head + blocks, run.dst + head + blocks, tail});
  copyBlocksBackward(run.src + head, run.dst + head, blocks);
  copyFew({run.src, run.dst, head});
}

/// At least 64 bytes. The fence is the caller's.
inline void copyStreaming(CopyRun run) {
  using Bytes64 = Twice<Vector32>;
  using Bytes256 = Twice<Twice<Bytes64>>;
  const std::int64_t head = bytesToBoundary(run.dst, 64);
  copyFew({run.src, run.dst, head});
  run.skip(head);
  run.takeAll<Bytes256, StreamingStores>();
  run.takeAll<Bytes64, StreamingStores>();
  copyFew(run);
}

inline void copyByForm(RunCopyForm form, CopyRun run) {
  switch (form) {
    case RunCopyForm::forward:
      return copyForward(run);
    case RunCopyForm::backward:
      return copyBackward(run);
    case RunCopyForm::streaming:
      copyStreaming(run);
      return fenceStores();
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
