// Runs the tests under the locale of the environment, as a host would that sets one.
#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
  if (std::setlocale(LC_ALL, "") == nullptr) return 1;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
