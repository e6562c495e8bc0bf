#include <cstdint>
#include <memory>

#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppSMemoryExamples, Empty) {
  //! [IppSMemory()]
  IppSMemory<u8> buffer;
  EXPECT_EQ(buffer.length(), 0);
  buffer = IppSMemory<u8>(100);
  EXPECT_EQ(buffer.length(), 100);
  //! [IppSMemory()]
}

TEST(IppSMemoryExamples, OfALength) {
  //! [IppSMemory(length)]
  IppSMemory<float> buffer(100);
  buffer.buffer()[99] = 1.5F;
  EXPECT_EQ(buffer.buffer()[99], 1.5F);
  //! [IppSMemory(length)]
}

TEST(IppSMemoryExamples, NotCopied) {
  //! [IppSMemory(source)]
  IppSMemory<u8> buffer(100);
  IppSMemory<u8> copy = buffer;
  EXPECT_EQ(copy.buffer(), nullptr);  // no copy of the elements
  copy = buffer;
  EXPECT_EQ(copy.buffer(), buffer.buffer());
  //! [IppSMemory(source)]
}

TEST(IppSMemoryExamples, Assigned) {
  //! [operator=(source)]
  IppSMemory<u8> buffer(100), same;
  same = buffer;
  same.buffer()[0] = 7;
  EXPECT_EQ(buffer.buffer()[0], 7);  // both have the same elements
  //! [operator=(source)]
}

TEST(IppSMemoryExamples, Released) {
  //! [~IppSMemory()]
  std::shared_ptr<u8[]> block;
  {
    IppSMemory<u8> buffer(100);
    block = buffer.buffer();
    block[0] = 7;
  }
  EXPECT_EQ(block[0], 7);  // `block` still shares the elements; without it they would be freed here
  //! [~IppSMemory()]
}

TEST(IppSMemoryExamples, Length) {
  //! [length()]
  const IppSMemory<u8> buffer(100);
  EXPECT_EQ(buffer.length(), 100);
  //! [length()]
}

TEST(IppSMemoryExamples, Elements) {
  //! [buffer()]
  IppSMemory<float> buffer(3);
  const std::shared_ptr<float[]> elements = buffer.buffer();
  for (int i = 0; i < buffer.length(); ++i) elements[i] = 0.5F * i;
  EXPECT_EQ(buffer.buffer()[2], 1);
  //! [buffer()]
}

TEST(IppSMemoryExamples, Block) {
  //! [Allocate(length)]
  auto block = IppSMemory<float>::Allocate(100);
  block[99] = 1.5F;
  const auto address = reinterpret_cast<std::uintptr_t>(block.get());
  EXPECT_EQ(address % 64, 0U);
  //! [Allocate(length)]
}

}  // namespace
}  // namespace ReferenceExamples
