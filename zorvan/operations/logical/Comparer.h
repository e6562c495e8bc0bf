#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// How a pixel has to stand to the constant of a comparison.
enum ZORVAN_IPP_API eComparison : std::int32_t {
  eLess = 0,          ///< pixel < value
  eLessEqual = 1,     ///< pixel <= value
  eEqual = 2,         ///< pixel == value
  eGreaterEqual = 3,  ///< pixel >= value
  eGreater = 4,       ///< pixel > value
};

namespace Ipp::Image {

/// Compares images with a constant. Exists for `T` of `float`.
template <class T>
class ZORVAN_IPP_API Comparer {
 public:
  /// Writes 255 into the region `rect` of `dst` where `comparison` holds between the pixel of `src` and
  /// `value`, and 0 where it does not. The outcome serves as a mask of other operations as it is.
  ///
  /// `value` is narrowed before it is used: its fraction is cut off, and of the whole number the low 8 bits
  /// are kept, so that pixels are compared with a whole number from 0 to 255. 3.7 compares as 3, -1 as 255,
  /// 256 as 0, 300 as 44; a NaN and what does not fit 32 bits compare as 0.
  ///
  /// A NaN pixel is not less than, less than or equal to, or equal to anything. Whether it counts as greater
  /// depends on the processor: for eGreaterEqual and eGreater it gives 255 with AVX2 and later, 0 before.
  /// Zeros of both signs are equal.
  ///
  /// The same rectangle is applied to both images, each by its own width, and tested with `src`, then `dst`:
  /// see Rect. One that does not fit raises IppException 29 (ippStsWrongIntersectROI). Other failures, raised
  /// as IppException before anything is written: -8 (ippStsNullPtrErr) for an image without a buffer, -16
  /// (ippStsStepErr) for an image of no width, -6 (ippStsSizeErr) for a region with a width or height
  /// below 1. The images may not share memory. A `comparison` that is none of the five raises nothing and
  /// leaves `dst` as it is.
  static void Compare(IppIMemory<T>& src, IppIMemory<u8>& dst, Rect rect, float value,
                      eComparison comparison);

  /// Objects can be made, copied and moved, and hold nothing.
  Comparer() = default;
  Comparer(const Comparer&) = default;
  Comparer(Comparer&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  Comparer& operator=(const Comparer& other);
  Comparer& operator=(Comparer&& other);
};

}  // namespace Ipp::Image
}  // namespace Zorvan
