#pragma once

// Vectors of bytes with their loads and stores, in every width that the variant being built has.
// Plain `load` and `store` take any address; the aligned and streaming forms take multiples of the width.
//
// Widths that the variant lacks are declared only, so that tables of variants can name them.
//
// This header is compiled once per variant, so all of it has internal linkage.

// GCC 12 takes the undefined sources of its own unmasked 512-bit intrinsics for mistakes.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <cstdint>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Primitives {
namespace {

/// A value from or to any address.
template <class T>
inline T loadAs(const void* address) {
  T value;
  __builtin_memcpy(&value, address, sizeof value);
  return value;
}
template <class T>
inline void storeAs(void* address, T value) {
  __builtin_memcpy(address, &value, sizeof value);
}

/// A whole vector of integers or floats; `aligned` promises that the address is a multiple of its size.
template <class Lanes, bool aligned>
inline Lanes loadLanes(const void* p) {
  if constexpr (!aligned) return loadAs<Lanes>(p);
  return *static_cast<const Lanes*>(p);
}
template <bool aligned, class Lanes>
inline void storeLanes(void* p, Lanes x) {
  if constexpr (aligned) {
    *static_cast<Lanes*>(p) = x;
  } else {
    storeAs(p, x);
  }
}
/// A streaming store of a vector of floats.
inline void streamLanes(void* p, __m128 x) { _mm_stream_ps(static_cast<float*>(p), x); }

inline std::uintptr_t addressOf(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

/// Bytes from `address` up to the next multiple of `boundary`, a power of two.
inline std::int64_t bytesToBoundary(const void* address, std::int64_t boundary) {
  return static_cast<std::int64_t>(-reinterpret_cast<std::uintptr_t>(address) &
                                   static_cast<std::uintptr_t>(boundary - 1));
}
inline bool isAligned(const void* address, std::int64_t boundary) {
  return bytesToBoundary(address, boundary) == 0;
}

/// Makes streaming stores visible in order. Ends every path that used them.
inline void fenceStores() { _mm_sfence(); }

struct Vector16 {
  static constexpr int size = 16;
  __m128i bits;

  static Vector16 load(const void* p) { return {_mm_loadu_si128(static_cast<const __m128i*>(p))}; }
  static Vector16 loadAligned(const void* p) { return {_mm_load_si128(static_cast<const __m128i*>(p))}; }
  void store(void* p) const { _mm_storeu_si128(static_cast<__m128i*>(p), bits); }
  void storeAligned(void* p) const { _mm_store_si128(static_cast<__m128i*>(p), bits); }
  void stream(void* p) const { _mm_stream_si128(static_cast<__m128i*>(p), bits); }

  static Vector16 broadcast(u8 value) { return {_mm_set1_epi8(static_cast<char>(value))}; }
  static Vector16 broadcast(u16 value) { return {_mm_set1_epi16(static_cast<short>(value))}; }
  static Vector16 broadcast(std::uint32_t value) { return {_mm_set1_epi32(static_cast<int>(value))}; }
};

#ifdef __AVX__
struct Vector32 {
  static constexpr int size = 32;
  __m256i bits;

  static Vector32 load(const void* p) { return {_mm256_loadu_si256(static_cast<const __m256i*>(p))}; }
  void store(void* p) const { _mm256_storeu_si256(static_cast<__m256i*>(p), bits); }
  void storeAligned(void* p) const { _mm256_store_si256(static_cast<__m256i*>(p), bits); }
  void stream(void* p) const { _mm256_stream_si256(static_cast<__m256i*>(p), bits); }

  static Vector32 broadcast(u8 value) { return {_mm256_set1_epi8(static_cast<char>(value))}; }
  static Vector32 broadcast(u16 value) { return {_mm256_set1_epi16(static_cast<short>(value))}; }
  static Vector32 broadcast(std::uint32_t value) { return {_mm256_set1_epi32(static_cast<int>(value))}; }
};
#else
struct Vector32;  // for policy tables
#endif

#ifdef __AVX512F__
struct Vector64 {
  static constexpr int size = 64;
  __m512i bits;

  static Vector64 load(const void* p) { return {_mm512_loadu_si512(p)}; }
  void store(void* p) const { _mm512_storeu_si512(p, bits); }
  void storeAligned(void* p) const { _mm512_store_si512(p, bits); }
  void stream(void* p) const { _mm512_stream_si512(static_cast<__m512i*>(p), bits); }

  static Vector64 broadcast(u8 value) { return {_mm512_set1_epi8(static_cast<char>(value))}; }
  static Vector64 broadcast(u16 value) { return {_mm512_set1_epi16(static_cast<short>(value))}; }
  static Vector64 broadcast(std::uint32_t value) { return {_mm512_set1_epi32(static_cast<int>(value))}; }
};
#else
struct Vector64;
#endif

/// A load whose alignment is known to the compiler.
template <class Vector, bool aligned>
inline Vector loadVector(const void* p) {
  if constexpr (aligned) return Vector::loadAligned(p);
  if constexpr (!aligned) return Vector::load(p);
}

/// Vectors of floats by their width in bytes.
template <int bytes>
struct VectorOfFloatsIn;
template <>
struct VectorOfFloatsIn<16> {
  using type = __m128;
};
#ifdef __AVX__
template <>
struct VectorOfFloatsIn<32> {
  using type = __m256;
};
#endif
#ifdef __AVX512F__
template <>
struct VectorOfFloatsIn<64> {
  using type = __m512;
};
#endif
template <int bytes>
using VectorOfFloats = typename VectorOfFloatsIn<bytes>::type;

/// Loads and stores of whole vectors of floats at any address.
template <class F>
inline F loadFloats(const float* p) {
  if constexpr (sizeof(F) == 16) return _mm_loadu_ps(p);
#ifdef __AVX__
  if constexpr (sizeof(F) == 32) return _mm256_loadu_ps(p);
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(F) == 64) return _mm512_loadu_ps(p);
#endif
}
inline void storeFloats(float* p, __m128 x) { _mm_storeu_ps(p, x); }
#ifdef __AVX__
inline void storeFloats(float* p, __m256 x) { _mm256_storeu_ps(p, x); }
#endif
#ifdef __AVX512F__
inline void storeFloats(float* p, __m512 x) { _mm512_storeu_ps(p, x); }
#endif

}  // namespace
}  // namespace Zorvan::Primitives
