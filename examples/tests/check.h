#pragma once

#include <exception>
#include <iostream>

/// Tests of the examples need no framework: each counts its failures and returns them from main().
inline int failures = 0;

#define CHECK(condition)                                                             \
  do {                                                                               \
    if (!(condition)) {                                                              \
      ++failures;                                                                    \
      std::cerr << __FILE__ << ":" << __LINE__ << ": not true: " #condition << "\n"; \
    }                                                                                \
  } while (false)

/// Whether `work` throws an Expected.
template <class Expected, class Work>
bool throws(Work work) {
  try {
    work();
  } catch (const Expected&) {
    return true;
  } catch (const std::exception&) {
  }
  return false;
}
