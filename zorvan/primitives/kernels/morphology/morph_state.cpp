// The entries that compute the sizes of the morphology records and fill them. One routine serves all
// variants: masks are small.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zorvan/foundation/Status.h"
#include "zorvan/primitives/frame/MorphSizes.h"
#include "zorvan/primitives/kernels/common/bodies.h"
#include "zorvan/primitives/kernels/morphology/mask_analysis.h"

namespace Zorvan::Primitives {
namespace Morphology {
namespace {

using Measures = MorphMeasures<WrappingNumber>;

int testSizes(Size roi, Size mask) {
  const bool valid = roi.width > 0 && roi.height > 0 && mask.width > 0 && mask.height > 0;
  return valid ? Ipp::ippStsNoErr : Ipp::ippStsSizeErr;
}

/// `sizesOf` is that of a single or of a compound operation.
template <class T, MorphSizes<WrappingNumber> (Measures::*sizesOf)() const>
int getSizes(Size roi, Size mask, int* specSize, int* bufferSize) {
  if (specSize == nullptr || bufferSize == nullptr) return Ipp::ippStsNullPtrErr;
  if (const int status = testSizes(roi, mask); status != Ipp::ippStsNoErr) return status;
  const MorphSizes<WrappingNumber> sizes = (Measures(roi, mask, sizeof(T)).*sizesOf)();
  *specSize = sizes.spec.value();
  *bufferSize = sizes.buffer.value();
  return Ipp::ippStsNoErr;
}

int initSingle(Size roi, const u8* mask, Size maskSize, MorphSpec* spec, const u8* buffer) {
  if (mask == nullptr || spec == nullptr || buffer == nullptr) return Ipp::ippStsNullPtrErr;
  if (const int status = testSizes(roi, maskSize); status != Ipp::ippStsNoErr) return status;
  analyseMask(mask, maskSize, spec, MaskPadding::topLeft);
  return Ipp::ippStsNoErr;
}

/// Rotates the mask by 180 degrees, over as many cells as the padded mask has. For a mask of even size these
/// include cells after the mask's last one, which the caller provides.
void rotateMask(const u8* mask, u8* rotated, std::ptrdiff_t cells) {
  for (std::ptrdiff_t i = 0; i < cells; ++i) rotated[i] = mask[cells - 1 - i];
}

int initCompound(Size roi, const u8* mask, Size maskSize, MorphAdvSpec* spec, const u8* buffer) {
  if (mask == nullptr || spec == nullptr || buffer == nullptr) return Ipp::ippStsNullPtrErr;
  if (const int status = testSizes(roi, maskSize); status != Ipp::ippStsNoErr) return status;
  const Measures measures(roi, maskSize, 1);
  auto* const first = reinterpret_cast<unsigned char*>(spec) + sizeof(MorphAdvSpec);
  auto* const second = first + measures.specSize().value();
  auto* const rotated = second + measures.specSize().value();
  MorphSpec* const specs[] = {reinterpret_cast<MorphSpec*>(first), reinterpret_cast<MorphSpec*>(second)};

  analyseMask(mask, maskSize, specs[0], MaskPadding::topLeft);
  rotateMask(mask, rotated, measures.cells().value());
  analyseMask(rotated, maskSize, specs[1], MaskPadding::bottomRight);
  static_assert(offsetof(MorphAdvSpec, first) == 0 && offsetof(MorphAdvSpec, second) == sizeof specs[0]);
  std::memcpy(static_cast<void*>(spec), specs, sizeof specs);
  return Ipp::ippStsNoErr;
}

struct Bodies {
  static constexpr auto ippiMorphologyBorderGetSize_8u_C1R = getSizes<u8, &Measures::single>;
  static constexpr auto ippiMorphologyBorderGetSize_32f_C1R = getSizes<float, &Measures::single>;
  static constexpr auto ippiMorphologyBorderInit_8u_C1R = initSingle;
  static constexpr auto ippiMorphologyBorderInit_32f_C1R = initSingle;
  static constexpr auto ippiMorphAdvGetSize_8u_C1R = getSizes<u8, &Measures::compound>;
  static constexpr auto ippiMorphAdvGetSize_32f_C1R = getSizes<float, &Measures::compound>;
  static constexpr auto ippiMorphAdvInit_8u_C1R = initCompound;
  static constexpr auto ippiMorphAdvInit_32f_C1R = initCompound;
};

}  // namespace
}  // namespace Morphology

#define ENTRY(...)
#define COMMON_ENTRY(...) ZORVAN_DEFINE_COMMON(Morphology::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Morphology.def"
#undef ENTRY
#undef COMMON_ENTRY

}  // namespace Zorvan::Primitives
