// The requests of the library to the heap, the blocks that it frees, and its behaviour if the heap refuses.
// The heap refuses in the tests of large blocks too, so that none is really allocated.

#include <gtest/gtest.h>

#include <cstdint>

#include "Thrown.h"
#include "tests/support/Heap.h"
#include "zorvan/foundation/Allocation.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/primitives/frame/Entries.h"

namespace {

using namespace Zorvan::Primitives;
using Zorvan::s16;
using Zorvan::u16;
using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;
using Zorvan::IppS::IppSMemory;

/// The address sanitizer forbids others than the library to read it.
[[gnu::no_sanitize_address]] void* wordBelow(void* block) { return static_cast<void**>(block)[-1]; }

TEST(Heap, HoldsTheBlockAndItsWord) {
  WatchedHeap heap;
  void* const block = coreMalloc(1000);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(heap.requests(), 1u);
  EXPECT_EQ(heap.lastBytes(), 1072u);
  EXPECT_EQ(wordBelow(block), heap.lastBlock());
  EXPECT_EQ(heap.freed(), 0u);
  coreFree(block);
  EXPECT_EQ(heap.freed(), 1u);
}

TEST(Heap, ReceivesRequestsUpToTheLargestBlock) {
  WatchedHeap heap;
  heap.refuse();
  EXPECT_EQ(coreMalloc(0x7FFFFFB7), nullptr);
  EXPECT_EQ(heap.requests(), 1u);
  EXPECT_EQ(heap.lastBytes(), 0x7FFFFFFFu);
  EXPECT_EQ(coreMalloc(0x7FFFFFB8), nullptr);
  EXPECT_EQ(coreMalloc(0x7FFFFFFF), nullptr);
  EXPECT_EQ(coreMalloc(0), nullptr);
  EXPECT_EQ(coreMalloc(-1), nullptr);
  EXPECT_EQ(heap.requests(), 1u);
}

TEST(Heap, ReceivesRequestsForWholeRowsOfAnImage) {
  WatchedHeap heap;
  heap.refuse();
  int step = 0;
  const auto expectRequest = [&](auto* pixels, int expectedStep, std::size_t expectedBytes) {
    EXPECT_EQ(pixels, nullptr);
    EXPECT_EQ(step, expectedStep);
    EXPECT_EQ(heap.lastBytes(), expectedBytes);
  };
  expectRequest(ippiMalloc_8u_C1(65, 3, &step), 128, 3 * 128 + 72);
  expectRequest(ippiMalloc_16u_C1(33, 3, &step), 128, 3 * 128 + 72);
  expectRequest(ippiMalloc_16s_C1(33, 5, &step), 128, 5 * 128 + 72);
  expectRequest(ippiMalloc_32s_C1(17, 2, &step), 128, 2 * 128 + 72);
  expectRequest(ippiMalloc_32f_C1(17, 9, &step), 128, 9 * 128 + 72);
  // The largest row, and the most rows of one line.
  expectRequest(ippiMalloc_8u_C1(0x7FFFFF80, 1, &step), 0x7FFFFF80, 0x7FFFFFC8u);
  expectRequest(ippiMalloc_32f_C1(0x7FFFFF80 / 4, 1, &step), 0x7FFFFF80, 0x7FFFFFC8u);
  expectRequest(ippiMalloc_16s_C1(1, 0x7FFFFF80 / 64, &step), 64, 0x7FFFFFC8u);
  EXPECT_EQ(heap.requests(), 8u);
}

TEST(Heap, ReceivesNoRequestForImagesThatAreTooLarge) {
  WatchedHeap heap;
  int step = 0;
  EXPECT_EQ(ippiMalloc_8u_C1(0x7FFFFF81, 1, &step), nullptr);
  EXPECT_EQ(step, 0x7FFFFFC0);
  EXPECT_EQ(ippiMalloc_8u_C1(0x7FFFFFC1, 1, &step), nullptr);
  EXPECT_EQ(step, 0);
  EXPECT_EQ(ippiMalloc_32f_C1(0x40000001, 1, &step), nullptr);
  EXPECT_EQ(step, 0);
  EXPECT_EQ(ippiMalloc_32s_C1(0x10000000, 2, &step), nullptr);
  EXPECT_EQ(step, 0x40000000);
  EXPECT_EQ(ippiMalloc_16u_C1(0x20000020, 4, &step), nullptr);  // 256 bytes, in 32 bits
  EXPECT_EQ(step, 0x40000040);
  EXPECT_EQ(heap.requests(), 0u);
}

TEST(Heap, ReceivesRequestsForTheElementsOfASignal) {
  WatchedHeap heap;
  heap.refuse();
  EXPECT_EQ(ippsMalloc_8u(0x7FFFFFB7), nullptr);
  EXPECT_EQ(heap.lastBytes(), 0x7FFFFFFFu);
  EXPECT_EQ(ippsMalloc_32f(10), nullptr);
  EXPECT_EQ(heap.lastBytes(), 112u);
  EXPECT_EQ(ippsMalloc_32f(0x1FFFFFED), nullptr);
  EXPECT_EQ(heap.lastBytes(), 0x7FFFFFFCu);
  EXPECT_EQ(heap.requests(), 3u);
  for (const int length : {0x1FFFFFEE, 0x1FFFFFFF, 0x20000000, 0x40000001, 0, -1}) {
    EXPECT_EQ(ippsMalloc_32f(length), nullptr) << length;
  }
  EXPECT_EQ(heap.requests(), 3u);
}

template <class T>
class ImagesOnHeap : public testing::Test {};
using AllocatedTypes = testing::Types<u8, u16, s16, int, float>;
TYPED_TEST_SUITE(ImagesOnHeap, AllocatedTypes);

TYPED_TEST(ImagesOnHeap, FreeTheirBlockOnce) {
  WatchedHeap heap;
  {
    IppIMemory<TypeParam> first(10, 10);
    IppIMemory<TypeParam> second;
    second = first;
    first = IppIMemory<TypeParam>();
    EXPECT_EQ(heap.requests(), 1u);
    EXPECT_EQ(heap.freed(), 0u);
  }
  EXPECT_EQ(heap.freed(), 1u);
}

TYPED_TEST(ImagesOnHeap, AreEmptyWhenTheHeapRefuses) {
  WatchedHeap heap;
  heap.refuse();
  {
    IppIMemory<TypeParam> image(10, 10);
    EXPECT_EQ(heap.requests(), 1u);
    EXPECT_EQ(image.buffer(), nullptr);
    EXPECT_EQ(image.width(), 10);
    EXPECT_EQ(image.imageStep(), 10 * static_cast<int>(sizeof(TypeParam)));
    EXPECT_EQ(image.step(), 64);  // the allocator computed it before its request
    EXPECT_EQ(image.ToIppStream({3, 4, 1, 1}), nullptr);
  }
  EXPECT_EQ(heap.freed(), 0u);
}

TYPED_TEST(ImagesOnHeap, ThrowWhenTheirCopyIsRefused) {
  WatchedHeap heap;
  const IppIMemory<TypeParam> source(10, 10);
  heap.refuse();
  EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(source); }), "Assign error in IppIMemory");
  EXPECT_EQ(heap.requests(), 2u);
  EXPECT_EQ(heap.freed(), 0u);
}

TYPED_TEST(ImagesOnHeap, AreEmptyWhenTheirCountIsRefused) {
  WatchedHeap heap;
  {
    heap.refuseNextNew();
    IppIMemory<TypeParam> image(10, 10);
    EXPECT_EQ(image.buffer(), nullptr);
    EXPECT_EQ(image.buffer().use_count(), 0);
    EXPECT_EQ(image.width(), 10);
    EXPECT_EQ(image.imageStep(), 10 * static_cast<int>(sizeof(TypeParam)));
    EXPECT_EQ(image.step(), 64);
    EXPECT_EQ(heap.requests(), 1u);
    EXPECT_EQ(heap.freed(), 1u);
    image = IppIMemory<TypeParam>(10, 10);
    EXPECT_NE(image.buffer(), nullptr);
  }
  EXPECT_EQ(heap.liveBlocks(), 0u);
}

TYPED_TEST(ImagesOnHeap, ThrowWhenTheCountOfTheirCopyIsRefused) {
  const IppIMemory<TypeParam> source(10, 10);
  WatchedHeap heap;
  heap.refuseNextNew();
  EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(source); }), "Assign error in IppIMemory");
  EXPECT_EQ(heap.requests(), 1u);
  EXPECT_EQ(heap.freed(), 1u);
}

template <class T>
class ContainersOnHeap : public testing::Test {};
#define LISTED(T) , T
template <class First, class... T>
using WithoutFirst = testing::Types<T...>;
using ElementTypes = WithoutFirst<void ZORVAN_IPP_ELEMENT_TYPES(LISTED)>;
TYPED_TEST_SUITE(ContainersOnHeap, ElementTypes);

TYPED_TEST(ContainersOnHeap, AreEmptyWhenTheirCountIsRefused) {
  TypeParam pixels[12] = {};
  WatchedHeap heap;
  {
    heap.refuseSome(0, 2);
    const auto byFigures = IppIMemory<TypeParam>::CreateContainer(pixels, 4, 3);
    const auto bySize = IppIMemory<TypeParam>::CreateContainer(pixels, Zorvan::Size{4, 3});
    EXPECT_EQ(heap.allRequests(), 2u);
    for (const auto* image : {&byFigures, &bySize}) {
      EXPECT_EQ(image->buffer(), nullptr);
      EXPECT_EQ(image->width(), 4);
      EXPECT_EQ(image->height(), 3);
      EXPECT_EQ(image->step(), 0);
    }
  }
  EXPECT_EQ(heap.liveBlocks(), 0u);
  EXPECT_EQ(heap.freed(), 0u);
}

TEST(ImageCopiesOnHeap, Of16BitsAllocateThenThrowAndFree) {
  const auto expectTakenAndGivenBack = [](const auto& source) {
    using Image = std::decay_t<decltype(source)>;
    WatchedHeap heap;
    EXPECT_EQ(textThrownBy([&] { Image copy(source); }), "Assign error in IppIMemory");
    EXPECT_EQ(heap.requests(), 1u);
    EXPECT_EQ(heap.freed(), 1u);
  };
  expectTakenAndGivenBack(IppIMemory<u16>(10, 10));
  expectTakenAndGivenBack(IppIMemory<s16>(10, 10));
}

TEST(ImageCopiesOnHeap, OfAnImageWithoutABlockFreeTheirOwn) {
  const IppIMemory<u8> source(10, 10, nullptr, 0);
  WatchedHeap heap;
  EXPECT_EQ(textThrownBy([&] { IppIMemory<u8> copy(source); }), "Assign error in IppIMemory");
  EXPECT_EQ(heap.requests(), 1u);
  EXPECT_EQ(heap.freed(), 1u);
}

TEST(ImagesOfOtherTypes, RequestNothingFromTheHeap) {
  WatchedHeap heap;
  EXPECT_NE(textThrownBy([] { IppIMemory<double> image(10, 10); }), "nothing thrown");
  EXPECT_EQ(textThrownBy([] { IppIMemory<u8> image(0, 10); }), "invalid image size");
  EXPECT_EQ(heap.requests(), 0u);
}

TEST(AllocatedBlocks, FreeThemselves) {
  WatchedHeap heap;
  int step = 0;
  { const auto block = IppIMemory<float>::Allocate(10, 10, step); }
  EXPECT_EQ(heap.freed(), 1u);
  { const auto block = IppSMemory<float>::Allocate(10); }
  EXPECT_EQ(heap.freed(), 2u);
  heap.refuse();
  EXPECT_EQ(IppIMemory<float>::Allocate(10, 10, step), nullptr);
  EXPECT_EQ(IppSMemory<float>::Allocate(10), nullptr);
}

template <class T>
class SignalsOnHeap : public testing::Test {};
using AllocatedElements = testing::Types<u8, float>;
TYPED_TEST_SUITE(SignalsOnHeap, AllocatedElements);

TYPED_TEST(SignalsOnHeap, FreeTheirBlockOnce) {
  WatchedHeap heap;
  {
    IppSMemory<TypeParam> first(10);
    IppSMemory<TypeParam> second(first);
    EXPECT_EQ(heap.requests(), 1u);
    second = first;
    first = IppSMemory<TypeParam>();
    EXPECT_EQ(heap.freed(), 0u);
  }
  EXPECT_EQ(heap.freed(), 1u);
}

TYPED_TEST(SignalsOnHeap, AreEmptyWhenTheHeapRefuses) {
  WatchedHeap heap;
  heap.refuse();
  {
    const IppSMemory<TypeParam> signal(10);
    EXPECT_EQ(heap.requests(), 1u);
    EXPECT_EQ(signal.length(), 10);
    EXPECT_EQ(signal.buffer(), nullptr);
  }
  EXPECT_EQ(heap.freed(), 0u);
}

TYPED_TEST(SignalsOnHeap, AreEmptyWhenTheirCountIsRefused) {
  WatchedHeap heap;
  heap.refuseNextNew();
  const IppSMemory<TypeParam> signal(10);
  EXPECT_EQ(signal.length(), 10);
  EXPECT_EQ(signal.buffer(), nullptr);
  EXPECT_EQ(signal.buffer().use_count(), 0);
  EXPECT_EQ(heap.requests(), 1u);
  EXPECT_EQ(heap.freed(), 1u);
}

}  // namespace
