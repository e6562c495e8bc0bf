#include <gtest/gtest.h>

#include "folder.h"

std::string folder;

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  if (argumentCount > 1) folder = arguments[1];
  return RUN_ALL_TESTS();
}
