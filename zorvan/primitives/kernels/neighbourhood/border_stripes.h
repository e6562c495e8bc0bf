#pragma once

// Runs a neighbourhood operation on a region with a border: on the stripes, copied with their border into the
// caller's area one after the other, and on the centre in place.
//
// Rows of a copy follow one another without padding, so the largest piece of the plan fills the area exactly.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/neighbourhood/border_copy.h"
#include "zorvan/primitives/kernels/neighbourhood/border_plan.h"

namespace Zorvan::Primitives {
namespace {

/// `operation(src, dst, roi)` computes `roi` pixels of `dst` and may read its reach beyond `roi` around
/// `src`. The border type is replicate, mirror or constant unless all sides are in memory.
template <class T, class Operation>
inline void runWithBorder(Plane<const T> src, Plane<T> dst, Size roi, Reach reach, BorderWord word, T value,
                          T* area, Operation operation) {
  const BorderPlan plan = planBorder(roi, reach, word);
  for (int i = 0; i < plan.count; ++i) {
    const BorderPiece& piece = plan.pieces[i];
    const Plane<T> built{area, piece.built.width * std::int64_t{sizeof(T)}};
    copyWithBorder(src.from(piece.from.row, piece.from.column), piece.from.size, built, piece.built,
                   piece.above, piece.left, word.type(), value);
    operation(Plane<const T>(built.from(reach.above, reach.left)), dst.from(piece.to.row, piece.to.column),
              piece.to.size);
  }
  if (plan.hasCentre) {
    const Part& centre = plan.centre;
    operation(src.from(centre.row, centre.column), dst.from(centre.row, centre.column), centre.size);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
