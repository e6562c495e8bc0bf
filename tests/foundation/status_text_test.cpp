#include "zorvan/foundation/StatusText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>

#include "zorvan/foundation/Status.h"

namespace {

using Zorvan::Ipp::ippStatusText;

const std::map<std::int32_t, std::string> expectedTexts = {
#define ZORVAN_IPP_STATUS(code, name, text) {code, std::string(#name) + ": " + text},
#define ZORVAN_IPP_PLAIN_STATUS(code, text) {code, text},
#include "zorvan/foundation/StatusTable.def"
};

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

TEST(StatusText, HasAMessageForEachCode) {
  ASSERT_EQ(expectedTexts.size(), 139u);
  std::set<std::string> seen;
  for (const auto& [code, text] : expectedTexts) {
    EXPECT_EQ(ippStatusText(code), text) << code;
    EXPECT_TRUE(seen.insert(text).second) << "the message of " << code << " stands twice";
  }
}

TEST(StatusText, ReturnsKnownMessagesWordForWord) {
  EXPECT_STREQ(ippStatusText(-9999), "ippStsCpuNotSupportedErr: The target CPU is not supported");
  EXPECT_STREQ(ippStatusText(-9702), "No shared libraries were found in the Waterfall procedure");
  EXPECT_STREQ(ippStatusText(-9700), "Error at loading of %s library");
  EXPECT_STREQ(ippStatusText(-59), "ippStsDataTypeErr: Data type is incorrect or not supported");
  EXPECT_STREQ(ippStatusText(-8), "ippStsNullPtrErr: Null pointer error");
  EXPECT_STREQ(ippStatusText(-6), "ippStsSizeErr: Incorrect value for data size");
  EXPECT_STREQ(ippStatusText(-2), "ippStsErr: Unknown/unspecified error, -2");
  EXPECT_STREQ(ippStatusText(0), "ippStsNoErr: No errors");
  EXPECT_STREQ(
      ippStatusText(29),
      "ippStsWrongIntersectROI: ROI has no intersection with the source or destination ROI. No operation");
  EXPECT_STREQ(ippStatusText(53), "The function is inefficient due to the combination of input parameters");
}

TEST(StatusText, ReturnsTheUnknownMessageForCodesInTheGaps) {
  const auto expectUnknown = [](std::int32_t code) {
    EXPECT_STREQ(ippStatusText(code), "ippStsUnknownStatusCodeErr: Unknown status code") << code;
  };
  for (std::int32_t code = -10100; code <= 300; ++code) {
    if (expectedTexts.count(code) == 0) expectUnknown(code);
  }
  for (const std::int32_t code : {-1, -3, 6, 10, -216, lowest, lowest + 1, highest}) expectUnknown(code);
}

TEST(StatusText, IsTheSameConstantAtEachCall) {
  EXPECT_EQ(ippStatusText(-6), ippStatusText(-6));
  EXPECT_EQ(ippStatusText(6), ippStatusText(-216));
}

TEST(Status, NamesItsCodes) {
  using namespace Zorvan::Ipp;
  EXPECT_EQ(ippStsNoErr, 0);
  EXPECT_EQ(ippStsWrongIntersectROI, 29);
  EXPECT_EQ(ippStsDataTypeErr, -59);
  EXPECT_EQ(ippStsUnknownStatusCodeErr, -216);
  EXPECT_EQ(ippStsCpuNotSupportedErr, -9999);
  static_assert(sizeof(eIppResultStatus) == 4 && std::is_signed_v<std::underlying_type_t<eIppResultStatus>>);
}

}  // namespace
