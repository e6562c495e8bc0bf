#pragma once

#include <exception>
#include <iostream>

/// The tests of the examples use no framework: each counts its failures and returns the count from main().
inline int failures = 0;

#define CHECK(condition)                                                             \
  do {                                                                               \
    if (!(condition)) {                                                              \
      ++failures;                                                                    \
      std::cerr << __FILE__ << ":" << __LINE__ << ": not true: " #condition << "\n"; \
    }                                                                                \
  } while (false)

/// Whether `work` throws an exception of type Expected.
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
