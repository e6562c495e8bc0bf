#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(StatusExamples, CodesOfFailures) {
  //! [eIppResultStatus]
  EXPECT_EQ(ippStsSizeErr, -6);   // an error: nothing has been written
  EXPECT_EQ(ippStsDivByZero, 2);  // a warning: all pixels have been written
  const IppException failure(ippStsSizeErr);
  EXPECT_STREQ(failure.what(), "ippStsSizeErr: Incorrect value for data size( error Code : -6 )");
  //! [eIppResultStatus]
}

}  // namespace
}  // namespace ReferenceExamples
