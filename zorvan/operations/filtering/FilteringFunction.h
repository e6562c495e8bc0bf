#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// What a filter takes for pixels outside the region. Every value but 0 stands for eBorderReplicate.
enum ZORVAN_IPP_API eBorderType : std::int32_t {
  eBorderConstant = 0,  ///< the value given with the call
  eBorderReplicate = 1  ///< the nearest pixel of the region
};

}  // namespace Zorvan

namespace Zorvan::Ipp::Image {

/// Filters images of `u8`, `s16` and `float` pixels.
///
/// The Laplace filter weighs the pixels around each pixel `p` with one of these kernels and adds them up:
///
///     3 by 3:                  5 by 5:
///
///     -1  -1  -1               -1  -3  -4  -3  -1
///     -1   8  -1               -3   0   6   0  -3
///     -1  -1  -1               -4   6  20   6  -4
///                              -3   0   6   0  -3
///                              -1  -3  -4  -3  -1
///
/// Both sum to 0, so areas without change become 0. Sums of `u8` and `s16` pixels saturate: they end at the
/// lowest and highest value of the type. There is no scale and no rounding. The order in which float sums are
/// formed is not promised.
///
/// Only pixels of the region are filtered and read: where the kernel reaches beyond the region, also inside
/// the image, it finds the border. That is `borderValue` for eBorderConstant; for every other `border` it is
/// the region's nearest pixel, and `borderValue` has no effect.
///
/// The region `rect` is the same for both images, each by its own width, see Rect; the forms without `rect`
/// filter the whole of `src` into the same place of `dst`. Results go to `dst`, `src` is not changed. The two
/// may not overlap in memory.
///
/// Failures, before anything is written: IppException 29 (ippStsWrongIntersectROI) if `rect` does not fit
/// `src`, then `dst`; std::exception, "invalid length", for a `src` with a width or height below 1, or work
/// memory above 2 GiB; then IppException -8 (ippStsNullPtrErr) for an image without a buffer or when memory
/// runs out, -6 (ippStsSizeErr) for a `rect` with a width or height below 1. Each call allocates work memory
/// of a few rows of `src`, and of some bytes per pixel where `src` or the region is no wider or no higher
/// than the kernel.
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

  /// Objects can be made, copied and moved, and hold nothing.
  FilteringFunction() = default;
  FilteringFunction(const FilteringFunction&) = default;
  FilteringFunction(FilteringFunction&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  FilteringFunction& operator=(const FilteringFunction& other);
  FilteringFunction& operator=(FilteringFunction&& other);
};

}  // namespace Zorvan::Ipp::Image
