#pragma once

#include <memory>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::IppS {

/// A one-dimensional buffer: its length, and shared ownership of the block that holds its elements.
///
/// Assignment shares the block. Copy construction copies nothing. The block is freed with the last buffer
/// that shares it. The elements are not protected against simultaneous use by several threads.
///
/// Failures are objects of a class derived from std::exception, not IppException, with the texts stated at
/// the members. Exhausted memory does not count as a failure: the length is then set, and there is no block.
/// If there is no memory for the text of a failure, std::bad_alloc is thrown instead.
template <class T>
class ZORVAN_IPP_API IppSMemory {
 public:
  /// A buffer of length 0 without a block. It can be assigned to.
  IppSMemory();

  /// Allocates `length` elements, whose values are not set. Throws as Allocate() does.
  IppSMemory(int length);

  /// Copies nothing from the source: the new object has no block, and its length() is not set until the
  /// object has been assigned to. Use assignment to share a buffer.
  IppSMemory(const IppSMemory& source);

  /// Releases the own block and shares the source's. No element is copied.
  IppSMemory& operator=(const IppSMemory& source);

  /// Releases the block.
  ~IppSMemory();

  /// Number of elements.
  int length() const;

  /// A pointer that shares ownership of the block; null if there is none.
  std::shared_ptr<T[]> buffer() const;

  /// Allocates a block for `length` elements, aligned to 64 bytes. Values are not set. Returns null if the
  /// block would be too large or memory is exhausted.
  ///
  /// Throws "invalid length" if `length` is below 1, then "not supported type" unless elements are 32-bit
  /// float or 8-bit unsigned.
  static std::unique_ptr<T[], void (*)(T*)> Allocate(int length);

 private:
  int length_;
  std::shared_ptr<T[]> buffer_;
};

#define ZORVAN_IPP_DECLARE(T) extern template class IppSMemory<T>;
ZORVAN_IPP_ELEMENT_TYPES(ZORVAN_IPP_DECLARE)
#undef ZORVAN_IPP_DECLARE

}  // namespace Zorvan::IppS
