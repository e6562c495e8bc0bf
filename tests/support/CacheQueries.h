#pragma once

namespace Zorvan::Test {

struct CacheAnswer {
  bool known;
  int bytes;
};

/// Answers a plan's question about the cache and counts how often it is asked.
struct CacheQueries {
  CacheAnswer answer;
  int queries = 0;
  auto query() {
    return [this] { return ++queries, answer; };
  }
};

}  // namespace Zorvan::Test
