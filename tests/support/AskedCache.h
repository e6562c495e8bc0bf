#pragma once

namespace Zorvan::Test {

struct CacheAnswer {
  bool known;
  int bytes;
};

/// Answers a plan's question about the cache and counts how often it is asked.
struct AskedCache {
  CacheAnswer answer;
  int asked = 0;
  auto ask() {
    return [this] { return ++asked, answer; };
  }
};

}  // namespace Zorvan::Test
