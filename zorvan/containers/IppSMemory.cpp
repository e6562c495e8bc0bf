// Above the primitives, whose entries allocate and copy; the class is declared in foundation/.

#include "zorvan/foundation/IppSMemory.h"

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/foundation/SharedBlock.h"
#include "zorvan/foundation/TextException.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::IppS {

namespace {

template <class T>
T* allocateElements(int length) {
  if (length < 1) throw Ipp::TextException("invalid length");
  T* elements = nullptr;
  const Ipp::ByPixelType allocate{Ipp::storing(Primitives::ippsMalloc_32f),
                                  Ipp::storing(Primitives::ippsMalloc_8u)};
  if (allocate(&elements, length) != Ipp::ippStsNoErr) throw Ipp::TextException("not supported type");
  return elements;
}

template <class T>
void freeElements(T* elements) {
  Primitives::ippsFree(elements);
}

}  // namespace

template <class T>
IppSMemory<T>::IppSMemory() : length_(0) {}

template <class T>
IppSMemory<T>::IppSMemory(int length) : length_(length), buffer_(Ipp::shareBlock(Allocate(length))) {}

// Interface contract: a copy takes nothing over.
template <class T>
IppSMemory<T>::IppSMemory(const IppSMemory&) : length_(0) {}

template <class T>
IppSMemory<T>& IppSMemory<T>::operator=(const IppSMemory& source) = default;

template <class T>
IppSMemory<T>::~IppSMemory() = default;

template <class T>
int IppSMemory<T>::length() const {
  return length_;
}

template <class T>
std::shared_ptr<T[]> IppSMemory<T>::buffer() const {
  return buffer_;
}

template <class T>
std::unique_ptr<T[], void (*)(T*)> IppSMemory<T>::Allocate(int length) {
  return {allocateElements<T>(length), &freeElements<T>};
}

#define INSTANTIATE(T) template class IppSMemory<T>;
ZORVAN_IPP_ELEMENT_TYPES(INSTANTIATE)

}  // namespace Zorvan::IppS
