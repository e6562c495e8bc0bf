#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppIMorphologyExamples, ErodeInANewImage) {
  //! [Erode(src, rect, useRectSize, maskSize)]
  auto src = image<u8>({{5, 5, 5, 1, 5, 5}});
  const Rect left{0, 0, 4, 1};  // columns 0 to 3
  IppIMemory<u8> result = IppIMorphology<u8>::Erode(src, left, true, {3, 1});
  expectRows(result, {{5, 5, 1, 1}});
  //! [Erode(src, rect, useRectSize, maskSize)]
}

TEST(IppIMorphologyExamples, Erode) {
  //! [Erode(src, dst, rect, maskSize)]
  auto src = image<u8>({{5, 5, 5, 1, 5, 5}});
  auto dst = image<u8>({{0, 0, 0, 0, 0, 0}});
  IppIMorphology<u8>::Erode(src, dst, dst.SizeToRoi(), {3, 1});  // 3 wide, 1 high
  expectRows(dst, {{5, 5, 1, 1, 1, 5}});
  //! [Erode(src, dst, rect, maskSize)]
}

TEST(IppIMorphologyExamples, DilateInANewImage) {
  //! [Dilate(src, rect, useRectSize, maskSize)]
  auto src = image<u8>({{1, 1, 1, 5, 1, 1}});
  const Rect left{0, 0, 4, 1};  // columns 0 to 3
  IppIMemory<u8> result = IppIMorphology<u8>::Dilate(src, left, true, {3, 1});
  expectRows(result, {{1, 1, 5, 5}});
  //! [Dilate(src, rect, useRectSize, maskSize)]
}

TEST(IppIMorphologyExamples, Dilate) {
  //! [Dilate(src, dst, rect, maskSize)]
  auto src = image<u8>({{1, 1, 1, 5, 1, 1}});
  auto dst = image<u8>({{0, 0, 0, 0, 0, 0}});
  IppIMorphology<u8>::Dilate(src, dst, dst.SizeToRoi(), {3, 1});  // 3 wide, 1 high
  expectRows(dst, {{1, 1, 5, 5, 5, 1}});
  //! [Dilate(src, dst, rect, maskSize)]
}

TEST(IppIMorphologyExamples, OpenInANewImage) {
  //! [Open(src, rect, useRectSize, maskSize)]
  auto src = image<u8>({{1, 9, 1, 5, 5, 5}});
  const Rect left{0, 0, 4, 1};  // columns 0 to 3
  IppIMemory<u8> result = IppIMorphology<u8>::Open(src, left, true, {3, 1});
  expectRows(result, {{1, 1, 1, 1}});
  //! [Open(src, rect, useRectSize, maskSize)]
}

TEST(IppIMorphologyExamples, Open) {
  //! [Open(src, dst, rect, maskSize)]
  auto src = image<u8>({{1, 9, 1, 5, 5, 5}});
  auto dst = image<u8>({{0, 0, 0, 0, 0, 0}});
  IppIMorphology<u8>::Open(src, dst, dst.SizeToRoi(), {3, 1});  // 9 and narrower areas vanish
  expectRows(dst, {{1, 1, 1, 5, 5, 5}});
  //! [Open(src, dst, rect, maskSize)]
}

TEST(IppIMorphologyExamples, CloseInANewImage) {
  //! [Close(src, rect, useRectSize, maskSize)]
  auto src = image<u8>({{9, 1, 9, 5, 5, 5}});
  const Rect left{0, 0, 4, 1};  // columns 0 to 3
  IppIMemory<u8> result = IppIMorphology<u8>::Close(src, left, true, {3, 1});
  expectRows(result, {{9, 9, 9, 9}});
  //! [Close(src, rect, useRectSize, maskSize)]
}

TEST(IppIMorphologyExamples, Close) {
  //! [Close(src, dst, rect, maskSize)]
  auto src = image<u8>({{9, 1, 9, 5, 5, 5}});
  auto dst = image<u8>({{0, 0, 0, 0, 0, 0}});
  IppIMorphology<u8>::Close(src, dst, dst.SizeToRoi(), {3, 1});  // the narrow 1 vanishes
  expectRows(dst, {{9, 9, 9, 5, 5, 5}});
  //! [Close(src, dst, rect, maskSize)]
}

TEST(IppIMorphologyExamples, Objects) {
  //! [IppIMorphology()]
  std::vector<IppIMorphology<u8>> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(IppIMorphology<u8>());
  EXPECT_EQ(objects.size(), 4U);
  //! [IppIMorphology()]
}

TEST(IppIMorphologyExamples, Assignments) {
  //! [operator=(other)]
  IppIMorphology<u8> first, second;
  second = first;
  second = IppIMorphology<u8>();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
