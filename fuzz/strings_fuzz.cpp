// Sequences of operations of the text class, most of them compared with an obvious model.
#include <iterator>
#include <stdexcept>

#include "fuzz/excluded.h"
#include "fuzz/support.h"
#include "tests/models/strings_model.h"

namespace {

template <typename Char>
struct Arguments {
  std::basic_string<Char> first;
  std::basic_string<Char> second;
  int at = 0;
  int count = 0;
  Char c = 0;

  bool isEven() const { return at % 2 == 0; }
  /// `count`, as far as `first` has so many characters.
  int countInFirst() const { return std::min(count, static_cast<int>(first.size())); }
};

/// One operation of the class; most have an obvious form in the model.
template <typename Char>
struct Operation {
  int (*onText)(ksBasicString<Char>&, const Arguments<Char>&);
  int (*onModel)(StringsModel<Char>&, const Arguments<Char>&);  // null without one
};

template <typename F>
int resultOf(F f, auto& text, const auto& arguments) {
  if constexpr (std::is_void_v<decltype(f(text, arguments))>) {
    f(text, arguments);
    return 0;
  } else {
    return static_cast<int>(f(text, arguments));
  }
}

template <typename Char, typename F>
constexpr Operation<Char> compared(F) {
  return {[](auto& text, const auto& arguments) { return resultOf(F(), text, arguments); },
          [](auto& text, const auto& arguments) { return resultOf(F(), text, arguments); }};
}

/// Only the sanitizers look at such an operation.
template <typename Char, typename F>
constexpr Operation<Char> alone(F) {
  return {[](auto& text, const auto& arguments) {
            try {
              return resultOf(F(), text, arguments);
            } catch (const std::logic_error&) {  // a negative count, a start past the end
              return 0;
            }
          },
          nullptr};
}

template <typename Char>
constexpr Operation<Char> kOperations[] = {
    alone<Char>([](auto& t, auto&) { return static_cast<int>(t); }),
    alone<Char>([](auto& t, auto& a) { return t.getChar(a.at); }),
    alone<Char>([](auto& t, auto& a) { return t.find(a.first, a.at); }),
    alone<Char>([](auto& t, auto& a) { return t.findNoCase(a.first, a.at); }),
    compared<Char>([](auto& t, auto& a) { return t.findlast(a.first, a.at); }),
    compared<Char>([](auto& t, auto& a) { return t.findlastNoCase(a.first, a.at); }),
    alone<Char>([](auto& t, auto& a) { return t.isEqualNoCase(t, a.first); }),
    alone<Char>([](auto& t, auto&) { return t.isNumeric(); }),
    alone<Char>([](auto& t, auto& a) { t = t.substr(a.at, a.count); }),
    alone<Char>([](auto& t, auto& a) { t = t.Left(a.at); }),
    alone<Char>([](auto& t, auto& a) { t = t.Right(a.at); }),
    alone<Char>([](auto& t, auto& a) {
      t = {a.first.c_str(), a.countInFirst()};
    }),
    alone<Char>([](auto& t, auto& a) { t += a.first; }),
    alone<Char>([](auto& t, auto& a) { t += a.count; }),
    alone<Char>([](auto& t, auto& a) { t += a.c; }),
    alone<Char>([](auto& t, auto& a) { t.append(a.first.c_str(), a.countInFirst()); }),
    alone<Char>([](auto& t, auto& a) { t.replace(a.at, a.count, a.first); }),
    alone<Char>([](auto& t, auto& a) { t.setchar(a.at, a.c); }),
    alone<Char>([](auto& t, auto& a) { t.setchar(t.length(), a.c); }),
    alone<Char>([](auto& t, auto&) { t.MakeLower(); }),
    compared<Char>([](auto& t, auto& a) { t.TrimLeft(a.c); }),
    alone<Char>([](auto& t, auto& a) { t.TrimRight(a.c); }),
    compared<Char>([](auto& t, auto&) { t.removeSpaces(); }),
    compared<Char>([](auto& t, auto&) { t.clearSpaces(); }),
    compared<Char>([](auto& t, auto&) { t.removeQuo(); }),
    compared<Char>([](auto& t, auto&) { t.removeLastChar(); }),
    compared<Char>([](auto& t, auto& a) { return t.deleteStr(a.at, a.count); }),
    compared<Char>([](auto& t, auto& a) {
      if (!neverEndsOrGrows(a.first, a.second)) t.replaceChars(a.first, a.second);
    }),
    compared<Char>([](auto& t, auto& a) {
      auto before = t;
      const int result = t.match(a.first, &before, a.isEven(), a.second);
      if (a.count % 2 == 0) t = before;
      return result;
    }),
    compared<Char>([](auto& t, auto& a) {
      if (neverEndsOrGrows(a.first, {})) return 0;
      const auto pieces = t.split(a.first);
      const auto found = pieces.find(a.at & 3);
      if (found != pieces.end()) t = found->second;
      return static_cast<int>(pieces.size());
    }),
    compared<Char>([](auto& t, auto& a) {
      const bool pads = t.length() < a.count;
      if (!pads || !neverEndsOrGrows(a.first, {})) t.inflate(a.count, a.first, a.isEven());
    }),
    // With the text itself as an argument.
    alone<Char>([](auto& t, auto&) { t = t.getData(); }),
    alone<Char>([](auto& t, auto&) { t.append(t.getData()); }),
    alone<Char>([](auto& t, auto&) { t += t; }),
    alone<Char>([](auto& t, auto& a) { t.replace(a.at, a.count, t); }),
    compared<Char>([](auto& t, auto& a) { return t.match(a.first, &t, a.isEven(), a.second); }),
    alone<Char>([](auto& t, auto&) {
      auto moved = std::move(t);
      t = std::move(moved);
    }),
};

template <typename Char>
class Sequence {
 public:
  explicit Sequence(std::string_view bytes) : bytes_(bytes) {}

  void run() {
    constexpr int kLongestText = 500;
    while (!bytes_.empty()) {
      step();
      if (text_.length() > kLongestText) text_.clear();
    }
  }

 private:
  void step() {
    const Operation<Char>& operation = kOperations<Char>[byte() % std::size(kOperations<Char>)];
    const Arguments<Char> arguments = takeArguments();
    StringsModel<Char> model{content(), text_.getChar(text_.length())};
    const int length = text_.length();
    const int result = operation.onText(text_, arguments);
    check(text_.getData()[text_.length()] == text_.getChar(text_.length()), "a text has an end");
    if (operation.onModel == nullptr) return;
    check(result == operation.onModel(model, arguments), "an operation has the model's result");
    check(content() == model.text, "the text is the model's");
    // What setchar() puts in the terminator's place may stay there as long as the length does.
    const Char end = text_.getChar(text_.length());
    check(end == 0 || (end == model.end && text_.length() == length), "the text ends");
  }

  std::basic_string<Char> content() const {
    return {text_.getData(), static_cast<std::size_t>(text_.length())};
  }

  Arguments<Char> takeArguments() {
    Arguments<Char> a;
    const unsigned lengths = byte();
    a.at = static_cast<signed char>(byte());
    a.count = static_cast<signed char>(byte());
    a.c = character();
    for (unsigned i = lengths % 16; i > 0; --i) a.first += character();
    for (unsigned i = lengths / 16; i > 0; --i) a.second += character();
    return a;
  }

  /// Bytes of 0x80 and more are negative characters, but for some letters among the wide ones.
  Char character() {
    const unsigned char c = byte();
    if (sizeof(Char) > 1 && c >= 0xC0) return static_cast<Char>(c);
    return static_cast<Char>(static_cast<signed char>(c));
  }

  unsigned char byte() {
    if (bytes_.empty()) return 0;
    const char first = bytes_.front();
    bytes_.remove_prefix(1);
    return static_cast<unsigned char>(first);
  }

  std::string_view bytes_;
  ksBasicString<Char> text_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  input.isWide() ? Sequence<wchar_t>(input.text).run() : Sequence<char>(input.text).run();
  return 0;
}
