#pragma once

// Loads and stores of the first bytes of a vector, for the ends of rows: nothing behind them is touched.
// Lanes that are not loaded are zero.

#include "zorvan/primitives/kernels/common/Plane.h"
#include "zorvan/primitives/kernels/common/Vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The bytes of a row from a pixel on.
template <class T>
inline const unsigned char* bytesAt(Plane<const T> plane, std::int64_t row, std::int64_t column) {
  return reinterpret_cast<const unsigned char*>(plane.at(row, column));
}
template <class T>
inline unsigned char* bytesAt(Plane<T> plane, std::int64_t row, std::int64_t column) {
  return reinterpret_cast<unsigned char*>(plane.at(row, column));
}

/// Copies up to a vector's bytes in pieces that halve from there.
template <class Vector>
inline void copyPieces(unsigned char* dst, const unsigned char* src, std::int64_t bytes) {
  const auto copyPiece = [&](auto piece) {
    constexpr std::int64_t size = sizeof(piece);
    if ((bytes & size) == 0) return;
    storeAs(dst, loadAs<decltype(piece)>(src));
    dst += size;
    src += size;
  };
  if constexpr (Vector::size > 16) copyPiece(decltype(Vector::bits){});
  copyPiece(__m128i{});
  copyPiece(std::uint64_t{});
  copyPiece(std::uint32_t{});
  copyPiece(std::uint16_t{});
  copyPiece(std::uint8_t{});
}

/// By way of a vector in memory. `bytes` is from 1 to the vector's.
template <class Vector>
struct PartialVector {
  static Vector load(const unsigned char* p, std::int64_t bytes) {
    alignas(Vector::size) unsigned char whole[Vector::size] = {};
    copyPieces<Vector>(whole, p, bytes);
    return Vector::loadAligned(whole);
  }
  static void store(Vector vector, unsigned char* p, std::int64_t bytes) {
    alignas(Vector::size) unsigned char whole[Vector::size];
    vector.storeAligned(whole);
    copyPieces<Vector>(p, whole, bytes);
  }
};

#ifdef __AVX512BW__
template <>
struct PartialVector<Vector64> {
  static __mmask64 first(std::int64_t bytes) { return _bzhi_u64(~0ull, static_cast<unsigned>(bytes)); }
  static Vector64 load(const unsigned char* p, std::int64_t bytes) {
    return {_mm512_maskz_loadu_epi8(first(bytes), p)};
  }
  static void store(Vector64 vector, unsigned char* p, std::int64_t bytes) {
    _mm512_mask_storeu_epi8(p, first(bytes), vector.bits);
  }
};
#endif

/// Loads and stores whole vectors.
template <class Vector>
struct WholeVectors {
  Vector load(const unsigned char* p) const { return Vector::load(p); }
  void store(Vector vector, unsigned char* p) const { vector.store(p); }
};

/// Loads and stores the first bytes of vectors.
template <class Vector>
struct FirstBytes {
  std::int64_t bytes;
  Vector load(const unsigned char* p) const { return PartialVector<Vector>::load(p, bytes); }
  void store(Vector vector, unsigned char* p) const { PartialVector<Vector>::store(vector, p, bytes); }
};

}  // namespace
}  // namespace Zorvan::Primitives
