// The entries that compute the sizes of the morphology records and fill them. One routine serves all
// variants: masks are small.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zorvan/foundation/Status.h"
#include "zorvan/primitives/frame/MorphSizes.h"
#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/morphology/mask_analysis.h"

namespace Zorvan::Primitives {
namespace {

using Measures = MorphMeasures<WrappingNumber>;

int testSizes(Size roi, Size mask) {
  const bool valid = roi.width > 0 && roi.height > 0 && mask.width > 0 && mask.height > 0;
  return valid ? Ipp::ippStsNoErr : Ipp::ippStsSizeErr;
}

template <class T, class SizesOf>
int getSizes(Size roi, Size mask, int* specSize, int* bufferSize, SizesOf sizesOf) {
  if (specSize == nullptr || bufferSize == nullptr) return Ipp::ippStsNullPtrErr;
  if (const int status = testSizes(roi, mask); status != Ipp::ippStsNoErr) return status;
  const MorphSizes<WrappingNumber> sizes = sizesOf(Measures(roi, mask, sizeof(T)));
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

}  // namespace

#define DEFINE(pixels, T)                                                                                    \
  int CommonRoutines::ippiMorphologyBorderGetSize_##pixels##_C1R(Size roiSize, Size maskSize, int* specSize, \
                                                                 int* bufferSize) {                          \
    return getSizes<T>(roiSize, maskSize, specSize, bufferSize,                                              \
                       [](const Measures& m) { return m.single(); });                                        \
  }                                                                                                          \
  int CommonRoutines::ippiMorphAdvGetSize_##pixels##_C1R(Size roiSize, Size maskSize, int* specSize,         \
                                                         int* bufferSize) {                                  \
    return getSizes<T>(roiSize, maskSize, specSize, bufferSize,                                              \
                       [](const Measures& m) { return m.compound(); });                                      \
  }                                                                                                          \
  int CommonRoutines::ippiMorphologyBorderInit_##pixels##_C1R(Size roiSize, const u8* mask, Size maskSize,   \
                                                              MorphSpec* spec, u8* buffer) {                 \
    return initSingle(roiSize, mask, maskSize, spec, buffer);                                                \
  }                                                                                                          \
  int CommonRoutines::ippiMorphAdvInit_##pixels##_C1R(Size roiSize, const u8* mask, Size maskSize,           \
                                                      MorphAdvSpec* spec, u8* buffer) {                      \
    return initCompound(roiSize, mask, maskSize, spec, buffer);                                              \
  }
DEFINE(8u, u8)
DEFINE(32f, float)
#undef DEFINE

}  // namespace Zorvan::Primitives
