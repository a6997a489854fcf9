#include <gtest/gtest.h>

#include <cstdlib>

#include "backends/qt/application.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Widgets are tested without a display, also where ctest only asks which tests there are.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const tarnix::qt::Application application(argc, argv);
  return RUN_ALL_TESTS();
}
