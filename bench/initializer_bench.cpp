#include "bench/families.h"
#include "bench/plain_initializer.h"
#include "zorvan/operations/initializer/Initializer.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::Initializer;
using Ipp::Image::IppIMemory;

template <class T>
void addFill(Suite& suite, const char* pixels) {
  suite.add<Write<T>>(
      "fill", pixels, [](IppIMemory<T>& image, Rect rect) { Initializer::Fill(image, T{7}, rect); },
      [](T* image, Size size) { Plain::fill(image, T{7}, size); });
}

template <class T, class Mask>
void addFillMask(Suite& suite, const char* name, const char* pixels) {
  suite.add<Update<T>, Mask>(
      name, pixels,
      [](IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
        Initializer::FillWithMask(image, mask, T{7}, rect);
      },
      [](T* image, const u8* mask, Size size) { Plain::fillMask(image, mask, T{7}, size); });
}

template <class T>
void addCopy(Suite& suite, const char* pixels) {
  suite.add<Read<T>, Write<T>>(
      "copy", pixels,
      [](IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) { Initializer::Copy(src, dst, rect); },
      [](const T* src, T* dst, Size size) { Plain::copy(src, dst, size); });
}

template <class T, class Mask>
void addCopyMask(Suite& suite, const char* name, const char* pixels) {
  suite.add<Read<T>, Update<T>, Mask>(
      name, pixels,
      [](IppIMemory<T>& src, IppIMemory<T>& dst, IppIMemory<u8>& mask, Rect rect) {
        Initializer::CopyWithMask(src, dst, mask, rect);
      },
      [](const T* src, T* dst, const u8* mask, Size size) { Plain::copyMask(src, dst, mask, size); });
}

template <class T1, class T2>
void addConvert(Suite& suite, const char* pixels) {
  suite.add<Read<T1>, Write<T2>>(
      "convert", pixels,
      [](IppIMemory<T1>& src, IppIMemory<T2>& dst, Rect rect) { Initializer::Convert(src, dst, rect); },
      [](const T1* src, T2* dst, Size size) { Plain::convert(src, dst, size); });
}

}  // namespace

void addInitializer(Suite& suite) {
  addFill<u8>(suite, "u8");
  addFill<u16>(suite, "u16");
  addFill<s16>(suite, "s16");
  addFill<int>(suite, "s32");
  addFill<float>(suite, "f32");
  addFillMask<u8, RandomMask>(suite, "fill_mask_random", "u8");
  addFillMask<u16, RandomMask>(suite, "fill_mask_random", "u16");
  addFillMask<int, RandomMask>(suite, "fill_mask_random", "s32");
  addFillMask<float, RandomMask>(suite, "fill_mask_random", "f32");
  addFillMask<u8, BlobMask>(suite, "fill_mask_blobs", "u8");
  addFillMask<u16, BlobMask>(suite, "fill_mask_blobs", "u16");
  addFillMask<int, BlobMask>(suite, "fill_mask_blobs", "s32");
  addFillMask<float, BlobMask>(suite, "fill_mask_blobs", "f32");
  addCopy<u8>(suite, "u8");
  addCopy<u16>(suite, "u16");
  addCopy<float>(suite, "f32");
  addCopyMask<u8, RandomMask>(suite, "copy_mask_random", "u8");
  addCopyMask<float, RandomMask>(suite, "copy_mask_random", "f32");
  addCopyMask<u8, BlobMask>(suite, "copy_mask_blobs", "u8");
  addCopyMask<float, BlobMask>(suite, "copy_mask_blobs", "f32");
  addConvert<int, u8>(suite, "s32_u8");
  addConvert<int, float>(suite, "s32_f32");
}

}  // namespace Zorvan::Bench
