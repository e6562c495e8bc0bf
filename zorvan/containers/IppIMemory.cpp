// Above the primitives, whose entries allocate and copy; the class is declared in foundation/.

#include "zorvan/foundation/IppIMemory.h"

#include <cstdint>
#include <string>
#include <typeinfo>
#include <utility>

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/foundation/SharedBlock.h"
#include "zorvan/foundation/TextException.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Ipp::Image {

namespace {

template <class T>
int rowBytes(int width) {
  return Primitives::wrappedProduct(width, static_cast<std::int32_t>(sizeof(T)));
}

template <class T>
T* allocatePixels(Size size, int& step) {
  using namespace Primitives;
  if (size.width < 1 || size.height < 1) throw TextException("invalid image size");
  T* pixels = nullptr;
  const ByPixelType allocate{storing(ippiMalloc_8u_C1), storing(ippiMalloc_16u_C1),
                             storing(ippiMalloc_16s_C1), storing(ippiMalloc_32s_C1),
                             storing(ippiMalloc_32f_C1)};
  if (allocate(&pixels, size.width, size.height, &step) != ippStsNoErr) {
    throw TextException(std::string("Cannot allocate memory.\nNot supported type.\ntype is ") +
                        typeid(T).name());
  }
  return pixels;
}

// Returns whether the pixels have been copied. 16-bit images cannot be copied, although they have Copy
// entries.
template <class T>
bool copyPixels(const T* src, T* dst, int step, Size size) {
  using namespace Primitives;
  return ByPixelType{ippiCopy_8u_C1R, ippiCopy_32s_C1R, ippiCopy_32f_C1R}(src, step, dst, step, size) ==
         ippStsNoErr;
}

template <class T>
void freePixels(T* pixels) {
  Primitives::ippiFree(pixels);
}

template <class T>
void leavePixels(T*) {}

}  // namespace

template <class T>
IppIMemory<T>::IppIMemory() : size_{0, 0}, step_(0), imageStep_(0) {}

template <class T>
IppIMemory<T>::IppIMemory(Size size)
    : size_(size),
      step_(0),
      imageStep_(rowBytes<T>(size.width)),
      buffer_(shareBlock(Allocate(size, step_))) {}

template <class T>
IppIMemory<T>::IppIMemory(int width, int height) : IppIMemory(Size{width, height}) {}

template <class T>
IppIMemory<T>::IppIMemory(Size size, std::shared_ptr<T[]> buffer, int step)
    : size_(size), step_(step), imageStep_(rowBytes<T>(size.width)), buffer_(std::move(buffer)) {}

template <class T>
IppIMemory<T>::IppIMemory(int width, int height, std::shared_ptr<T[]> buffer, int step)
    : IppIMemory(Size{width, height}, std::move(buffer), step) {}

template <class T>
IppIMemory<T>::IppIMemory(const IppIMemory& source)
    : size_(source.size_),
      step_(0),
      imageStep_(source.imageStep_),
      buffer_(shareBlock(Allocate(size_, step_))) {
  if (!copyPixels<T>(source.buffer_.get(), buffer_.get(), imageStep_, size_)) {
    throw TextException("Assign error in IppIMemory");
  }
}

template <class T>
IppIMemory<T>& IppIMemory<T>::operator=(const IppIMemory& source) = default;

template <class T>
IppIMemory<T>::~IppIMemory() = default;

template <class T>
std::shared_ptr<T[]> IppIMemory<T>::buffer() const {
  return buffer_;
}

template <class T>
std::unique_ptr<T[], void (*)(T*)> IppIMemory<T>::Allocate(Size size, int& step) {
  return {allocatePixels<T>(size, step), &freePixels<T>};
}

template <class T>
std::unique_ptr<T[], void (*)(T*)> IppIMemory<T>::Allocate(int width, int height, int& step) {
  return Allocate(Size{width, height}, step);
}

template <class T>
IppIMemory<T> IppIMemory<T>::CreateContainer(T* pointer, int width, int height) {
  std::unique_ptr<T[], void (*)(T*)> pixels(pointer, &leavePixels<T>);
  return IppIMemory(width, height, shareBlock(std::move(pixels)), 0);
}

template <class T>
IppIMemory<T> IppIMemory<T>::CreateContainer(T* pointer, Size size) {
  return CreateContainer(pointer, size.width, size.height);
}

#define INSTANTIATE(T) template class IppIMemory<T>;
ZORVAN_IPP_ELEMENT_TYPES(INSTANTIATE)

}  // namespace Zorvan::Ipp::Image
