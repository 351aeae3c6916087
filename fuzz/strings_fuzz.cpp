// Sequences of operations of the text class, each compared with an obvious model.
#include <iterator>
#include <stdexcept>

#include "fuzz/excluded.h"
#include "fuzz/strings_model.h"
#include "fuzz/support.h"

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

/// One operation of the class and of the model, with its result or a number for what it throws.
template <typename Char>
struct Operation {
  int (*onText)(ksBasicString<Char>&, const Arguments<Char>&);
  int (*onModel)(StringsModel<Char>&, const Arguments<Char>&);
};

template <typename F>
int resultOf(F f, auto& text, const auto& arguments) {
  try {
    if constexpr (!std::is_void_v<decltype(f(text, arguments))>) return f(text, arguments);
    f(text, arguments);
    return 0;
  } catch (const std::out_of_range&) {
    return INT_MIN;
  } catch (const std::length_error&) {
    return INT_MAX;
  }
}

template <typename Char, typename F>
constexpr Operation<Char> on(F) {
  return {[](auto& text, const auto& arguments) { return resultOf(F(), text, arguments); },
          [](auto& text, const auto& arguments) { return resultOf(F(), text, arguments); }};
}

template <typename Char>
constexpr Operation<Char> kOperations[] = {
    on<Char>([](auto& t, auto&) { return static_cast<int>(t); }),
    on<Char>([](auto& t, auto& a) { return t.getChar(a.at); }),
    on<Char>([](auto& t, auto& a) { return t.find(a.first, a.at); }),
    on<Char>([](auto& t, auto& a) { return t.findNoCase(a.first, a.at); }),
    on<Char>([](auto& t, auto& a) { return t.findlast(a.first, a.at); }),
    on<Char>([](auto& t, auto& a) { return t.findlastNoCase(a.first, a.at); }),
    on<Char>([](auto& t, auto& a) { return t.isEqualNoCase(t, a.first); }),
    on<Char>([](auto& t, auto&) { return t.isNumeric(); }),
    on<Char>([](auto& t, auto& a) { t = t.substr(a.at, a.count); }),
    on<Char>([](auto& t, auto& a) { t = t.Left(a.at); }),
    on<Char>([](auto& t, auto& a) { t = t.Right(a.at); }),
    on<Char>([](auto& t, auto& a) {
      t = {a.first.c_str(), a.countInFirst()};
    }),
    on<Char>([](auto& t, auto& a) { t += a.first; }),
    on<Char>([](auto& t, auto& a) { t += a.count; }),
    on<Char>([](auto& t, auto& a) { t += a.c; }),
    on<Char>([](auto& t, auto& a) { t.append(a.first.c_str(), a.countInFirst()); }),
    on<Char>([](auto& t, auto& a) { t.replace(a.at, a.count, a.first); }),
    on<Char>([](auto& t, auto& a) { t.setchar(a.at, a.c); }),
    on<Char>([](auto& t, auto& a) {
      t.setchar(t.length(), a.c);
      return t.getChar(t.length());
    }),
    on<Char>([](auto& t, auto&) { t.MakeLower(); }),
    on<Char>([](auto& t, auto& a) { t.TrimLeft(a.c); }),
    on<Char>([](auto& t, auto& a) { t.TrimRight(a.c); }),
    on<Char>([](auto& t, auto&) { t.removeSpaces(); }),
    on<Char>([](auto& t, auto&) { t.clearSpaces(); }),
    on<Char>([](auto& t, auto&) { t.removeQuo(); }),
    on<Char>([](auto& t, auto&) { t.removeLastChar(); }),
    on<Char>([](auto& t, auto& a) { return t.deleteStr(a.at, a.count); }),
    on<Char>([](auto& t, auto& a) {
      if (!neverEndsOrGrows(a.first, a.second)) t.replaceChars(a.first, a.second);
    }),
    on<Char>([](auto& t, auto& a) {
      auto before = t;
      const int result = t.match(a.first, &before, a.isEven(), a.second);
      t += before;
      return result;
    }),
    on<Char>([](auto& t, auto& a) {
      if (neverEndsOrGrows(a.first, {})) return;
      for (const auto& [key, piece] : t.split(a.first)) (t += key) += piece;
    }),
    on<Char>([](auto& t, auto& a) {
      const bool pads = t.length() < a.count;
      if (!pads || !neverEndsOrGrows(a.first, {})) t.inflate(a.count, a.first, a.isEven());
    }),
    // With the text itself as an argument.
    on<Char>([](auto& t, auto&) { t = t.getData(); }),
    on<Char>([](auto& t, auto&) { t.append(t.getData()); }),
    on<Char>([](auto& t, auto&) { t += t; }),
    on<Char>([](auto& t, auto& a) { t.replace(a.at, a.count, t); }),
    on<Char>([](auto& t, auto& a) { return t.match(a.first, &t, a.isEven(), a.second); }),
    on<Char>([](auto& t, auto&) {
      auto moved = std::move(t);
      t = std::move(moved);
    }),
};

template <typename Char>
class Sequence {
 public:
  explicit Sequence(std::string_view bytes) : bytes_(bytes) {}

  void run() {
    while (!bytes_.empty()) step();
  }

 private:
  void step() {
    constexpr int kLongestText = 500;
    const Operation<Char>& operation = kOperations<Char>[byte() % std::size(kOperations<Char>)];
    const Arguments<Char> arguments = takeArguments();
    const int length = model_.length();
    const int result = operation.onText(text_, arguments);
    check(result == operation.onModel(model_, arguments), "an operation has the model's result");
    compare(length);
    if (model_.length() <= kLongestText) return;
    text_.clear();
    model_.clear();
  }

  /// What setchar() puts in the terminator's place may stay there as long as the length does.
  void compare(int lengthBefore) {
    const Char end = text_.getChar(text_.length());
    check(end == 0 || (end == model_.end && text_.length() == lengthBefore), "the text ends");
    model_.end = end;
    check(text_ == model_.text, "the text is the model's");
    check(std::basic_string<Char>(text_.getData()) == model_.getData(), "it is shown as the model");
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
  StringsModel<Char> model_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  input.isWide() ? Sequence<wchar_t>(input.text).run() : Sequence<char>(input.text).run();
  return 0;
}
