#pragma once

// The two Laplace filters down a column of vectors: each takes a source row after the other, and gives the
// output row in the middle of those it has taken. What the next rows share waits in registers.
//
// 3 by 3: nine times the pixel less the sum of the nine pixels around and at it; a row's sums of three
// neighbours serve three output rows.
//
// 5 by 5: the kernel has three different rows, so each source row is weighed three ways, as the outermost row
// of the kernel (A), the one beside the middle (B) and the middle (C), and an output row is the sum of five
// such responses:
//
//   A(y - 2) + B(y - 1) + C(y) + B(y + 1) + A(y + 2)
//
// The pixels to the left and right come from `loads`, which knows whether the row has them.

#include "zorvan/primitives/kernels/filtering/float_vectors.h"
#include "zorvan/primitives/kernels/filtering/pair_vectors.h"
#include "zorvan/primitives/kernels/filtering/row_ends.h"

namespace Zorvan::Primitives {
namespace {

template <class Sums>
struct Responses {
  Sums a, b, c;
};

/// 8-bit and 16-bit pixels in vectors V, the sums of even and of odd columns apart.
template <class T, class V>
struct PairRows {
  using Pixel = T;
  using Vector = V;
  using Lanes = PairLanes<T, V>;
  using Sums = Pair<V>;

  static Sums nothing() { return {V::broadcast(std::uint32_t{0}), V::broadcast(std::uint32_t{0})}; }
  static Sums add(Sums x, Sums y) { return {Lanes::add(x.even, y.even), Lanes::add(x.odd, y.odd)}; }
  static V pixels(Sums sums) { return Lanes::join(sums); }

  /// The sums of three neighbours.
  template <class Loads>
  static Sums three(const Loads& loads, const unsigned char* p, V here) {
    return {Lanes::add(Lanes::template weigh<1, 1>(loads.template load<-1>(p)), Lanes::odd(here)),
            Lanes::add(Lanes::even(here), Lanes::template weigh<1, 1>(loads.template load<1>(p)))};
  }

  static V nineLess(V here, Sums sums) {
    return pixels({Lanes::sub(Lanes::template weigh<9, 0>(here), sums.even),
                   Lanes::sub(Lanes::template weigh<0, 9>(here), sums.odd)});
  }

  template <class Loads>
  static Responses<Sums> responses(const Loads& loads, const unsigned char* p) {
    const V left = held(loads.template load<-2>(p)), here = held(loads.template load<0>(p)),
            right = held(loads.template load<2>(p));
    const Sums a = {sum(Lanes::template weigh<-1, -3>(left), Lanes::template weigh<-4, -3>(here),
                        Lanes::template weigh<-1, 0>(right)),
                    sum(Lanes::template weigh<0, -1>(left), Lanes::template weigh<-3, -4>(here),
                        Lanes::template weigh<-3, -1>(right))};
    const Sums b = {sum(Lanes::template weigh<-3, 0>(left), Lanes::template weigh<6, 0>(here),
                        Lanes::template weigh<-3, 0>(right)),
                    sum(Lanes::template weigh<0, -3>(left), Lanes::template weigh<0, 6>(here),
                        Lanes::template weigh<0, -3>(right))};
    // The kernel's middle row is twice the difference of the other two.
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
  using Operations = FloatOperations<V>;
  using Sums = typename Operations::Floats;

  static Sums nothing() { return Operations::of(V::broadcast(std::uint32_t{0})); }
  static Sums add(Sums x, Sums y) { return Operations::add(x, y); }
  static V pixels(Sums sums) { return Operations::vector(sums); }

  template <class Loads>
  static Sums three(const Loads& loads, const unsigned char* p, V here) {
    return add(add(at<-1>(loads, p), Operations::of(here)), at<1>(loads, p));
  }

  static V nineLess(V here, Sums sums) {
    return pixels(Operations::sub(times(9, Operations::of(here)), sums));
  }

  template <class Loads>
  static Responses<Sums> responses(const Loads& loads, const unsigned char* p) {
    const Sums outer = add(at<-2>(loads, p), at<2>(loads, p)), inner = add(at<-1>(loads, p), at<1>(loads, p)),
               here = Operations::of(held(loads.template load<0>(p)));
    return {Operations::sub(Operations::sub(Operations::negative(outer), times(3, inner)), times(4, here)),
            add(times(-3, outer), times(6, here)),
            add(add(times(-4, outer), times(6, inner)), times(20, here))};
  }

 private:
  template <int columns, class Loads>
  static Sums at(const Loads& loads, const unsigned char* p) {
    return Operations::of(loads.template load<columns>(p));
  }
  static Sums times(float factor, Sums v) { return Operations::times(factor, v); }
};

template <class Rows>
class Laplace3x3 {
 public:
  using Pixel = typename Rows::Pixel;
  using Vector = typename Rows::Vector;
  static constexpr int reach = 1;

  /// The result of the row before.
  template <class Loads>
  [[gnu::always_inline]] Vector take(const Loads& loads, const unsigned char* p) {
    const Vector here = held(loads.template load<0>(p));
    const Sums sums = Rows::three(loads, p, here);
    const Vector result = Rows::nineLess(here_, Rows::add(two_, sums));
    two_ = Rows::add(last_, sums);
    last_ = sums;
    here_ = here;
    return result;
  }

 private:
  using Sums = typename Rows::Sums;
  Sums last_ = Rows::nothing();
  Sums two_ = Rows::nothing();
  Vector here_ = Vector::broadcast(std::uint32_t{0});
};

template <class Rows>
class Laplace5x5 {
 public:
  using Pixel = typename Rows::Pixel;
  using Vector = typename Rows::Vector;
  static constexpr int reach = 2;

  /// The result of the row before the last.
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

 private:
  using Sums = typename Rows::Sums;
  /// Sums of so many responses, for the output rows to come.
  Sums four_ = Rows::nothing(), three_ = Rows::nothing(), two_ = Rows::nothing(), one_ = Rows::nothing();
};

}  // namespace
}  // namespace Zorvan::Primitives
