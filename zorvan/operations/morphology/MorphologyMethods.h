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

/// Makes the mask, and holds the arguments of the entries that are not images.
template <class T>
class IppIMorphologyBase_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  IppIMorphologyBase_Src_Dst(Size sizeOfMask, Rect rect)
      : roiSize{rect.width, rect.height},
        maskSize(sizeOfMask),
        mask(sizeOfMask, makeStructuringMask(sizeOfMask), 0) {}

  virtual u8* GetMaskPointer() { return mask.buffer().get(); }
  virtual u8* GetSpecPointer() { return spec.buffer().get(); }
  virtual u8* GetBufferPointer() { return buffer.buffer().get(); }

 protected:
  ~IppIMorphologyBase_Src_Dst() = default;

  /// Queries the sizes, allocates, and initialises the state. The sizes of the entries wrap on 32 bits: if
  /// `trueSizes` do not fit, the length 0 makes the allocation throw.
  template <class Spec, class GetSize, class Init, class TrueSizes>
  void prepare(GetSize getSize, Init init, const TrueSizes& trueSizes) {
    int specSize = 0, bufferSize = 0;
    if (getSize(roiSize, maskSize, &specSize, &bufferSize) != ippStsNoErr) {
      throw TextException("Morph border get size error.");
    }
    spec = IppS::IppSMemory<u8>(trueSizes.spec.fits() ? specSize : 0);
    buffer = IppS::IppSMemory<u8>(trueSizes.buffer.fits() ? bufferSize : 0);
    auto* const record = reinterpret_cast<Spec*>(this->GetSpecPointer());
    if (init(roiSize, this->GetMaskPointer(), maskSize, record, this->GetBufferPointer()) != ippStsNoErr) {
      throw TextException("Morph border init error.");
    }
  }

  MorphMeasures<ExactNumber> measures() const { return {roiSize, maskSize, sizeof(T)}; }

  static constexpr bool isFloat = std::is_same_v<T, float>;

  Size roiSize;
  Size maskSize;
  IppIMemory<u8> mask;
  IppS::IppSMemory<u8> spec;
  IppS::IppSMemory<u8> buffer;
  std::int32_t borderType = 1;  ///< replicate; nothing in the facade changes it
};

/// Prepares an erosion or dilation.
template <class T>
class IppIMorphologyBorder_Src_Dst : public IppIMorphologyBase_Src_Dst<T> {
 public:
  IppIMorphologyBorder_Src_Dst(Size sizeOfMask, Rect rect) : IppIMorphologyBase_Src_Dst<T>(sizeOfMask, rect) {
    this->template prepare<MorphSpec>(
        this->isFloat ? ippiMorphologyBorderGetSize_32f_C1R : ippiMorphologyBorderGetSize_8u_C1R,
        this->isFloat ? ippiMorphologyBorderInit_32f_C1R : ippiMorphologyBorderInit_8u_C1R,
        this->measures().single());
  }

 protected:
  ~IppIMorphologyBorder_Src_Dst() = default;
  const MorphSpec* record() { return reinterpret_cast<const MorphSpec*>(this->GetSpecPointer()); }
};

/// Prepares an opening or closing.
template <class T>
class IppIMorphologyAdvanced_Src_Dst : public IppIMorphologyBase_Src_Dst<T> {
 public:
  IppIMorphologyAdvanced_Src_Dst(Size sizeOfMask, Rect rect)
      : IppIMorphologyBase_Src_Dst<T>(sizeOfMask, rect) {
    this->template prepare<MorphAdvSpec>(
        this->isFloat ? ippiMorphAdvGetSize_32f_C1R : ippiMorphAdvGetSize_8u_C1R,
        this->isFloat ? ippiMorphAdvInit_32f_C1R : ippiMorphAdvInit_8u_C1R, this->measures().compound());
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
