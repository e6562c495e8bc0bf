#pragma once

// The streaming limit: loops that move an operation's bytes and do nothing else.
//
// Operands that are read are loaded once, operands that are written are stored once, operands that are
// updated are loaded and stored. The fastest method depends on the size and on the machine. So there are
// several loops, and the fastest of them is the limit.
//
// A block is 256 pixels of every operand, so that operands with pixels of different sizes advance together.
// For the pixels after the last whole block, a block is used that overlaps it. Smaller images are moved byte
// by byte.

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "bench/support/measurement.h"
#include "bench/support/operands.h"

namespace Zorvan::Bench {

#if defined(__AVX512F__)
inline constexpr int vectorBytes = 64;
#elif defined(__AVX__)
inline constexpr int vectorBytes = 32;
#else
inline constexpr int vectorBytes = 16;
#endif

using Vector = unsigned char __attribute__((vector_size(vectorBytes), aligned(1), may_alias));

inline constexpr std::int64_t blockPixels = 256;
inline constexpr std::int64_t prefetchBytes = 2048;
inline constexpr int cacheLineBytes = 64;

struct Method {
  int streams;  // parts of the image that one loop moves at the same time
  bool prefetched;
  bool nonTemporal;
};

/// Keeps the compiler from removing the computation of `vector`, and from knowing its value.
inline void keep(Vector& vector) { asm volatile("" : "+v"(vector)); }

inline void storeNonTemporal(std::byte* to, Vector vector) {
#if defined(__AVX512F__)
  _mm512_stream_si512(reinterpret_cast<__m512i*>(to), reinterpret_cast<__m512i>(vector));
#elif defined(__AVX__)
  _mm256_stream_si256(reinterpret_cast<__m256i*>(to), reinterpret_cast<__m256i>(vector));
#else
  _mm_stream_si128(reinterpret_cast<__m128i*>(to), reinterpret_cast<__m128i>(vector));
#endif
}

template <class Operand, Method method>
inline __attribute__((always_inline)) void moveBlock(std::byte* at, Vector& vector) {
  constexpr int bytes = static_cast<int>(blockPixels) * Operand::pixelBytes;
  for (int i = 0; i < bytes; i += vectorBytes) {
    if constexpr (method.prefetched) {
      if (i % cacheLineBytes == 0) {
        __builtin_prefetch(at + prefetchBytes + i, Operand::access == Access::read ? 0 : 1);
      }
    }
    if constexpr (Operand::access != Access::write) {
      vector = *reinterpret_cast<const Vector*>(at + i);
    }
    keep(vector);
    if constexpr (Operand::access != Access::read) {
      if constexpr (method.nonTemporal) {
        storeNonTemporal(at + i, vector);
      } else {
        *reinterpret_cast<Vector*>(at + i) = vector;
      }
    }
  }
}

/// For images smaller than a block.
template <class Operand>
inline void moveBytes(std::byte* at, std::int64_t bytes) {
  std::byte value{};
  for (std::int64_t i = 0; i < bytes; ++i) {
    if constexpr (Operand::access != Access::write) value = at[i];
    asm volatile("" : "+r"(value));
    if constexpr (Operand::access != Access::read) at[i] = value;
  }
}

template <Method method, class... Operands>
void moveAll(const std::tuple<typename Operands::Pixel*...>& pixels, std::int64_t count) {
  Vector vector{};
  const auto moveBlocksAt = [&]<Method blockMethod>(std::int64_t pixel) __attribute__((always_inline)) {
    std::apply(
        [&](auto*... of) {
          (moveBlock<Operands, blockMethod>(reinterpret_cast<std::byte*>(of + pixel), vector), ...);
        },
        pixels);
  };
  if (count < blockPixels) {
    std::apply(
        [&](auto*... of) {
          (moveBytes<Operands>(reinterpret_cast<std::byte*>(of), count * Operands::pixelBytes), ...);
        },
        pixels);
    return;
  }

  const std::int64_t blocks = count / blockPixels;
  const std::int64_t blocksOfStream = blocks / method.streams;
  for (std::int64_t block = 0; block < blocksOfStream; ++block) {
    for (int stream = 0; stream < method.streams; ++stream) {
      moveBlocksAt.template operator()<method>((stream * blocksOfStream + block) * blockPixels);
    }
  }
  for (std::int64_t block = blocksOfStream * method.streams; block < blocks; ++block) {
    moveBlocksAt.template operator()<method>(block * blockPixels);
  }
  if (blocks * blockPixels < count) {  // not at the begin of a line, which non-temporal stores need
    moveBlocksAt.template operator()<Method{1, false, false}>(count - blockPixels);
  }
  if constexpr (method.nonTemporal) _mm_sfence();
}

template <class Fill, class Copy, class... Operands>
void addByAccess(const Fill& fill, const Copy& copy) {
  using First = std::tuple_element_t<0, std::tuple<Operands...>>;
  if constexpr (sizeof...(Operands) == 1) {
    if constexpr (First::access == Access::write) fill();
  }
  if constexpr (sizeof...(Operands) == 2) {
    using Second = std::tuple_element_t<1, std::tuple<Operands...>>;
    if constexpr (First::access == Access::read && Second::access == Access::write &&
                  First::pixelBytes == Second::pixelBytes) {
      copy();
    }
  }
}

inline void repeatedStore(void* to, std::size_t bytes) {
  asm volatile("rep stosb" : "+D"(to), "+c"(bytes) : "a"(0) : "memory");
}

inline void repeatedMove(void* to, const void* from, std::size_t bytes) {
  asm volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(bytes) : : "memory");
}

/// The loops that compete for the limit of an operation with these operands.
template <class... Operands>
std::vector<Contestant> limitLoops(const std::tuple<typename Operands::Pixel*...>& pixels, Size size) {
  const std::int64_t count = pixelsOf(size);
  std::vector<Contestant> loops;
  const auto add = [&](const char* name, auto loop) { loops.push_back({name, repeated(loop)}); };
  const auto addMethod = [&]<Method method>(const char* name) {
    add(name, [=] { moveAll<method, Operands...>(pixels, count); });
  };
  addMethod.template operator()<Method{1, false, false}>("loop");
  addMethod.template operator()<Method{1, true, false}>("prefetched loop");
  addMethod.template operator()<Method{4, false, false}>("four streams");
  addMethod.template operator()<Method{4, true, false}>("four prefetched streams");
  if constexpr (((Operands::access != Access::read) || ...)) {
    addMethod.template operator()<Method{1, false, true}>("non-temporal loop");
    addMethod.template operator()<Method{1, true, true}>("non-temporal prefetched loop");
    addMethod.template operator()<Method{4, false, true}>("four non-temporal streams");
  }

  void* const first = std::get<0>(pixels);
  void* const last = std::get<sizeof...(Operands) - 1>(pixels);
  const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(*std::get<0>(pixels));
  const auto addFills = [&] {
    add("library fill", [=] { std::memset(last, 0, bytes); });
    add("repeated store", [=] { repeatedStore(last, bytes); });
  };
  const auto addCopies = [&] {
    add("library copy", [=] { std::memcpy(last, first, bytes); });
    add("repeated move", [=] { repeatedMove(last, first, bytes); });
  };
  addByAccess<decltype(addFills), decltype(addCopies), Operands...>(addFills, addCopies);
  return loops;
}

}  // namespace Zorvan::Bench
