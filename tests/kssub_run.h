// Runs the host program as a user does, on files of its own.
#pragma once

#include <regex>

#include "support.h"

class KssubTest : public testing::Test {
 protected:
  /// `out` and `err` are patterns of all that the program prints. `before` is a command of the
  /// shell that runs it.
  void expectRun(const std::string& arguments, const std::string& out, const std::string& err,
                 int status, const std::string& before = "true") const {
    SCOPED_TRACE(arguments);
    const Outcome run("cd " + directory.path("") + "; " + before + "; timeout 60 " KSSUB_PATH " " +
                      arguments);
    EXPECT_EQ(run.status, status);
    EXPECT_TRUE(std::regex_match(run.out, std::regex(out))) << run.out << "is not\n" << out;
    const std::string printed = withoutSanitizerWarnings(run.err);
    EXPECT_TRUE(std::regex_match(printed, std::regex(err))) << printed << "is not\n" << err;
  }

  TempDir directory;

 private:
  /// AddressSanitizer warns of a scanf format that the index reader passes on purpose.
  static std::string withoutSanitizerWarnings(const std::string& text) {
    return std::regex_replace(text, std::regex("==[0-9]+==AddressSanitizer: WARNING[^\n]*\n"), "");
  }
};
