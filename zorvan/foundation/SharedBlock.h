#pragma once

#include <memory>
#include <new>
#include <utility>

namespace Zorvan::Ipp {

/// The block, from now on counted. When there is no memory for the count the block goes and the result is
/// empty, as when there was none for the block.
template <class T, class Deleter>
std::shared_ptr<T[]> shareBlock(std::unique_ptr<T[], Deleter> block) {
  try {
    return std::shared_ptr<T[]>(std::move(block));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace Zorvan::Ipp
