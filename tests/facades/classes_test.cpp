// Facades as classes: they have no data, have the constructors of a class that declares none, and their
// assignments have no effect.

#include <type_traits>
#include <utility>
#include <vector>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

template <class Facade>
class EachFacade : public testing::Test {};
using Facades =
    testing::Types<Initializer, IppIArithmetic<u8>, IppIArithmetic<float>, IppILogical<u8>,
                   IppILogical<float>, Comparer<float>, Statistic<u8>, Statistic<u16>, Statistic<float>,
                   IppIMorphology<u8>, IppIMorphology<float>, FilteringFunction, ComputerVision>;
TYPED_TEST_SUITE(EachFacade, Facades);

TYPED_TEST(EachFacade, HasNoDataAndTheConstructorsOfAClassWithoutAny) {
  EXPECT_TRUE(std::is_empty_v<TypeParam>);
  EXPECT_TRUE(std::is_trivially_default_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_trivially_copy_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_trivially_move_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_trivially_destructible_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<TypeParam>);
}

TYPED_TEST(EachFacade, IsAssignedWithoutEffect) {
  EXPECT_TRUE(
      (std::is_same_v<decltype(std::declval<TypeParam&>() = std::declval<const TypeParam&>()), TypeParam&>));
  TypeParam a, b;
  EXPECT_EQ(&(a = b), &a);
  EXPECT_EQ(&(a = std::move(b)), &a);
  EXPECT_EQ(&(a = TypeParam()), &a);
  const TypeParam& itself = a;
  EXPECT_EQ(&(a = itself), &a);
}

template <class Facade>
Facade passed(Facade facade) {
  return facade;
}

// Generic, so that a facade without these constructors fails the test instead of the compilation.
template <class Facade>
void useAsValue() {
  if constexpr (std::is_copy_constructible_v<Facade> && std::is_move_constructible_v<Facade>) {
    const Facade constant{};
    Facade copy(constant);
    Facade moved(std::move(copy));
    std::vector<Facade> list(3, moved);
    list.push_back(passed(constant));
    list.emplace_back();
    list.insert(list.begin(), moved);
    EXPECT_EQ(list.size(), 6u);
    const std::pair<Facade, int> pair{moved, 1};
    EXPECT_EQ(std::pair(pair).second, 1);
  } else {
    ADD_FAILURE() << "cannot be copied or moved";
  }
}

TYPED_TEST(EachFacade, IsPassedAndKeptByValue) { useAsValue<TypeParam>(); }

}  // namespace
}  // namespace Zorvan::Test
