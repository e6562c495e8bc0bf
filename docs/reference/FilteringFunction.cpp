#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(FilteringFunctionExamples, Borders) {
  //! [eBorderType]
  auto src = image<float>({{1, 1, 1}});
  auto dst = image<float>({{0, 0, 0}});
  FilteringFunction::LaplaceBorder3x3<float>(src, dst, eBorderReplicate, 0);
  expectRows(dst, {{0, 0, 0}});  // as if the pixels around the image were 1
  FilteringFunction::LaplaceBorder3x3<float>(src, dst, eBorderConstant, 0);
  expectRows(dst, {{7, 6, 7}});  // they are 0
  //! [eBorderType]
}

TEST(FilteringFunctionExamples, ARegionOfEitherSize) {
  //! [LaplaceBorder(src, dst, rect, use3x3, border, borderValue)]
  auto src = image<float>({{1, 2, 1}, {9, 9, 9}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}});
  const Rect row{0, 0, 3, 1};  // row 0: pixels outside it are not read
  FilteringFunction::LaplaceBorder<float>(src, dst, row, true, eBorderConstant, 1);
  expectRows(dst, {{-1, 8, -1}, {0, 0, 0}});
  //! [LaplaceBorder(src, dst, rect, use3x3, border, borderValue)]
}

TEST(FilteringFunctionExamples, EitherSize) {
  //! [LaplaceBorder(src, dst, use3x3, border, borderValue)]
  auto src = image<float>({{1, 1, 1}, {1, 2, 1}, {1, 1, 1}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  FilteringFunction::LaplaceBorder<float>(src, dst, false, eBorderConstant, 1);  // 5 by 5
  expectRows(dst, {{0, 6, 0}, {6, 20, 6}, {0, 6, 0}});
  //! [LaplaceBorder(src, dst, use3x3, border, borderValue)]
}

TEST(FilteringFunctionExamples, ARegion3x3) {
  //! [LaplaceBorder3x3(src, dst, rect, border, borderValue)]
  auto src = image<float>({{1, 2, 1}, {9, 9, 9}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}});
  const Rect row{0, 0, 3, 1};  // row 0: pixels outside it are not read
  FilteringFunction::LaplaceBorder3x3<float>(src, dst, row, eBorderConstant, 1);
  expectRows(dst, {{-1, 8, -1}, {0, 0, 0}});
  //! [LaplaceBorder3x3(src, dst, rect, border, borderValue)]
}

TEST(FilteringFunctionExamples, AnImage3x3) {
  //! [LaplaceBorder3x3(src, dst, border, borderValue)]
  auto src = image<float>({{1, 1, 1}, {1, 2, 1}, {1, 1, 1}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  FilteringFunction::LaplaceBorder3x3<float>(src, dst, eBorderConstant, 1);
  expectRows(dst, {{-1, -1, -1}, {-1, 8, -1}, {-1, -1, -1}});
  //! [LaplaceBorder3x3(src, dst, border, borderValue)]
}

TEST(FilteringFunctionExamples, ARegion5x5) {
  //! [LaplaceBorder5x5(src, dst, rect, border, borderValue)]
  auto src = image<float>({{1, 2, 1}, {9, 9, 9}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}});
  const Rect row{0, 0, 3, 1};  // row 0: pixels outside it are not read
  FilteringFunction::LaplaceBorder5x5<float>(src, dst, row, eBorderConstant, 1);
  expectRows(dst, {{6, 20, 6}, {0, 0, 0}});
  //! [LaplaceBorder5x5(src, dst, rect, border, borderValue)]
}

TEST(FilteringFunctionExamples, AnImage5x5) {
  //! [LaplaceBorder5x5(src, dst, border, borderValue)]
  auto src = image<float>({{1, 1, 1}, {1, 2, 1}, {1, 1, 1}});
  auto dst = image<float>({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  FilteringFunction::LaplaceBorder5x5<float>(src, dst, eBorderConstant, 1);
  expectRows(dst, {{0, 6, 0}, {6, 20, 6}, {0, 6, 0}});
  //! [LaplaceBorder5x5(src, dst, border, borderValue)]
}

TEST(FilteringFunctionExamples, Objects) {
  //! [FilteringFunction()]
  std::vector<FilteringFunction> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(FilteringFunction());
  EXPECT_EQ(objects.size(), 4U);
  //! [FilteringFunction()]
}

TEST(FilteringFunctionExamples, Assignments) {
  //! [operator=(other)]
  FilteringFunction first, second;
  second = first;
  second = FilteringFunction();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
