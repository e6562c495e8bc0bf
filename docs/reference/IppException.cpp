#include <string>

#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppExceptionExamples, OfACode) {
  //! [IppException(status)]
  const IppException failure(ippStsNullPtrErr);
  EXPECT_STREQ(failure.what(), "ippStsNullPtrErr: Null pointer error( error Code : -8 )");
  //! [IppException(status)]
}

TEST(IppExceptionExamples, Copied) {
  //! [IppException(source)]
  const IppException failure(ippStsNullPtrErr);
  const IppException copy = failure;
  EXPECT_STREQ(copy.what(), failure.what());
  //! [IppException(source)]
}

TEST(IppExceptionExamples, Assigned) {
  //! [operator=(source)]
  const IppException failure(ippStsNullPtrErr);
  IppException last(ippStsNoErr);
  last = failure;
  EXPECT_STREQ(last.what(), failure.what());
  //! [operator=(source)]
}

TEST(IppExceptionExamples, Destroyed) {
  //! [~IppException()]
  std::string text;
  {
    const IppException failure(ippStsNullPtrErr);
    text = failure.what();  // a copy: the pointer is valid as long as the object lives
  }
  EXPECT_EQ(text, "ippStsNullPtrErr: Null pointer error( error Code : -8 )");
  //! [~IppException()]
}

TEST(IppExceptionExamples, Caught) {
  //! [what()]
  IppIMemory<u8> image(4, 2);
  try {
    Initializer::Fill<u8>(image, 7, {0, 0, 5, 1});  // wider than the image
    FAIL();
  } catch (const IppException& failure) {
    EXPECT_STREQ(failure.what(),
                 "ippStsWrongIntersectROI: ROI has no intersection with the source or destination ROI. "
                 "No operation( error Code : 29 )");
  }
  //! [what()]
}

}  // namespace
}  // namespace ReferenceExamples
