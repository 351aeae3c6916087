// Runs a fuzz target on the files that are its arguments, or in directories that are, and on inputs
// a few bytes away from them: the same ones each time.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

void runVariants(const std::string& input) {
  using namespace std::string_view_literals;
  constexpr std::string_view kLikely = "\0\n\r \"*,-./0123456789:;<>AN\\abx{}\x80\xFF"sv;
  std::mt19937 random(20261122);
  for (int i = 0; i < 100; ++i) {
    std::string variant = input;
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
      const std::size_t at = random() % variant.size();
      variant.replace(at, random() % 2, 1, kLikely[random() % kLikely.size()]);
    }
    run(variant);
  }
}

void replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  const std::string input = content.str();
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  run(input);
  if (!input.empty()) runVariants(input);
}

/// Returns how many files there are.
int replayAll(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return 0;  // a target without finds
  if (!std::filesystem::is_directory(path)) {
    replay(path);
    return 1;
  }
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    replay(entry.path());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) count += replayAll(argv[i]);
  return count == 0 ? 1 : 0;
}
