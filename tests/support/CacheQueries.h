#pragma once

namespace Zorvan::Test {

struct CacheAnswer {
  bool known;
  int bytes;
};

/// Answers a plan's queries of the cache and counts them.
struct CacheQueries {
  CacheAnswer answer;
  int queries = 0;
  auto query() {
    return [this] { return ++queries, answer; };
  }
};

}  // namespace Zorvan::Test
