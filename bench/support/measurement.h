#pragma once

// Times of contestants on the same data: the minimum of many short runs. The contestants run alternately, so
// that a slower clock or other load affects all of them.

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace Zorvan::Bench {

struct Contestant {
  std::string name;
  std::function<void(int calls)> run;
};

/// Runs a call several times. The loop is inside the function object, so that a call of some tens of
/// nanoseconds does not include an indirect call.
template <class Call>
std::function<void(int)> repeated(Call call) {
  return [call](int calls) mutable {
    for (int i = 0; i < calls; ++i) {
      call();
      asm volatile("" : : : "memory");
    }
  };
}

/// Keeps the compiler from removing the computation of an unused result.
template <class R>
void use(const R& result) {
  asm volatile("" : : "m"(result));
}

struct Timing {
  double nanoseconds = std::numeric_limits<double>::infinity();

  /// The difference between the minima of the even and the odd runs, relative to the smaller one. It
  /// estimates the influence of other load on the minimum.
  double noise = 0;
};

struct Contest {
  Contestant ours;
  Contestant plain;
  std::vector<Contestant> limits;
};

struct Result {
  Timing ours;
  Timing plain;
  Timing limit;
  std::string limitLoop;
  int rounds;
};

struct Effort {
  double seconds;  // for one contest
  int leastRounds;
};

/// The nanoseconds of one of several calls.
double timeOf(const Contestant& contestant, int calls);

Result measure(const Contest& contest, Effort effort);

/// The time of one contestant alone.
Timing measure(const Contestant& contestant, Effort effort);

}  // namespace Zorvan::Bench
