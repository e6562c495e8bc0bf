#pragma once

#include <memory>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::IppS {

/// A one-dimensional buffer: its length, and a share in the block that holds its elements.
///
/// Assignment shares the block; copy construction takes nothing over. The block goes when the last buffer
/// that shares it goes. Nothing protects the elements from threads that use them at once.
///
/// Failures are objects of a class derived from std::exception, not IppException, with the texts given at
/// the members. Exhausted memory is no failure here: it leaves the length set and the block empty. Only where
/// there is no memory for the text of a failure std::bad_alloc takes its place.
template <class T>
class ZORVAN_IPP_API IppSMemory {
 public:
  /// A buffer of length 0 without a block; it can be assigned to.
  IppSMemory();

  /// Allocates `length` elements, whose values are not set. Raises as Allocate() does.
  IppSMemory(int length);

  /// Takes nothing from the source: the new object has no block, and its length() means nothing until the
  /// object has been assigned to. Pass buffers on by assignment.
  IppSMemory(const IppSMemory& source);

  /// Gives up the own block and shares the source's. No element is copied.
  IppSMemory& operator=(const IppSMemory& source);

  /// Gives up the share in the block.
  ~IppSMemory();

  /// Number of elements.
  int length() const;

  /// A further share in the block; empty if there is none.
  std::shared_ptr<T[]> buffer() const;

  /// Allocates a block for `length` elements, aligned to 64 bytes. Values are not set. Null if the block
  /// would be too large or memory is exhausted.
  ///
  /// Raises "invalid length" if `length` is below 1, then "not supported type" unless elements are 32-bit
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
