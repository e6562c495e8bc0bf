#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppILogicalExamples, ConjunctionInPlace) {
  //! [And(src, srcDst, rect)]
  auto src = image<u8>({{255, 0, 0x0F}});
  auto srcDst = image<u8>({{10, 20, 0x3C}});
  IppILogical<u8>::And(src, srcDst, srcDst.SizeToRoi());
  expectRows(srcDst, {{10, 0, 0x0C}});
  //! [And(src, srcDst, rect)]
}

TEST(IppILogicalExamples, Conjunction) {
  //! [And(src1, src2, dst, rect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x3C}});
  auto dst = image<u8>({{0, 0, 0}});
  IppILogical<u8>::And(src1, src2, dst, dst.SizeToRoi());
  expectRows(dst, {{10, 0, 0x0C}});
  //! [And(src1, src2, dst, rect)]
}

TEST(IppILogicalExamples, ConjunctionInANewImage) {
  //! [And(src1, src2, rect, sizeFromRect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x3C}});
  const Rect right{0, 1, 2, 1};  // columns 1 and 2
  IppIMemory<u8> result = IppILogical<u8>::And(src1, src2, right, true);
  expectRows(result, {{0, 0x0C}});
  //! [And(src1, src2, rect, sizeFromRect)]
}

TEST(IppILogicalExamples, DisjunctionInPlace) {
  //! [Or(src, srcDst, rect)]
  auto src = image<u8>({{255, 0, 0x0F}});
  auto srcDst = image<u8>({{10, 20, 0x30}});
  IppILogical<u8>::Or(src, srcDst, srcDst.SizeToRoi());
  expectRows(srcDst, {{255, 20, 0x3F}});
  //! [Or(src, srcDst, rect)]
}

TEST(IppILogicalExamples, Disjunction) {
  //! [Or(src1, src2, dst, rect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x30}});
  auto dst = image<u8>({{0, 0, 0}});
  IppILogical<u8>::Or(src1, src2, dst, dst.SizeToRoi());
  expectRows(dst, {{255, 20, 0x3F}});
  //! [Or(src1, src2, dst, rect)]
}

TEST(IppILogicalExamples, DisjunctionInANewImage) {
  //! [Or(src1, src2, rect, sizeFromRect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x30}});
  const Rect right{0, 1, 2, 1};  // columns 1 and 2
  IppIMemory<u8> result = IppILogical<u8>::Or(src1, src2, right, true);
  expectRows(result, {{20, 0x3F}});
  //! [Or(src1, src2, rect, sizeFromRect)]
}

TEST(IppILogicalExamples, DifferenceInPlace) {
  //! [Xor(src, srcDst, rect)]
  auto src = image<u8>({{255, 0, 0x0F}});
  auto srcDst = image<u8>({{10, 20, 0x3C}});
  IppILogical<u8>::Xor(src, srcDst, srcDst.SizeToRoi());
  expectRows(srcDst, {{245, 20, 0x33}});
  //! [Xor(src, srcDst, rect)]
}

TEST(IppILogicalExamples, Difference) {
  //! [Xor(src1, src2, dst, rect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x3C}});
  auto dst = image<u8>({{0, 0, 0}});
  IppILogical<u8>::Xor(src1, src2, dst, dst.SizeToRoi());
  expectRows(dst, {{245, 20, 0x33}});
  //! [Xor(src1, src2, dst, rect)]
}

TEST(IppILogicalExamples, DifferenceInANewImage) {
  //! [Xor(src1, src2, rect, sizeFromRect)]
  auto src1 = image<u8>({{255, 0, 0x0F}});
  auto src2 = image<u8>({{10, 20, 0x3C}});
  const Rect right{0, 1, 2, 1};  // columns 1 and 2
  IppIMemory<u8> result = IppILogical<u8>::Xor(src1, src2, right, true);
  expectRows(result, {{20, 0x33}});
  //! [Xor(src1, src2, rect, sizeFromRect)]
}

TEST(IppILogicalExamples, ComplementInPlace) {
  //! [Not(srcDst, rect)]
  auto mask = image<u8>({{255, 0, 1}});
  IppILogical<u8>::Not(mask, mask.SizeToRoi());
  expectRows(mask, {{0, 255, 254}});
  //! [Not(srcDst, rect)]
}

TEST(IppILogicalExamples, Complement) {
  //! [Not(src, dst, rect)]
  auto src = image<u8>({{255, 0, 1}});
  auto dst = image<u8>({{7, 7, 7}});
  IppILogical<u8>::Not(src, dst, {0, 0, 2, 1});  // columns 0 and 1
  expectRows(dst, {{0, 255, 7}});
  //! [Not(src, dst, rect)]
}

TEST(IppILogicalExamples, ComplementInANewImage) {
  //! [Not(src, rect, sizeFromRect)]
  auto src = image<u8>({{255, 0, 1}});
  IppIMemory<u8> result = IppILogical<u8>::Not(src, {0, 0, 2, 1}, true);  // columns 0 and 1
  expectRows(result, {{0, 255}});
  //! [Not(src, rect, sizeFromRect)]
}

TEST(IppILogicalExamples, Objects) {
  //! [IppILogical()]
  std::vector<IppILogical<u8>> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(IppILogical<u8>());
  EXPECT_EQ(objects.size(), 4U);
  //! [IppILogical()]
}

TEST(IppILogicalExamples, Assignments) {
  //! [operator=(other)]
  IppILogical<u8> first, second;
  second = first;
  second = IppILogical<u8>();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
