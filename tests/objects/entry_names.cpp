// Prints whether this build is optimised, then the names of all entries in their order.

#include <cstdio>

int main() {
#if defined(__OPTIMIZE__) && !defined(__OPTIMIZE_SIZE__)
  std::puts("optimised");
#else
  std::puts("unoptimised");
#endif
#define NAME(name, ...) std::puts(#name);
#define ENTRY(...) NAME(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef NAME
}
