// Counts the heap requests of facade calls, with its own definition of malloc. Sanitizers and valgrind
// replace malloc too, so this program does not run with them.

#include <cstddef>
#include <cstdlib>
#include <vector>

#include "tests/facades/Support.h"

extern "C" void* __libc_malloc(std::size_t bytes);

namespace {
int allocations = 0;
}

extern "C" void* malloc(std::size_t bytes) {
  ++allocations;
  return __libc_malloc(bytes);
}

namespace Zorvan::Test {
namespace {

using Ipp::Image::Initializer;

template <class Call>
int allocationsOf(Call call) {
  call();  // leaves out what is initialised once per process
  const int before = allocations;
  call();
  return allocations - before;
}

TEST(Allocations, TheWatchSeesAnAllocation) {
  EXPECT_GE(allocationsOf([] {
              void* volatile block = std::malloc(10);  // volatile: a pair of calls may be optimised away
              std::free(block);
            }),
            1);
  EXPECT_GE(allocationsOf([] { IppIMemory<u8>(5, 5); }), 1);
}

TEST(Allocations, FillCopyAndConvertMakeNone) {
  std::vector<u8> bytes(64, 255), others(64);
  std::vector<int> integers(64);
  std::vector<float> floats(64);
  auto image = wrap(bytes, 8, 8), other = wrap(others, 8, 8);
  auto integer = wrap(integers, 8, 8);
  auto real = wrap(floats, 8, 8);
  const Rect rect{1, 1, 5, 5};
  EXPECT_EQ(allocationsOf([&] { Initializer::Fill(image, u8(3), rect); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::FillWithMask(other, image, u8(3), rect); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::Copy(image, other, rect); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::Copy(image, other); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::CopyWithMask(image, other, image, rect); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::Convert(integer, image, rect); }), 0);
  EXPECT_EQ(allocationsOf([&] { Initializer::Convert(integer, real, rect); }), 0);
}

}  // namespace
}  // namespace Zorvan::Test
