// Prints the names of all entries in their order.

#include <cstdio>

int main() {
#define NAME(name, ...) std::puts(#name);
#define ENTRY(...) NAME(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef NAME
}
