#include "zorvan/foundation/IppIMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "Thrown.h"

namespace {

using Zorvan::Rect;
using Zorvan::s16;
using Zorvan::Size;
using Zorvan::u16;
using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

template <class T, class... Candidates>
constexpr bool isOneOf = (std::is_same_v<T, Candidates> || ...);

template <class T>
class ImageMemory : public testing::Test {
 protected:
  static constexpr bool allocates = isOneOf<T, u8, u16, s16, int, float>;
  static constexpr bool copies = isOneOf<T, u8, int, float>;

  /// The text that the allocation of a valid size throws.
  static std::string expectedOfAllocation() {
    if (allocates) return "nothing thrown";
    return std::string("Cannot allocate memory.\nNot supported type.\ntype is ") + typeid(T).name();
  }

  /// An image on a block that the test owns, with pixels 0, 1, 2, ...
  static IppIMemory<T> wrapped(int width, int height, int step = 0) {
    const std::shared_ptr<T[]> pixels(
        new T[static_cast<std::size_t>(width) * static_cast<std::size_t>(height)]);
    for (int i = 0; i < width * height; ++i) pixels[i] = T(i);
    return IppIMemory<T>(width, height, pixels, step);
  }

  /// The distance in bytes from an image's block to the start of a region.
  static std::int64_t offsetOf(IppIMemory<T>& image, Rect rect) {
    return static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(image.ToIppStream(rect)) -
                                     reinterpret_cast<std::uintptr_t>(image.buffer().get()));
  }
};

#define LISTED(T) , T
template <class First, class... T>
using WithoutFirst = testing::Types<T...>;
using ElementTypes = WithoutFirst<void ZORVAN_IPP_ELEMENT_TYPES(LISTED)>;
TYPED_TEST_SUITE(ImageMemory, ElementTypes);

template <class T>
class OwnedImageMemory : public ImageMemory<T> {};
using AllocatedTypes = testing::Types<u8, u16, s16, int, float>;
TYPED_TEST_SUITE(OwnedImageMemory, AllocatedTypes);

TYPED_TEST(ImageMemory, BeginsEmpty) {
  const IppIMemory<TypeParam> image;
  EXPECT_EQ(image.width(), 0);
  EXPECT_EQ(image.height(), 0);
  EXPECT_EQ(image.step(), 0);
  EXPECT_EQ(image.imageStep(), 0);
  EXPECT_EQ(image.buffer(), nullptr);
}

TYPED_TEST(ImageMemory, TestsTheSizeBeforeTheType) {
  for (const Size size : {Size{0, 5}, Size{5, 0}, Size{-1, 1}, Size{1, -1}, Size{0, 4}, Size{0, 0}}) {
    int step = 0;
    const auto thrown = {
        textThrownBy([&] { IppIMemory<TypeParam> image(size); }),
        textThrownBy([&] { IppIMemory<TypeParam> image(size.width, size.height); }),
        textThrownBy([&] { IppIMemory<TypeParam>::Allocate(size, step); }),
        textThrownBy([&] { IppIMemory<TypeParam>::Allocate(size.width, size.height, step); }),
    };
    for (const std::string& text : thrown) EXPECT_EQ(text, "invalid image size");
  }
}

TYPED_TEST(ImageMemory, AllocatesPixelTypesOnly) {
  int step = 0;
  const auto thrown = {
      textThrownBy([] {
        IppIMemory<TypeParam> image(Size{4, 4});
      }),
      textThrownBy([] { IppIMemory<TypeParam> image(4, 4); }),
      textThrownBy([&] {
        IppIMemory<TypeParam>::Allocate(Size{4, 4}, step);
      }),
      textThrownBy([&] { IppIMemory<TypeParam>::Allocate(4, 4, step); }),
  };
  for (const std::string& text : thrown) EXPECT_EQ(text, this->expectedOfAllocation());
}

TYPED_TEST(OwnedImageMemory, AllocatesRowsWithoutAGap) {
  constexpr int pixelBytes = sizeof(TypeParam);
  for (const int width : {1, 7, 64, 65, 100}) {
    const IppIMemory<TypeParam> image(width, 3);
    EXPECT_EQ(image.width(), width);
    EXPECT_EQ(image.height(), 3);
    EXPECT_EQ(image.size().width, width);
    EXPECT_EQ(image.size().height, 3);
    EXPECT_EQ(image.step(), (width * pixelBytes + 63) / 64 * 64);
    EXPECT_EQ(image.imageStep(), width * pixelBytes);
    const auto pixels = image.buffer();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pixels.get()) % 64, 0u);
    for (int i = 0; i < width * 3; ++i) pixels[i] = TypeParam(i);

    int step = 0;
    const auto block = IppIMemory<TypeParam>::Allocate(width, 3, step);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(step, image.step());
  }
}

TEST(ImageMemorySteps, AreThoseOfKnownWidths) {
  EXPECT_EQ(IppIMemory<u8>(100, 1).step(), 128);
  EXPECT_EQ(IppIMemory<u8>(100, 1).imageStep(), 100);
  EXPECT_EQ(IppIMemory<u8>(64, 1).step(), 64);
  EXPECT_EQ(IppIMemory<u8>(64, 1).imageStep(), 64);
  EXPECT_EQ(IppIMemory<float>(17, 1).step(), 128);
  EXPECT_EQ(IppIMemory<float>(17, 1).imageStep(), 68);
}

// After a refused allocation the image has its size and no block; the step is the one that the allocator
// wrote.
TYPED_TEST(OwnedImageMemory, LeavesABlockThatIsTooLargeOut) {
  constexpr int pixelBytes = sizeof(TypeParam);
  const IppIMemory<TypeParam> tall(0x40000000 / pixelBytes, 2);
  EXPECT_EQ(tall.step(), 0x40000000);
  EXPECT_EQ(tall.imageStep(), 0x40000000);
  EXPECT_EQ(tall.height(), 2);
  EXPECT_EQ(tall.buffer(), nullptr);
  EXPECT_EQ(tall.buffer().use_count(), 0);

  const IppIMemory<TypeParam> wide(0x7FFFFFFF, 1);
  EXPECT_EQ(wide.width(), 0x7FFFFFFF);
  EXPECT_EQ(wide.step(), 0);
  EXPECT_EQ(wide.imageStep(), pixelBytes == 1 ? 0x7FFFFFFF : -pixelBytes);
  EXPECT_EQ(wide.buffer(), nullptr);
}

TYPED_TEST(ImageMemory, WrapsABlockAsItIs) {
  const std::shared_ptr<TypeParam[]> block(new TypeParam[12]());
  const IppIMemory<TypeParam> bySize(Size{4, 3}, block, 77);
  const IppIMemory<TypeParam> byFigures(4, 3, block, 77);
  for (const auto* image : {&bySize, &byFigures}) {
    EXPECT_EQ(image->width(), 4);
    EXPECT_EQ(image->height(), 3);
    EXPECT_EQ(image->step(), 77);
    EXPECT_EQ(image->imageStep(), 4 * static_cast<int>(sizeof(TypeParam)));
    EXPECT_EQ(image->buffer(), block);
  }
  EXPECT_EQ(block.use_count(), 3);
}

TYPED_TEST(ImageMemory, WrapsWithoutTests) {
  const IppIMemory<TypeParam> image(-2, 0, nullptr, -5);
  EXPECT_EQ(image.width(), -2);
  EXPECT_EQ(image.height(), 0);
  EXPECT_EQ(image.step(), -5);
  EXPECT_EQ(image.imageStep(), -2 * static_cast<int>(sizeof(TypeParam)));
  EXPECT_EQ(image.buffer(), nullptr);
}

TYPED_TEST(ImageMemory, RowBytesWrapOn32Bits) {
  const IppIMemory<TypeParam> image(0x40000001, 1, nullptr, 0);
  const std::uint32_t bytes = 0x40000001u * static_cast<std::uint32_t>(sizeof(TypeParam));
  EXPECT_EQ(image.imageStep(), static_cast<std::int32_t>(bytes));
}

TYPED_TEST(ImageMemory, TheBlockGoesOnceWithTheLastImage) {
  int freed = 0;
  {
    IppIMemory<TypeParam> first, second;
    {
      const std::shared_ptr<TypeParam[]> block(new TypeParam[12](), [&freed](TypeParam* pixels) {
        ++freed;
        delete[] pixels;
      });
      first = IppIMemory<TypeParam>(4, 3, block, 0);
      second = first;
    }
    first = IppIMemory<TypeParam>();
    EXPECT_EQ(freed, 0);
    second.buffer()[11] = TypeParam(1);
  }
  EXPECT_EQ(freed, 1);
}

TYPED_TEST(ImageMemory, AssignmentSharesTheBlock) {
  IppIMemory<TypeParam> target = this->wrapped(2, 2);
  const std::weak_ptr<TypeParam[]> given = target.buffer();
  const IppIMemory<TypeParam> source = this->wrapped(4, 3, 99);
  EXPECT_EQ(&(target = source), &target);
  EXPECT_TRUE(given.expired());
  EXPECT_EQ(target.width(), 4);
  EXPECT_EQ(target.height(), 3);
  EXPECT_EQ(target.step(), 99);
  EXPECT_EQ(target.imageStep(), source.imageStep());
  EXPECT_EQ(target.buffer(), source.buffer());
  target.buffer()[5] = TypeParam(42);
  EXPECT_EQ(source.buffer()[5], TypeParam(42));

  const IppIMemory<TypeParam>& itself = target;
  target = itself;
  EXPECT_EQ(target.width(), 4);
  EXPECT_EQ(target.buffer(), source.buffer());
}

TYPED_TEST(ImageMemory, CopiesOwnTheirPixels) {
  const IppIMemory<TypeParam> source = this->wrapped(7, 3, 5);
  if constexpr (ImageMemory<TypeParam>::copies) {
    const IppIMemory<TypeParam> copy(source);
    EXPECT_EQ(copy.width(), 7);
    EXPECT_EQ(copy.height(), 3);
    EXPECT_EQ(copy.step(), 64 * ((7 * static_cast<int>(sizeof(TypeParam)) + 63) / 64));
    EXPECT_EQ(copy.imageStep(), source.imageStep());
    ASSERT_NE(copy.buffer(), nullptr);
    ASSERT_NE(copy.buffer(), source.buffer());
    for (int i = 0; i < 21; ++i) EXPECT_EQ(copy.buffer()[i], TypeParam(i));
    copy.buffer()[0] = TypeParam(42);
    EXPECT_EQ(source.buffer()[0], TypeParam(0));
  } else {
    const std::string expected =
        this->allocates ? "Assign error in IppIMemory" : this->expectedOfAllocation();
    EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(source); }), expected);
  }
}

TYPED_TEST(ImageMemory, CopyingAnEmptyImageThrows) {
  const IppIMemory<TypeParam> empty;
  EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(empty); }), "invalid image size");

  const IppIMemory<TypeParam> withoutBlock(4, 4, nullptr, 0);
  const std::string expected = this->allocates ? "Assign error in IppIMemory" : this->expectedOfAllocation();
  EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(withoutBlock); }), expected);
}

TYPED_TEST(OwnedImageMemory, CopyingAnImageTooLargeToAllocateThrows) {
  const IppIMemory<TypeParam> tall(0x40000000 / static_cast<int>(sizeof(TypeParam)), 2,
                                   this->wrapped(1, 1).buffer(), 0);
  EXPECT_EQ(textThrownBy([&] { IppIMemory<TypeParam> copy(tall); }), "Assign error in IppIMemory");
}

// A region and its address need an image that is not const; the sizes and the block do not.
TYPED_TEST(ImageMemory, AccessorsAreConstButForRegions) {
  using Image = IppIMemory<TypeParam>;
  EXPECT_TRUE((std::is_same_v<decltype(&Image::SizeToRoi), Rect (Image::*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::ToIppStream), TypeParam* (Image::*)(Rect)>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::width), int (Image::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::height), int (Image::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::size), Size (Image::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::step), int (Image::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::imageStep), int (Image::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&Image::buffer), std::shared_ptr<TypeParam[]> (Image::*)() const>));
}

TYPED_TEST(ImageMemory, TheWholeImageIsARegion) {
  const Rect roi = this->wrapped(7, 3).SizeToRoi();
  EXPECT_EQ(roi.x, 0);
  EXPECT_EQ(roi.y, 0);
  EXPECT_EQ(roi.width, 7);
  EXPECT_EQ(roi.height, 3);
}

TYPED_TEST(ImageMemory, RegionsStartAtRowXPixelY) {
  IppIMemory<TypeParam> image = this->wrapped(7, 3);
  EXPECT_EQ(image.ToIppStream({0, 0, 1, 1}), image.buffer().get());
  EXPECT_EQ(image.ToIppStream({1, 0, 1, 1}), image.buffer().get() + 7);
  EXPECT_EQ(image.ToIppStream({0, 1, 1, 1}), image.buffer().get() + 1);
  EXPECT_EQ(image.ToIppStream({2, 6, 100, -100}), image.buffer().get() + 20);
  EXPECT_EQ(*image.ToIppStream({2, 3, 1, 1}), TypeParam(17));
  EXPECT_EQ(image.ToIppStream({2, -3, 1, 1}), image.buffer().get() + 11);
}

TYPED_TEST(ImageMemory, RegionsMayStartOutsideTheBlock) {
  IppIMemory<TypeParam> image = this->wrapped(7, 3);
  const std::int64_t pixelBytes = sizeof(TypeParam);
  EXPECT_EQ(this->offsetOf(image, {-1, 0, 1, 1}), -7 * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {0, -5, 1, 1}), -5 * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {100, 50, 1, 1}), 750 * pixelBytes);
}

TYPED_TEST(ImageMemory, TheRowOfARegionWrapsOn32Bits) {
  const std::shared_ptr<TypeParam[]> block(new TypeParam[1]());
  IppIMemory<TypeParam> image(0x10000, 1, block, 0);
  const std::int64_t pixelBytes = sizeof(TypeParam);
  EXPECT_EQ(this->offsetOf(image, {0x7FFF, 0xFFFF, 1, 1}), std::int64_t{0x7FFFFFFF} * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {0x7FFF, 0x7FFFFFFF, 1, 1}), std::int64_t{0xFFFEFFFF} * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {0x8000, 0, 1, 1}), std::int64_t{-0x80000000ll} * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {0x8000, -1, 1, 1}), std::int64_t{-0x80000001ll} * pixelBytes);
  EXPECT_EQ(this->offsetOf(image, {0x10000, 3, 1, 1}), 3 * pixelBytes);
}

TYPED_TEST(ImageMemory, WithoutABlockEachRegionStartsAtNull) {
  IppIMemory<TypeParam> image(7, 3, nullptr, 0);
  EXPECT_EQ(image.ToIppStream({0, 0, 7, 3}), nullptr);
  EXPECT_EQ(image.ToIppStream({1, 2, 1, 1}), nullptr);
  EXPECT_EQ(image.ToIppStream({-1, 5, 1, 1}), nullptr);
}

TYPED_TEST(ImageMemory, ContainersLeaveTheCallersMemoryToTheCaller) {
  TypeParam pixels[12] = {};
  {
    const auto byFigures = IppIMemory<TypeParam>::CreateContainer(pixels, 4, 3);
    const auto bySize = IppIMemory<TypeParam>::CreateContainer(pixels, Size{4, 3});
    for (const auto* image : {&byFigures, &bySize}) {
      EXPECT_EQ(image->buffer().get(), pixels);
      EXPECT_EQ(image->width(), 4);
      EXPECT_EQ(image->height(), 3);
      EXPECT_EQ(image->step(), 0);
      EXPECT_EQ(image->imageStep(), 4 * static_cast<int>(sizeof(TypeParam)));
    }
    byFigures.buffer()[11] = TypeParam(7);
  }
  EXPECT_EQ(pixels[11], TypeParam(7));
}

TYPED_TEST(ImageMemory, ContainersAcceptNull) {
  const auto image = IppIMemory<TypeParam>::CreateContainer(nullptr, 4, 4);
  EXPECT_EQ(image.buffer(), nullptr);
  EXPECT_EQ(image.buffer().use_count(), 0);
  EXPECT_EQ(image.step(), 0);
  EXPECT_EQ(image.imageStep(), 4 * static_cast<int>(sizeof(TypeParam)));
  EXPECT_EQ(IppIMemory<TypeParam>::CreateContainer(nullptr, Size{4, 4}).buffer(), nullptr);
}

}  // namespace
