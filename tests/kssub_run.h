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
    Outcome run("cd " + directory.path("") + "; " + before + "; timeout 60 " KSSUB_PATH " " +
                arguments);
    // A sanitizer does not know one of the formats that the library scans with.
    run.err =
        std::regex_replace(run.err, std::regex("==\\d+==AddressSanitizer: WARNING: .*\n"), "");
    EXPECT_EQ(run.status, status);
    expectMatch(run.out, out);
    expectMatch(run.err, err);
  }

  TempDir directory;

 private:
  /// AddressSanitizer warns of a scanf format that the index reader passes on purpose.
  static void expectMatch(const std::string& text, const std::string& pattern) {
    const std::regex warning("==[0-9]+==AddressSanitizer: WARNING[^\n]*\n");
    const std::string printed = std::regex_replace(text, warning, "");
    EXPECT_TRUE(std::regex_match(printed, std::regex(pattern))) << printed << "is not\n" << pattern;
  }
};
