#include <gtest/gtest.h>

#include "backends/qt/application.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const tarnix::qt::Application application(argc, argv);
  return RUN_ALL_TESTS();
}
