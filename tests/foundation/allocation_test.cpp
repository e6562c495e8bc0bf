#include "zorvan/foundation/Allocation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "zorvan/foundation/address_sanitizer.h"
#include "zorvan/primitives/frame/Entries.h"

namespace {

using namespace Zorvan::Primitives;

constexpr int highest = std::numeric_limits<int>::max();
constexpr int lowest = std::numeric_limits<int>::min();
constexpr int untouched = 0x5A5A5A5A;

std::uintptr_t addressOf(const void* block) { return reinterpret_cast<std::uintptr_t>(block); }

/// The word below the block. The address sanitizer forbids others than the library to read it.
[[gnu::no_sanitize_address]] std::uintptr_t heapAddressOf(const void* block) {
  return addressOf(static_cast<void* const*>(block)[-1]);
}

bool isAligned(const void* block) { return block != nullptr && addressOf(block) % 64 == 0; }

TEST(CoreMalloc, AlignsBlocksOfEachLength) {
  for (int length = 1; length <= 300; ++length) {
    void* const block = coreMalloc(length);
    ASSERT_TRUE(isAligned(block)) << length;
    std::memset(block, 0xA5, static_cast<std::size_t>(length));
    coreFree(block);
  }
}

TEST(CoreMalloc, StoresTheHeapsAddressBelowTheBlock) {
  void* const block = coreMalloc(1);
  ASSERT_TRUE(isAligned(block));
  const std::uintptr_t base = heapAddressOf(block);
  EXPECT_EQ(addressOf(block), (base + 71) & ~std::uintptr_t{63});
  coreFree(block);
}

TEST(CoreMalloc, RefusesLengthsThatAreNotPositive) {
  for (const int length : {0, -1, -64, lowest}) EXPECT_EQ(coreMalloc(length), nullptr) << length;
}

TEST(CoreMalloc, RefusesLengthsWhoseBlockWouldWrap) {
  for (const int length : {0x7FFFFFB8, 0x7FFFFFB9, highest}) EXPECT_EQ(coreMalloc(length), nullptr) << length;
}

TEST(CoreMalloc, LetsTheAddressSanitizerSeeTheBytesAround) {
#ifndef ZORVAN_ADDRESS_SANITIZER
  GTEST_SKIP() << "not built with the address sanitizer";
#else
  for (const int length : {1, 7, 8, 61, 64, 100}) {
    volatile char* const block = static_cast<char*>(coreMalloc(length));
    block[0] = 1;
    block[length - 1] = 1;
    for (const int outside : {-9, -8, -1, length, length + 7}) {
      EXPECT_DEATH(block[outside] = 1, "AddressSanitizer") << outside << " of " << length;
    }
    coreFree(const_cast<char*>(block));
  }
  // The heap gets the whole block back.
  for (int i = 0; i < 100; ++i) {
    coreFree(coreMalloc(1000));
    void* const block = std::malloc(1072);
    std::memset(block, 1, 1072);
    std::free(block);
  }
#endif
}

TEST(CoreFree, AcceptsNull) {
  coreFree(nullptr);
  ippiFree(nullptr);
  ippsFree(nullptr);
}

TEST(Free, FreesBothTypesOfBlock) {
  int step = 0;
  ippsFree(ippiMalloc_8u_C1(5, 5, &step));
  ippiFree(ippsMalloc_8u(25));
  coreFree(ippsMalloc_32f(25));
}

// The image allocators differ in their element type only.
template <class T, T* (*allocate)(int, int, int*)>
struct ImageAllocator {
  static constexpr int elementBytes = sizeof(T);
  static T* allocateImage(int width, int height, int* step) { return allocate(width, height, step); }
};

template <class A>
class ImageMalloc : public testing::Test {
 protected:
  static constexpr int elementBytes = A::elementBytes;

  /// The step that an allocation writes which has to fail.
  static int stepOfRefused(int width, int height) {
    int step = untouched;
    EXPECT_EQ(A::allocateImage(width, height, &step), nullptr) << width << " x " << height;
    return step;
  }
};

using ImageAllocators =
    testing::Types<ImageAllocator<Zorvan::u8, &ippiMalloc_8u_C1>,
                   ImageAllocator<Zorvan::u16, &ippiMalloc_16u_C1>,
                   ImageAllocator<Zorvan::s16, &ippiMalloc_16s_C1>, ImageAllocator<int, &ippiMalloc_32s_C1>,
                   ImageAllocator<float, &ippiMalloc_32f_C1>>;
TYPED_TEST_SUITE(ImageMalloc, ImageAllocators);

TYPED_TEST(ImageMalloc, RoundsRowsUpToWholeLines) {
  for (int width = 1; width <= 200; ++width) {
    int step = untouched;
    auto* const pixels = TypeParam::allocateImage(width, 3, &step);
    ASSERT_TRUE(isAligned(pixels)) << width;
    const int rowBytes = width * this->elementBytes;
    EXPECT_EQ(step % 64, 0) << width;
    EXPECT_GE(step, rowBytes) << width;
    EXPECT_LT(step - rowBytes, 64) << width;
    std::memset(pixels, 0xA5, static_cast<std::size_t>(step) * 3);
    ippiFree(pixels);
  }
}

TYPED_TEST(ImageMalloc, RefusesANullStep) { EXPECT_EQ(TypeParam::allocateImage(4, 4, nullptr), nullptr); }

TYPED_TEST(ImageMalloc, WritesNoStepForSizesThatAreNotPositive) {
  EXPECT_EQ(this->stepOfRefused(0, 5), 0);
  EXPECT_EQ(this->stepOfRefused(5, 0), 0);
  EXPECT_EQ(this->stepOfRefused(-1, 1), 0);
  EXPECT_EQ(this->stepOfRefused(1, -1), 0);
  EXPECT_EQ(this->stepOfRefused(lowest, lowest), 0);
}

TYPED_TEST(ImageMalloc, WritesNoStepForRowsThatAreTooLong) {
  EXPECT_EQ(this->stepOfRefused(highest, 1), 0);
  // The first row whose bytes exceed 31 bits; the row of an 8-bit image cannot.
  if (this->elementBytes > 1) {
    EXPECT_EQ(this->stepOfRefused(highest / this->elementBytes + 1, 1), 0);
  }
}

TYPED_TEST(ImageMalloc, WritesNoStepWhereRoundingTheRowWraps) {
  const int widest = 0x7FFFFFC0 / this->elementBytes;
  EXPECT_EQ(this->stepOfRefused(widest + 1, 1), 0);
  EXPECT_EQ(this->stepOfRefused(highest / this->elementBytes, 1), 0);
}

TYPED_TEST(ImageMalloc, WritesTheStepBeforeTheTotalIsTested) {
  EXPECT_EQ(this->stepOfRefused(0x40000000 / this->elementBytes, 2), 0x40000000);
  EXPECT_EQ(this->stepOfRefused(64 / this->elementBytes, 0x02000000), 64);
  EXPECT_EQ(this->stepOfRefused(1, highest), 64);
  EXPECT_EQ(this->stepOfRefused(0x40000000 / this->elementBytes, highest), 0x40000000);
  // A total that wraps to a small positive number in 32 bits.
  EXPECT_EQ(this->stepOfRefused(0x40000040 / this->elementBytes, 4), 0x40000040);
}

TYPED_TEST(ImageMalloc, KeepsTheStepOfABlockThatWouldWrap) {
  EXPECT_EQ(this->stepOfRefused(0x7FFFFFC0 / this->elementBytes, 1), 0x7FFFFFC0);
}

TEST(ImageMallocSteps, AreThoseOfKnownWidths) {
  const auto step = [](auto allocate, int width) {
    int result = untouched;
    ippiFree(allocate(width, 1, &result));
    return result;
  };
  EXPECT_EQ(step(ippiMalloc_8u_C1, 1), 64);
  EXPECT_EQ(step(ippiMalloc_8u_C1, 64), 64);
  EXPECT_EQ(step(ippiMalloc_8u_C1, 65), 128);
  EXPECT_EQ(step(ippiMalloc_16u_C1, 33), 128);
  EXPECT_EQ(step(ippiMalloc_16s_C1, 32), 64);
  EXPECT_EQ(step(ippiMalloc_32s_C1, 17), 128);
  EXPECT_EQ(step(ippiMalloc_32f_C1, 17), 128);
}

TEST(SignalMalloc, AlignsItsBlocks) {
  for (const int length : {1, 2, 63, 64, 65, 1000}) {
    Zorvan::u8* const bytes = ippsMalloc_8u(length);
    ASSERT_TRUE(isAligned(bytes)) << length;
    std::memset(bytes, 0xA5, static_cast<std::size_t>(length));
    ippsFree(bytes);

    float* const floats = ippsMalloc_32f(length);
    ASSERT_TRUE(isAligned(floats)) << length;
    std::memset(floats, 0xA5, static_cast<std::size_t>(length) * sizeof(float));
    ippsFree(floats);
  }
}

TEST(SignalMalloc, RefusesLengthsOutOfRange) {
  for (const int length : {0, -1, lowest, 0x7FFFFFB8, highest}) {
    EXPECT_EQ(ippsMalloc_8u(length), nullptr) << length;
    EXPECT_EQ(ippsMalloc_32f(length), nullptr) << length;
  }
  // The largest lengths whose bytes fit 31 bits still wrap with the block's overhead; the next one, and the
  // one whose bytes wrap to a small number, are refused before.
  for (const int length : {0x1FFFFFEE, 0x1FFFFFFF, 0x20000000, 0x40000001}) {
    EXPECT_EQ(ippsMalloc_32f(length), nullptr) << length;
  }
}

}  // namespace
