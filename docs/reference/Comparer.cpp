#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(ComparerExamples, Relations) {
  //! [eComparison]
  auto src = image<float>({{99, 100, 101}});
  auto below = image<u8>({{0, 0, 0}}), from = below;
  Comparer<float>::Compare(src, below, src.SizeToRoi(), 100, eLess);
  Comparer<float>::Compare(src, from, src.SizeToRoi(), 100, eGreaterEqual);
  expectRows(below, {{255, 0, 0}});
  expectRows(from, {{0, 255, 255}});
  //! [eComparison]
}

TEST(ComparerExamples, Threshold) {
  //! [Compare(src, dst, rect, value, comparison)]
  auto src = image<float>({{99.5F, 100, 100.5F}});
  auto mask = image<u8>({{0, 0, 0}});
  Comparer<float>::Compare(src, mask, src.SizeToRoi(), 100, eGreater);
  expectRows(mask, {{0, 0, 255}});
  //! [Compare(src, dst, rect, value, comparison)]
}

TEST(ComparerExamples, Objects) {
  //! [Comparer()]
  std::vector<Comparer<float>> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(Comparer<float>());
  EXPECT_EQ(objects.size(), 4U);
  //! [Comparer()]
}

TEST(ComparerExamples, Assignments) {
  //! [operator=(other)]
  Comparer<float> first, second;
  second = first;
  second = Comparer<float>();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
