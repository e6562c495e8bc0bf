#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// The values that a filter uses for pixels outside the region. Every value but 0 means eBorderReplicate.
enum ZORVAN_IPP_API eBorderType : std::int32_t {
  eBorderConstant = 0,  ///< the value that is passed with the call
  eBorderReplicate = 1  ///< the nearest pixel of the region
};

}  // namespace Zorvan

namespace Zorvan::Ipp::Image {

/// Filters images of `u8`, `s16` and `float` pixels.
///
/// The Laplace filter multiplies the pixels around each pixel with the weights of one of these kernels and
/// adds the products:
///
///     3 by 3:                  5 by 5:
///
///     -1  -1  -1               -1  -3  -4  -3  -1
///     -1   8  -1               -3   0   6   0  -3
///     -1  -1  -1               -4   6  20   6  -4
///                              -3   0   6   0  -3
///                              -1  -3  -4  -3  -1
///
/// The weights of both add up to 0, so constant areas become 0. Sums of `u8` and `s16` pixels saturate to the
/// lowest and highest value of the type. Sums are neither scaled nor rounded. The order in which float sums
/// are formed is not specified.
///
/// Only pixels of the region are filtered and read. Where the kernel extends beyond the region, even inside
/// the image, it uses the border: `borderValue` for eBorderConstant; for every other `border` the nearest
/// pixel of the region, and `borderValue` has no effect.
///
/// The region `rect` is applied to both images, each with its own width, see Rect. The overloads without
/// `rect` filter the whole of `src` into the same region of `dst`. Results are written to `dst`; `src` is not
/// changed. The two must not overlap in memory.
///
/// Failures, before anything is written: IppException 29 (ippStsWrongIntersectROI) if `rect` does not fit
/// `src`, then `dst`; std::exception, "invalid length", for a `src` with a width or height below 1, or work
/// memory above 2 GiB; then IppException -8 (ippStsNullPtrErr) for an image without a buffer or if memory
/// runs out, -6 (ippStsSizeErr) for a `rect` with a width or height below 1. If there is no memory for the
/// text of a failure, std::bad_alloc is thrown instead.
///
/// Each call allocates work memory of a few rows of `src`, or of some bytes per pixel if `src` or the region
/// is not wider or not higher than the kernel.
class ZORVAN_IPP_API FilteringFunction {
 public:
  /// The Laplace filter with the 3 by 3 kernel if `use3x3`, otherwise with the 5 by 5 kernel.
  template <class T>
  static void LaplaceBorder(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, bool use3x3,
                            eBorderType border, T borderValue);

  /// The same for the whole of `src`.
  template <class T>
  static void LaplaceBorder(IppIMemory<T>& src, IppIMemory<T>& dst, bool use3x3, eBorderType border,
                            T borderValue);

  /// The Laplace filter with the 3 by 3 kernel.
  template <class T>
  static void LaplaceBorder3x3(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, eBorderType border,
                               T borderValue);

  /// The same for the whole of `src`.
  template <class T>
  static void LaplaceBorder3x3(IppIMemory<T>& src, IppIMemory<T>& dst, eBorderType border, T borderValue);

  /// The Laplace filter with the 5 by 5 kernel.
  template <class T>
  static void LaplaceBorder5x5(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, eBorderType border,
                               T borderValue);

  /// The same for the whole of `src`.
  template <class T>
  static void LaplaceBorder5x5(IppIMemory<T>& src, IppIMemory<T>& dst, eBorderType border, T borderValue);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  FilteringFunction() = default;
  FilteringFunction(const FilteringFunction&) = default;
  FilteringFunction(FilteringFunction&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  FilteringFunction& operator=(const FilteringFunction& other);
  FilteringFunction& operator=(FilteringFunction&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
