#pragma once

// The operation objects of morphology. Each owns the mask of ones, its analysed state and the work memory of
// one call.

#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/foundation/TextException.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/MorphSizes.h"

namespace Zorvan::Ipp::Image::Morphologies {

using namespace Primitives;

/// A block of ones for `maskSize`, at least as many as the mask with its width and height rounded up to odd
/// numbers: the compound operations read all of these for the rotated mask. For four widths the block is a
/// constant unless a tall mask needs more. Throws "invalid image size" for a width below 1; the entries test
/// the height.
std::shared_ptr<u8[]> makeStructuringMask(Size maskSize);

/// Regions and masks with sides below this limit need less memory than the entries' 32-bit numbers can count.
constexpr int largeSide = 4096;
constexpr bool isBelowLargeSide(Size size) { return size.width < largeSide && size.height < largeSide; }
static_assert(MorphMeasures<ExactNumber>({largeSide, largeSide}, {largeSide, largeSide}, sizeof(float))
                  .compound()
                  .buffer.fits());

/// The lengths of the containers of a call.
struct MorphLengths {
  int spec, buffer;
};

/// The lengths that the entry `getSize` reports. It calculates in 32 bits, which wrap: where the true `sizes`
/// do not fit them, the length is 0, which makes the allocation throw.
template <class GetSize, class Sizes>
MorphLengths queryLengths(Size roi, Size mask, int pixelBytes, GetSize getSize, Sizes sizes) {
  MorphLengths lengths{};
  if (getSize(roi, mask, &lengths.spec, &lengths.buffer) != ippStsNoErr) {
    throw TextException("Morph border get size error.");
  }
  if (isBelowLargeSide(roi) && isBelowLargeSide(mask)) return lengths;
  const MorphSizes<ExactNumber> exact = (MorphMeasures<ExactNumber>(roi, mask, pixelBytes).*sizes)();
  return {exact.spec.fits() ? lengths.spec : 0, exact.buffer.fits() ? lengths.buffer : 0};
}

/// Makes the mask and allocates, and holds the arguments of the entries that are not images.
template <class T>
class IppIMorphologyBase_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  virtual u8* GetMaskPointer() { return mask.buffer().get(); }
  virtual u8* GetSpecPointer() { return spec.buffer().get(); }
  virtual u8* GetBufferPointer() { return buffer.buffer().get(); }

 protected:
  /// The containers are constructed with their blocks, since each assignment would share and release one. In
  /// braces, the arguments are evaluated in their order, so the width of the mask is tested first.
  template <class GetSize, class Sizes>
  IppIMorphologyBase_Src_Dst(Size sizeOfMask, Size roi, GetSize getSize, Sizes sizes)
      : IppIMorphologyBase_Src_Dst{sizeOfMask, roi, makeStructuringMask(sizeOfMask),
                                   queryLengths(roi, sizeOfMask, sizeof(T), getSize, sizes)} {}
  ~IppIMorphologyBase_Src_Dst() = default;

  template <class Spec, class Init>
  void initialise(Init init) {
    auto* const record = reinterpret_cast<Spec*>(this->GetSpecPointer());
    if (init(roiSize, this->GetMaskPointer(), maskSize, record, this->GetBufferPointer()) != ippStsNoErr) {
      throw TextException("Morph border init error.");
    }
  }

  static constexpr bool isFloat = std::is_same_v<T, float>;

  Size roiSize;
  Size maskSize;
  IppIMemory<u8> mask;
  IppS::IppSMemory<u8> spec;
  IppS::IppSMemory<u8> buffer;
  std::int32_t borderType = 1;  ///< replicate; nothing in the facade changes it

 private:
  IppIMorphologyBase_Src_Dst(Size sizeOfMask, Size roi, std::shared_ptr<u8[]> cells, MorphLengths lengths)
      : roiSize(roi),
        maskSize(sizeOfMask),
        mask(sizeOfMask, std::move(cells), 0),
        spec(lengths.spec),
        buffer(lengths.buffer) {}
};

/// Prepares an erosion or dilation.
template <class T>
class IppIMorphologyBorder_Src_Dst : public IppIMorphologyBase_Src_Dst<T> {
  using Base = IppIMorphologyBase_Src_Dst<T>;

 public:
  IppIMorphologyBorder_Src_Dst(Size sizeOfMask, Rect rect)
      : Base(sizeOfMask, {rect.width, rect.height},
             Base::isFloat ? ippiMorphologyBorderGetSize_32f_C1R : ippiMorphologyBorderGetSize_8u_C1R,
             &MorphMeasures<ExactNumber>::single) {
    this->template initialise<MorphSpec>(Base::isFloat ? ippiMorphologyBorderInit_32f_C1R
                                                       : ippiMorphologyBorderInit_8u_C1R);
  }

 protected:
  ~IppIMorphologyBorder_Src_Dst() = default;
  const MorphSpec* record() { return reinterpret_cast<const MorphSpec*>(this->GetSpecPointer()); }
};

/// Prepares an opening or closing.
template <class T>
class IppIMorphologyAdvanced_Src_Dst : public IppIMorphologyBase_Src_Dst<T> {
  using Base = IppIMorphologyBase_Src_Dst<T>;

 public:
  IppIMorphologyAdvanced_Src_Dst(Size sizeOfMask, Rect rect)
      : Base(sizeOfMask, {rect.width, rect.height},
             Base::isFloat ? ippiMorphAdvGetSize_32f_C1R : ippiMorphAdvGetSize_8u_C1R,
             &MorphMeasures<ExactNumber>::compound) {
    this->template initialise<MorphAdvSpec>(Base::isFloat ? ippiMorphAdvInit_32f_C1R
                                                          : ippiMorphAdvInit_8u_C1R);
  }

 protected:
  ~IppIMorphologyAdvanced_Src_Dst() = default;
  const MorphAdvSpec* record() { return reinterpret_cast<const MorphAdvSpec*>(this->GetSpecPointer()); }
};

#define ZORVAN_IPP_MORPHOLOGY(Name, Base, entry)                                                             \
  template <class T>                                                                                         \
  class Name final : public Base<T> {                                                                        \
   public:                                                                                                   \
    using Base<T>::Base;                                                                                     \
    int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {                               \
      u8* const work = this->GetBufferPointer();                                                             \
      return ByPixelType{entry##_32f_C1R, entry##_8u_C1R}(src, srcStep, dst, dstStep, roi, this->borderType, \
                                                          T{}, this->record(), work);                        \
    }                                                                                                        \
  };
ZORVAN_IPP_MORPHOLOGY(IppIMorphologyDilate_Src_Dst, IppIMorphologyBorder_Src_Dst, ippiMorphDilateBorder)
ZORVAN_IPP_MORPHOLOGY(IppIMorphologyErode_Src_Dst, IppIMorphologyBorder_Src_Dst, ippiMorphErodeBorder)
ZORVAN_IPP_MORPHOLOGY(IppIMorphologyOpen_Src_Dst, IppIMorphologyAdvanced_Src_Dst, ippiMorphOpenBorder)
ZORVAN_IPP_MORPHOLOGY(IppIMorphologyClose_Src_Dst, IppIMorphologyAdvanced_Src_Dst, ippiMorphCloseBorder)
#undef ZORVAN_IPP_MORPHOLOGY

}  // namespace Zorvan::Ipp::Image::Morphologies
