#include "zorvan/foundation/IppException.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

namespace {

using Zorvan::Ipp::eIppResultStatus;
using Zorvan::Ipp::IppException;

IppException exceptionOf(std::int32_t code) { return IppException(static_cast<eIppResultStatus>(code)); }

std::string textOf(std::int32_t code) { return exceptionOf(code).what(); }

static_assert(std::is_base_of_v<std::exception, IppException>);
static_assert(std::has_virtual_destructor_v<IppException>);
static_assert(std::is_same_v<decltype(std::declval<IppException&>() = std::declval<const IppException&>()),
                             IppException&>);

TEST(IppException, JoinsMessageAndCodeWithoutASeparator) {
  EXPECT_EQ(textOf(-6), "ippStsSizeErr: Incorrect value for data size( error Code : -6 )");
  EXPECT_EQ(textOf(0), "ippStsNoErr: No errors( error Code : 0 )");
  EXPECT_EQ(textOf(29),
            "ippStsWrongIntersectROI: ROI has no intersection with the source or destination ROI. "
            "No operation( error Code : 29 )");
}

TEST(IppException, ReadsEachCodeWithItsMessage) {
#define ZORVAN_IPP_STATUS(code, name, text) \
  EXPECT_EQ(textOf(code), #name ": " text "( error Code : " #code " )");
#define ZORVAN_IPP_PLAIN_STATUS(code, text) EXPECT_EQ(textOf(code), text "( error Code : " #code " )");
#include "zorvan/foundation/StatusTable.def"
}

TEST(IppException, ShowsAnUnknownCodeItself) {
  const std::string unknown = "ippStsUnknownStatusCodeErr: Unknown status code";
  EXPECT_EQ(textOf(6), unknown + "( error Code : 6 )");
  EXPECT_EQ(textOf(-216), unknown + "( error Code : -216 )");
  EXPECT_EQ(textOf(std::numeric_limits<std::int32_t>::min()), unknown + "( error Code : -2147483648 )");
  EXPECT_EQ(textOf(std::numeric_limits<std::int32_t>::max()), unknown + "( error Code : 2147483647 )");
}

TEST(IppException, LeavesAPlaceholderAsItStands) {
  EXPECT_EQ(textOf(-9700), "Error at loading of %s library( error Code : -9700 )");
}

TEST(IppException, CopiesReadLikeTheirSource) {
  auto source = std::make_unique<IppException>(exceptionOf(-8));
  const IppException copy(*source);
  source.reset();
  EXPECT_STREQ(copy.what(), "ippStsNullPtrErr: Null pointer error( error Code : -8 )");
}

TEST(IppException, AssignmentReplacesTheText) {
  IppException target = exceptionOf(0);
  auto source = std::make_unique<IppException>(exceptionOf(-9700));
  EXPECT_EQ(&(target = *source), &target);
  source.reset();
  EXPECT_STREQ(target.what(), "Error at loading of %s library( error Code : -9700 )");
}

TEST(IppException, AssignmentToItselfLeavesTheText) {
  IppException target = exceptionOf(-6);
  const IppException& itself = target;
  EXPECT_EQ(&(target = itself), &target);
  EXPECT_EQ(target.what(), textOf(-6));
}

TEST(IppException, IsCaughtAsAStandardException) {
  try {
    throw exceptionOf(-16);
  } catch (const std::exception& failure) {
    EXPECT_STREQ(failure.what(), "ippStsStepErr: Step value is not valid( error Code : -16 )");
  }
}

}  // namespace
