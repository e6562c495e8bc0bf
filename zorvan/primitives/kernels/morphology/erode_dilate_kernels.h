#pragma once

// Erosion and dilation: the arguments, the driver, and which variant uses which algorithm for a mask.

#include "zorvan/primitives/frame/MorphSizes.h"
#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/morphology/packed_rows.h"
#include "zorvan/primitives/kernels/morphology/shaped_cells.h"
#include "zorvan/primitives/kernels/morphology/shaped_scan.h"
#include "zorvan/primitives/kernels/morphology/solid_bordered.h"
#include "zorvan/primitives/kernels/morphology/solid_separable.h"
#include "zorvan/primitives/kernels/neighbourhood/border_stripes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

using Ipp::ippStsBorderErr;
using Ipp::ippStsNotEvenStepErr;

/// A copy of the caller's record of a mask, which may lie at any address.
struct MorphMask {
  MorphSpec spec;

  explicit MorphMask(const MorphSpec* at) : spec(loadAs<MorphSpec>(at)) {}
  Size size() const { return {spec.maskWidth, spec.maskHeight}; }
  bool has(std::uint32_t flag) const { return (spec.flags & flag) != 0; }
};

template <class Operation, class Lanes, int leastBordered>
inline void computeSolid(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                         Size mask, MorphWork work) {
  if (planPackedRows(src.step, roi.width, mask.width, sizeof(typename Lanes::Pixel))) {
    computePackedSolid<Operation, Lanes>(src, dst, roi, mask);
  } else {
    separateImage<Operation, Lanes, leastBordered>(src, dst, roi, mask, work);
  }
}

/// Solid masks for which `planBordered` holds, in rows for which `planBorderedRows` does.
template <class Operation, class Lanes, int least>
inline void computeBordered(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                            Size roi, Size mask, BorderWord word, typename Lanes::Pixel value,
                            MorphWork work) {
  using Pixel = typename Lanes::Pixel;
  const BorderedRegion<Pixel> region(src, roi, mask.width / 2, word, value,
                                     reinterpret_cast<Pixel*>(work.ring));
  switch (mask.width) {
    case 3:
      if constexpr (least <= 3) return borderedImage<Operation, Lanes, 3, 3>(region, dst, work);
      return;
    case 5:
      return borderedImage<Operation, Lanes, 5, 5>(region, dst, work);
    case 7:
      return borderedImage<Operation, Lanes, 7, 7>(region, dst, work);
    default:
      return borderedImage<Operation, Lanes, 9, 9>(region, dst, work);
  }
}

/// The two oldest variants: solid masks by rows and columns, others pixel by pixel. Bordered kernels begin at
/// 5 by 5, since there is no form for 3 by 3 here; the oldest variant has none for bytes, whose neighbours
/// take three instructions of its instruction set.
template <class ForBytes, class ForFloats, int leastOfBytes>
struct ScanningKernels {
  template <class Pixel>
  using Lanes = PixelLanes<Pixel, std::conditional_t<sizeof(Pixel) == 1, ForBytes, ForFloats>>;
  template <class Pixel>
  using NarrowLanes = Lanes<Pixel>;
  template <class Pixel>
  static constexpr int leastBordered = sizeof(Pixel) == 1 ? leastOfBytes : 5;

  template <class Operation, class Pixel>
  static void compute(Plane<const Pixel> src, Plane<Pixel> dst, Size roi, const MorphMask& mask,
                      MorphWork work) {
    const Reach reach = Reach::ofMask(mask.size());
    const auto first = src.from(-reach.above, -reach.left);
    if (ZORVAN_PLANNED("planOldMorphForm solid", planOldMorphForm(mask.spec.flags) == MorphForm::separable)) {
      computeSolid<Operation, Lanes<Pixel>, leastBordered<Pixel>>(first, dst, roi, mask.size(), work);
    } else {
      scanImage<Operation>(first, dst, roi, mask.size(), mask.spec.cells);
    }
  }
};

/// The newer variants: a kernel for each form of mask. Bordered kernels use `ForShortRows` in rows that are
/// too short for longer vectors.
template <class ForBytes, class ForFloats, class ForShortRows>
struct FormKernels {
  template <class Pixel>
  using Lanes = PixelLanes<Pixel, std::conditional_t<sizeof(Pixel) == 1, ForBytes, ForFloats>>;
  template <class Pixel>
  using NarrowLanes = PixelLanes<Pixel, ForShortRows>;
  template <class Pixel>
  static constexpr int leastBordered = 3;

  template <class Operation, class Pixel>
  static void compute(Plane<const Pixel> src, Plane<Pixel> dst, Size roi, const MorphMask& mask,
                      MorphWork work) {
    const Reach reach = Reach::ofMask(mask.size());
    const auto first = src.from(-reach.above, -reach.left);
    const bool packed = planPackedRows(src.step, roi.width, reach.mask().width, sizeof(Pixel));
    const TabledCells table(mask.spec);
    switch (ZORVAN_PLANNED("planMorphForm", planMorphForm(mask.spec.flags, [&] { return table.count(); }))) {
      case MorphForm::separable:
        return computeSolid<Operation, Lanes<Pixel>, leastBordered<Pixel>>(first, dst, roi, mask.size(),
                                                                           work);
      case MorphForm::known3:
        return computeShaped<Operation, 2, 2>(first, dst, roi, packed, KnownCells<KnownShape3>());
      case MorphForm::known5:
        return computeShaped<Operation, 2, 2>(first, dst, roi, packed, KnownCells<KnownShape5>());
      case MorphForm::known7:
        return computeShaped<Operation, 2, 2>(first, dst, roi, packed, KnownCells<KnownShape7>());
      case MorphForm::cross:
        return computeShaped<Operation, 1, 2>(first, dst, roi, packed, Cross(mask.spec));
      case MorphForm::cellList:
        return computeShaped<Operation, 1, 1>(first, dst, roi, packed,
                                              ListedCells(table, src.step, sizeof(Pixel)));
      case MorphForm::cellTable:
        return computeShaped<Operation, 1, 1>(first, dst, roi, packed, table);
      case MorphForm::runs:
        return computeShaped<Operation, 2, 2>(first, dst, roi, packed, Runs(mask.spec));
      case MorphForm::scan:
        return;
    }
  }

 private:
  template <class Operation, int bandColumns, int rowColumns, class Pixel, class Cells>
  static void computeShaped(Plane<const Pixel> src, Plane<Pixel> dst, Size roi, bool packed,
                            const Cells& cells) {
    using L = Lanes<Pixel>;
    if (!packed) return computeImage<Operation, L, bandColumns, rowColumns>(src, dst, roi, cells);
    computePacked(src, dst, roi, [&](Plane<const Pixel> from, Pixel* results, std::int64_t length) {
      computeBand<Operation, L, 1, rowColumns>(from, {results, 0}, length, cells);
    });
  }
};

template <class V>
using MorphPolicy =
    ByVariant<V, ScanningKernels<Vector16, Vector16, noneBordered>, ScanningKernels<Vector16, Vector16, 5>,
              FormKernels<Vector16, Vector16, Vector16>, FormKernels<Vector16, Vector32, Vector16>,
              FormKernels<Vector32, Vector32, Vector16>, FormKernels<Vector64, Vector64, Vector32>>;

template <class V>
inline int copyRegion(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  return Routines<V>::ippiCopy_8u_C1R(src, srcStep, dst, dstStep, roi);
}
template <class V>
inline int copyRegion(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return Routines<V>::ippiCopy_32f_C1R(src, srcStep, dst, dstStep, roi);
}

inline unsigned char* alignWork(u8* buffer) { return buffer + bytesToBoundary(buffer, 32); }

/// The tests that all four operations have in common, in this order.
template <class T>
inline int testMorphImages(const T* src, int srcStep, const T* dst, int dstStep, Size roi, const void* spec,
                           const u8* buffer) {
  if (src == nullptr || dst == nullptr || spec == nullptr || buffer == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const std::int64_t rowBytes = std::int64_t{roi.width} * std::int64_t{sizeof(T)};
  if (srcStep < rowBytes || dstStep < rowBytes) return ippStsStepErr;
  if (sizeof(T) == 4 && (srcStep % 4 != 0 || dstStep % 4 != 0)) return ippStsNotEvenStepErr;
  return ippStsNoErr;
}

/// Larger words are an error.
constexpr int largestBorderWord = 4095;

constexpr bool isMorphBorderType(BorderType type) {
  return type == BorderType::replicate || type == BorderType::mirror || type == BorderType::defaultValue ||
         type == BorderType::constant;
}

constexpr bool isMorphBorder(int word) {
  return word <= largestBorderWord &&
         (word == BorderWord::allInMemory || isMorphBorderType(BorderWord{word}.type()));
}

/// Stripes with their border are copied into the work memory after the ring; the rest is read in place.
template <class V, class Operation, class T>
inline int erodeOrDilate(const T* src, int srcStep, T* dst, int dstStep, Size roi, BorderWord word, T value,
                         const MorphSpec* spec, u8* buffer, FarBytes bytes) {
  if (word.type() == BorderType::defaultValue) {
    word.bits = (word.bits & ~BorderWord::typeBits) | static_cast<int>(BorderType::constant);
    value = Operation::neutral(T{});
  }
  const MorphMask mask(spec);
  const Size maskSize = mask.size();
  if ((maskSize.width == 1 && maskSize.height == 1) || mask.has(MorphSpec::noneSet)) {
    return copyRegion<V>(src, srcStep, dst, dstStep, roi);
  }
  const MorphWork work{alignWork(buffer), bytes};
  constexpr int least = MorphPolicy<V>::template leastBordered<T>;
  if constexpr (least <= largestBordered) {
    if (mask.has(MorphSpec::allSet) && planBordered(maskSize, least)) {
      const auto computed = [&]<class Lanes>(Lanes) {
        if (!planBorderedRows(roi.width, maskSize.width, Lanes::count)) return false;
        computeBordered<Operation, Lanes, least>({src, srcStep}, {dst, dstStep}, roi, maskSize, word, value,
                                                 work);
        return true;
      };
      using Lanes = typename MorphPolicy<V>::template Lanes<T>;
      using Narrow = typename MorphPolicy<V>::template NarrowLanes<T>;
      if (computed(Lanes{})) return ippStsNoErr;
      if constexpr (!std::is_same_v<Narrow, Lanes>) {
        if (computed(Narrow{})) return ippStsNoErr;
      }
    }
  }
  const MorphMeasures<WrappingNumber> measures(roi, maskSize, sizeof(T));
  T* const area = reinterpret_cast<T*>(work.ring + measures.ringSize().value());
  runWithBorder<T>({src, srcStep}, {dst, dstStep}, roi, Reach::ofMask(maskSize), word, value, area,
                   [&](Plane<const T> from, Plane<T> to, Size size) {
                     MorphPolicy<V>::template compute<Operation>(from, to, size, mask, work);
                   });
  return ippStsNoErr;
}

/// Bits 8 to 11 of the word mark sides in memory too, but for the 8-bit dilation only.
constexpr int sidesInHigherBits(Dilation, u8, int word) { return (word >> 4) & BorderWord::allInMemory; }
template <class Operation, class T>
constexpr int sidesInHigherBits(Operation, T, int) {
  return 0;
}

/// An erosion or dilation with all tests of its arguments: an entry, or a pass of a compound operation.
template <class V, class Operation, class T>
inline int morph(const T* src, int srcStep, T* dst, int dstStep, Size roi, int borderType, T borderValue,
                 const MorphSpec* spec, u8* buffer, FarBytes bytes) {
  const int status = testMorphImages(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != ippStsNoErr) return status;
  if (!isMorphBorder(borderType)) return ippStsBorderErr;
  const BorderWord word{borderType | sidesInHigherBits(Operation(), T(), borderType)};
  return erodeOrDilate<V, Operation>(src, srcStep, dst, dstStep, roi, word, borderValue, spec, buffer, bytes);
}

/// The entries: an erosion or dilation alone.
template <class V, class Operation, class T>
int morphOnce(const T* src, int srcStep, T* dst, int dstStep, Size roi, int borderType, T borderValue,
              const MorphSpec* spec, u8* buffer) {
  const std::int64_t bytes = resultBytes(roi, sizeof(T));
  return morph<V, Operation>(src, srcStep, dst, dstStep, roi, borderType, borderValue, spec, buffer,
                             FarBytes{bytes, bytes});
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
