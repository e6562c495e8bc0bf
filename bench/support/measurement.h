#pragma once

// Times of contestants on the same data: the minimum of many short runs, taken in turns, so that a slower
// clock or a busy neighbour hits all alike.

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace Zorvan::Bench {

struct Contestant {
  std::string name;
  std::function<void(int calls)> run;
};

/// The loop over the calls is part of what is called, so that a call of some tens of nanoseconds does not
/// carry an indirect call.
template <class Call>
std::function<void(int)> repeated(Call call) {
  return [call](int calls) mutable {
    for (int i = 0; i < calls; ++i) {
      call();
      asm volatile("" : : : "memory");
    }
  };
}

struct Timing {
  double nanoseconds = std::numeric_limits<double>::infinity();

  /// How far the minima of the even and the odd runs lie apart, as a share of the smaller: what the machine's
  /// unrest may have left in the minimum.
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

Result measure(const Contest& contest, Effort effort);

/// The time of one contestant alone.
Timing measure(const Contestant& contestant, Effort effort);

}  // namespace Zorvan::Bench
