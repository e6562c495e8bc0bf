#pragma once

// The two Laplace filters down a column of vectors. Each takes the source rows one after the other and
// returns the output row in the middle of the last three or five. Sums that later output rows need stay in
// registers.
//
// 3 by 3: nine times the pixel minus the sum of the nine pixels of its neighbourhood; the sums of three
// neighbours in a source row serve three output rows.
//
// 5 by 5: the kernel has three different rows, so each source row is weighted three times, as the outermost
// row of the kernel (A), as the row next to the middle (B) and as the middle row (C). An output row is the
// sum of five such responses:
//
//   A(y - 2) + B(y - 1) + C(y) + B(y + 1) + A(y + 2)
//
// The pixels to the left and right come from `loads`, which replaces those that the row does not have.

#include "zorvan/primitives/kernels/filtering/pair_vectors.h"
#include "zorvan/primitives/kernels/filtering/row_ends.h"

namespace Zorvan::Primitives::Laplace {
namespace {

template <class Sums>
struct Responses {
  Sums a, b, c;
};

/// 8-bit and 16-bit pixels in vectors V, with separate sums of even and odd columns.
template <class T, class V>
struct PairRows {
  using Pixel = T;
  using Vector = V;
  using Lanes = PairLanes<T, V>;
  using Sums = Pair<V>;

  static Sums add(Sums x, Sums y) { return {Lanes::add(x.even, y.even), Lanes::add(x.odd, y.odd)}; }
  static V pixels(Sums sums) { return Lanes::join(sums); }

  /// The sums of three neighbours. Two of them are the pair of pixels in a lane.
  template <class Loads>
  static Sums sumOfThree(const Loads& loads, const unsigned char* p, V here) {
    const V pair = Lanes::template weight<1, 1>(here);
    return {Lanes::add(Lanes::even(loads.template load<-1>(p)), pair),
            Lanes::add(pair, Lanes::odd(loads.template load<1>(p)))};
  }

  static Sums inRegisters(const Sums& sums) { return {inRegister(sums.even), inRegister(sums.odd)}; }

  static V nineTimesMinus(V here, Sums sums) {
    return pixels({Lanes::sub(Lanes::template weight<9, 0>(here), sums.even),
                   Lanes::sub(Lanes::template weight<0, 9>(here), sums.odd)});
  }

  template <class Loads>
  static Responses<Sums> responses(const Loads& loads, const unsigned char* p) {
    const V left = inRegister(loads.template load<-2>(p)), here = inRegister(loads.template load<0>(p)),
            right = inRegister(loads.template load<2>(p));
    const Sums a = {sum(Lanes::template weight<-1, -3>(left), Lanes::template weight<-4, -3>(here),
                        Lanes::template weight<-1, 0>(right)),
                    sum(Lanes::template weight<0, -1>(left), Lanes::template weight<-3, -4>(here),
                        Lanes::template weight<-3, -1>(right))};
    const Sums b = {sum(Lanes::template weight<-3, 0>(left), Lanes::template weight<6, 0>(here),
                        Lanes::template weight<-3, 0>(right)),
                    sum(Lanes::template weight<0, -3>(left), Lanes::template weight<0, 6>(here),
                        Lanes::template weight<0, -3>(right))};
    // The middle row of the kernel is twice the difference of the other two.
    return {a, b, {twice(Lanes::sub(b.even, a.even)), twice(Lanes::sub(b.odd, a.odd))}};
  }

 private:
  static V sum(V x, V y, V z) { return Lanes::add(Lanes::add(x, y), z); }
  static V twice(V x) { return Lanes::add(x, x); }
};

/// Float pixels in vectors V.
template <class V>
struct FloatRows {
  using Pixel = float;
  using Vector = V;
  using Sums = VectorOfFloats<V::size>;

  static Sums add(Sums x, Sums y) { return x + y; }
  static V pixels(Sums sums) { return __builtin_bit_cast(V, sums); }

  template <class Loads>
  static Sums sumOfThree(const Loads& loads, const unsigned char* p, V here) {
    return at<-1>(loads, p) + floats(here) + at<1>(loads, p);
  }

  static Sums inRegisters(const Sums& sums) { return floats(inRegister(V{__builtin_bit_cast(V, sums)})); }

  static V nineTimesMinus(V here, Sums sums) { return pixels(times(9, floats(here)) - sums); }

  template <class Loads>
  static Responses<Sums> responses(const Loads& loads, const unsigned char* p) {
    const Sums outer = at<-2>(loads, p) + at<2>(loads, p), inner = at<-1>(loads, p) + at<1>(loads, p),
               here = floats(inRegister(loads.template load<0>(p)));
    return {negative(outer) - times(3, inner) - times(4, here), times(-3, outer) + times(6, here),
            times(-4, outer) + times(6, inner) + times(20, here)};
  }

 private:
  static Sums floats(V v) { return __builtin_bit_cast(Sums, v.bits); }
  template <int columns, class Loads>
  static Sums at(const Loads& loads, const unsigned char* p) {
    return floats(loads.template load<columns>(p));
  }
  /// Spelled out, since a compiler that knows a negation may move it, and so change the sign of a NaN.
  static Sums negative(Sums v) {
    return floats({__builtin_bit_cast(V, v).bits ^ V::broadcast(std::uint32_t{0x80000000}).bits});
  }
  static Sums times(float factor, Sums v) { return broadcastFloats<Sums>(factor) * v; }
};

template <class Rows>
class Filter3x3 {
 public:
  using Pixel = typename Rows::Pixel;
  using Vector = typename Rows::Vector;
  static constexpr int reach = 1;

  /// Takes the next row and returns the result of the row before it.
  template <class Loads>
  [[gnu::always_inline]] Vector take(const Loads& loads, const unsigned char* p) {
    const Vector here = inRegister(loads.template load<0>(p));
    const Sums sums = Rows::sumOfThree(loads, p, here);
    const Vector result = Rows::nineTimesMinus(here_, Rows::add(two_, sums));
    two_ = Rows::add(last_, sums);
    last_ = sums;
    here_ = here;
    return result;
  }

  /// Takes over all sums. Spelled out, since compilers copy an object in parts that are not whole vectors.
  [[gnu::always_inline]] void assign(const Filter3x3& other) {
    last_ = Rows::inRegisters(other.last_);
    two_ = Rows::inRegisters(other.two_);
    here_ = inRegister(other.here_);
  }

 private:
  using Sums = typename Rows::Sums;
  Sums last_, two_;
  Vector here_;
};

template <class Rows>
class Filter5x5 {
 public:
  using Pixel = typename Rows::Pixel;
  using Vector = typename Rows::Vector;
  static constexpr int reach = 2;

  /// Takes the next row and returns the result of the second row before it.
  template <class Loads>
  [[gnu::always_inline]] Vector take(const Loads& loads, const unsigned char* p) {
    const auto row = Rows::responses(loads, p);
    const Vector result = Rows::pixels(Rows::add(four_, row.a));
    four_ = Rows::add(three_, row.b);
    three_ = Rows::add(two_, row.c);
    two_ = Rows::add(one_, row.b);
    one_ = row.a;
    return result;
  }

  /// Takes over all sums.
  [[gnu::always_inline]] void assign(const Filter5x5& other) {
    four_ = Rows::inRegisters(other.four_);
    three_ = Rows::inRegisters(other.three_);
    two_ = Rows::inRegisters(other.two_);
    one_ = Rows::inRegisters(other.one_);
  }

 private:
  using Sums = typename Rows::Sums;
  /// Sums of that number of responses, for the following output rows.
  Sums four_, three_, two_, one_;
};

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
