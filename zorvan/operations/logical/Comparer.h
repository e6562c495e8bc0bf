#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// The relation between a pixel and the constant for which a comparison is true.
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
  /// Writes 255 into the region `rect` of `dst` where `comparison` is true for the pixel of `src` and
  /// `value`, and 0 elsewhere. The result can be used as a mask of other operations.
  ///
  /// `value` is converted before it is used: it is truncated to an integer, of which the low 8 bits are kept,
  /// so that pixels are compared with an integer from 0 to 255. 3.7 compares as 3, -1 as 255, 256 as 0, 300
  /// as 44; a NaN and values that do not fit 32 bits compare as 0.
  ///
  /// For a NaN pixel eLess, eLessEqual and eEqual are false. eGreaterEqual and eGreater depend on the
  /// processor: they are true with AVX2 and later, and false before. Zeros of both signs are equal.
  ///
  /// The same rectangle is applied to both images, each with its own width, and tested with `src`, then
  /// `dst`: see Rect. One that does not fit throws IppException 29 (ippStsWrongIntersectROI). Other failures,
  /// thrown as IppException before anything is written: -8 (ippStsNullPtrErr) for an image without a buffer,
  /// -16 (ippStsStepErr) for an image of width 0, -6 (ippStsSizeErr) for a region with a width or height
  /// below 1. If there is no memory for the text of a failure, std::bad_alloc is thrown instead. The images
  /// must not share memory. A `comparison` that is none of the five throws nothing and does not change `dst`.
  static void Compare(IppIMemory<T>& src, IppIMemory<u8>& dst, Rect rect, float value,
                      eComparison comparison);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  Comparer() = default;
  Comparer(const Comparer&) = default;
  Comparer(Comparer&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  Comparer& operator=(const Comparer& other);
  Comparer& operator=(Comparer&& other);
  /// @}
};

}  // namespace Ipp::Image
}  // namespace Zorvan
