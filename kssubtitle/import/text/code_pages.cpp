// Code pages, by the C library's conversion.
#include "kssubtitle/import/text/code_pages.h"

#include <iconv.h>

#include <cerrno>
#include <new>
#include <span>
#include <utility>

#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

class Conversion {
 public:
  explicit Conversion(const std::string& from) : handle_(iconv_open("UTF-8", from.c_str())) {
    if (!isOpen() && errno == ENOMEM) throw std::bad_alloc();
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion() {
    if (isOpen()) iconv_close(handle_);
  }

  bool isOpen() const noexcept { return handle_ != kNone; }

  /// Converts what it can and consumes it, and the room for it, from both; 0, or an `errno`.
  int convert(std::string_view& from, std::span<char>& to) noexcept {
    char* input = const_cast<char*>(from.data());  // NOLINT: iconv only reads it
    std::size_t left = from.size();
    const int error = call(&input, &left, to);
    from.remove_prefix(from.size() - left);
    return error;
  }

  /// Writes the character that is held back because the next one might combine with it.
  int flush(std::span<char>& to) noexcept { return call(nullptr, nullptr, to); }

 private:
  int call(char** input, std::size_t* left, std::span<char>& to) noexcept {
    char* output = to.data();
    std::size_t room = to.size();
    const bool failed = iconv(handle_, input, left, &output, &room) == static_cast<std::size_t>(-1);
    to = to.last(room);
    return failed ? errno : 0;
  }

  static inline const iconv_t kNone = reinterpret_cast<iconv_t>(-1);  // NOLINT: what iconv returns
  iconv_t handle_;
};

/// A text that grows as it is written.
class Output {
 public:
  explicit Output(std::size_t expected) : text_(expected + kLeast, '\0'), room_(text_) {}

  std::span<char>& room() noexcept { return room_; }
  std::size_t size() const noexcept { return text_.size() - room_.size(); }
  void grow() {
    const std::size_t written = size();
    text_.resize(2 * text_.size());
    room_ = std::span(text_).subspan(written);
  }
  void append(std::string_view text) {
    if (room_.size() < text.size()) grow();
    text.copy(room_.data(), text.size());
    room_ = room_.subspan(text.size());
  }
  std::string finish() {
    text_.resize(size());
    return std::move(text_);
  }

 private:
  static constexpr std::size_t kLeast = 64;
  std::string text_;
  std::span<char> room_;  // the part of it that is not written yet
};

}  // namespace

bool isAsciiCodePage(const std::string& name) {
  const auto decoded = decodeCodePage("0", name);
  return decoded && decoded->text == "0";
}

std::optional<DecodedText> decodeCodePage(std::string_view bytes, const std::string& name) {
  Conversion conversion(name);
  if (!conversion.isOpen()) return std::nullopt;
  // Most pages grow: from their own size, Open() of a Russian film takes 15 % longer.
  Output output(bytes.size() + bytes.size() / 2);
  Replacements replacements;
  while (!bytes.empty()) {
    const int error = conversion.convert(bytes, output.room());
    if (error == E2BIG) {
      output.grow();
    } else if (error != 0) {
      replacements.add(output.size());
      output.append(kReplacementUtf8);
      bytes.remove_prefix(1);
    }
  }
  while (conversion.flush(output.room()) == E2BIG) output.grow();
  return DecodedText{output.finish(), std::move(replacements)};
}

}  // namespace kssubtitle::importing
