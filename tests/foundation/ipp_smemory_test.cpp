#include "zorvan/foundation/IppSMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <type_traits>

#include "Thrown.h"

namespace {

using Zorvan::u8;
using Zorvan::IppS::IppSMemory;

template <class T>
class SignalMemory : public testing::Test {
 protected:
  static constexpr bool allocates = std::is_same_v<T, u8> || std::is_same_v<T, float>;
};

#define LISTED(T) , T
template <class First, class... T>
using WithoutFirst = testing::Types<T...>;
using ElementTypes = WithoutFirst<void ZORVAN_IPP_ELEMENT_TYPES(LISTED)>;
TYPED_TEST_SUITE(SignalMemory, ElementTypes);

template <class T>
class OwnedSignalMemory : public testing::Test {};
using AllocatedElements = testing::Types<u8, float>;
TYPED_TEST_SUITE(OwnedSignalMemory, AllocatedElements);

TYPED_TEST(SignalMemory, BeginsEmpty) {
  const IppSMemory<TypeParam> signal;
  EXPECT_EQ(signal.length(), 0);
  EXPECT_EQ(signal.buffer(), nullptr);
}

TYPED_TEST(SignalMemory, TestsTheLengthBeforeTheType) {
  for (const int length : {0, -1}) {
    EXPECT_EQ(textThrownBy([&] { IppSMemory<TypeParam> signal(length); }), "invalid length");
    EXPECT_EQ(textThrownBy([&] { IppSMemory<TypeParam>::Allocate(length); }), "invalid length");
  }
}

TYPED_TEST(SignalMemory, AllocatesBytesAndFloatsOnly) {
  const char* const expected = this->allocates ? "nothing thrown" : "not supported type";
  EXPECT_EQ(textThrownBy([] { IppSMemory<TypeParam> signal(10); }), expected);
  EXPECT_EQ(textThrownBy([] { IppSMemory<TypeParam>::Allocate(10); }), expected);
}

TYPED_TEST(OwnedSignalMemory, HoldsAlignedElements) {
  const IppSMemory<TypeParam> signal(10);
  EXPECT_EQ(signal.length(), 10);
  const auto elements = signal.buffer();
  ASSERT_NE(elements, nullptr);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(elements.get()) % 64, 0u);
  for (int i = 0; i < 10; ++i) elements[i] = TypeParam(i);
}

TYPED_TEST(OwnedSignalMemory, LeavesABlockThatIsTooLargeOut) {
  const IppSMemory<TypeParam> signal(0x7FFFFFFF);
  EXPECT_EQ(signal.length(), 0x7FFFFFFF);
  EXPECT_EQ(signal.buffer(), nullptr);
  EXPECT_EQ(signal.buffer().use_count(), 0);
}

TYPED_TEST(OwnedSignalMemory, AssignmentSharesTheBlock) {
  IppSMemory<TypeParam> target(3);
  const std::weak_ptr<TypeParam[]> given = target.buffer();
  const IppSMemory<TypeParam> source(7);
  EXPECT_EQ(&(target = source), &target);
  EXPECT_TRUE(given.expired());
  EXPECT_EQ(target.length(), 7);
  EXPECT_EQ(target.buffer(), source.buffer());
  target.buffer()[6] = 42;
  EXPECT_EQ(source.buffer()[6], TypeParam(42));

  const IppSMemory<TypeParam>& itself = target;
  target = itself;
  EXPECT_EQ(target.length(), 7);
  EXPECT_EQ(target.buffer(), source.buffer());
}

TYPED_TEST(SignalMemory, CopiesOfAnEmptySignalAreEmpty) {
  const IppSMemory<TypeParam> empty;
  EXPECT_EQ(IppSMemory<TypeParam>(empty).buffer(), nullptr);
}

TYPED_TEST(OwnedSignalMemory, CopiesCopyNothing) {
  const IppSMemory<TypeParam> source(7);
  IppSMemory<TypeParam> copy(source);
  EXPECT_EQ(copy.buffer(), nullptr);
  EXPECT_EQ(source.buffer().use_count(), 2);  // the source's, and the one returned here
  copy = source;
  EXPECT_EQ(copy.length(), 7);
  EXPECT_EQ(copy.buffer(), source.buffer());
}

TYPED_TEST(OwnedSignalMemory, TheBlockOutlivesItsSignal) {
  auto signal = std::make_unique<IppSMemory<TypeParam>>(5);
  const auto elements = signal->buffer();
  signal.reset();
  EXPECT_EQ(elements.use_count(), 1);
  elements[4] = 9;
  EXPECT_EQ(elements[4], TypeParam(9));
}

}  // namespace
