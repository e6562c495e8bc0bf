#pragma once

#include <memory>
#include <new>
#include <utility>

namespace Zorvan::Ipp {

/// Shares ownership of the block. If there is no memory for the reference count, the block is freed and the
/// result is null.
template <class T, class Deleter>
std::shared_ptr<T[]> shareBlock(std::unique_ptr<T[], Deleter> block) {
  try {
    return std::shared_ptr<T[]>(std::move(block));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace Zorvan::Ipp
