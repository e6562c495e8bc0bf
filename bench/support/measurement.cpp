#include "bench/support/measurement.h"

#include <algorithm>
#include <chrono>

namespace Zorvan::Bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double runNanoseconds = 20'000;  // much longer than a clock query, much shorter than a time slice
constexpr int mostRounds = 4000;

// After these rounds, loops that are slower than the best one by this factor are not measured further.
constexpr int trialRounds = 4;
constexpr double hopeless = 1.3;

class Lane {
 public:
  explicit Lane(const Contestant& contestant) : contestant_(&contestant) {
    contestant.run(1);
    while (calls_ < (1 << 20) && timeOf(contestant, calls_) * calls_ < runNanoseconds) calls_ *= 2;
  }

  void run(int round) {
    contestant_->run(1);  // loads this contestant's data into the caches
    double& best = best_[round % 2];
    best = std::min(best, timeOf(*contestant_, calls_));
  }

  const std::string& name() const { return contestant_->name; }
  double nanoseconds() const { return std::min(best_[0], best_[1]); }
  Timing timing() const { return {nanoseconds(), std::max(best_[0], best_[1]) / nanoseconds() - 1}; }

 private:
  const Contestant* contestant_;
  int calls_ = 1;
  double best_[2] = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
};

double bestOf(const std::vector<Lane>& lanes) {
  double best = std::numeric_limits<double>::infinity();
  for (const Lane& lane : lanes) best = std::min(best, lane.nanoseconds());
  return best;
}

}  // namespace

double timeOf(const Contestant& contestant, int calls) {
  const auto start = Clock::now();
  contestant.run(calls);
  const std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
  return elapsed.count() / calls;
}

Result measure(const Contest& contest, Effort effort) {
  Lane ours(contest.ours);
  Lane plain(contest.plain);
  std::vector<Lane> limits(contest.limits.begin(), contest.limits.end());

  const auto end = Clock::now() + std::chrono::duration<double>(effort.seconds);
  int round = 0;
  while (round < effort.leastRounds || (Clock::now() < end && round < mostRounds)) {
    ours.run(round);
    plain.run(round);
    for (Lane& lane : limits) lane.run(round);
    if (++round == trialRounds) {
      const double most = hopeless * bestOf(limits);
      std::erase_if(limits, [&](const Lane& lane) { return lane.nanoseconds() > most; });
    }
  }

  const auto limit = std::min_element(limits.begin(), limits.end(), [](const Lane& a, const Lane& b) {
    return a.nanoseconds() < b.nanoseconds();
  });
  return {ours.timing(), plain.timing(), limit->timing(), limit->name(), round};
}

Timing measure(const Contestant& contestant, Effort effort) {
  Lane lane(contestant);
  const auto end = Clock::now() + std::chrono::duration<double>(effort.seconds);
  for (int round = 0; round < effort.leastRounds || (Clock::now() < end && round < mostRounds); ++round) {
    lane.run(round);
  }
  return lane.timing();
}

}  // namespace Zorvan::Bench
