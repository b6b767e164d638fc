// Numbers and text in the C locale.
#include "vxgrid/toolkit/core/text.h"

#include <locale.h>  // for newlocale, uselocale
#include <stdlib.h>  // for strtod_l, strtof_l

#include <array>         // for array
#include <charconv>      // for from_chars, to_chars
#include <cmath>         // for abs, isfinite, isnan, trunc
#include <cstdio>        // for vsnprintf
#include <limits>        // for numeric_limits
#include <system_error>  // for errc
#include <type_traits>   // for is_same

namespace VXCore {
namespace {

locale_t c_locale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

// Sets the C locale for this thread.
class UseCLocale {
 public:
  UseCLocale() : before_(uselocale(c_locale())) {}
  ~UseCLocale() { uselocale(before_); }
  UseCLocale(const UseCLocale&) = delete;
  UseCLocale& operator=(const UseCLocale&) = delete;

 private:
  locale_t before_;
};

bool is_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// The number without the white space around it and without a '+'; empty if there is none.
std::string_view bare_number(std::string_view text) {
  while (!text.empty() && is_space(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_space(text.back()))
    text.remove_suffix(1);
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) return {};
  }
  return text;
}

// from_chars tells too small from too large by nothing, so a number out of range is looked at
// again.
template <class Float>
bool round_out_of_range(std::string_view text, Float& number) {
  const std::string copy(text);
  Float value;
  if constexpr (std::is_same_v<Float, float>)
    value = strtof_l(copy.c_str(), nullptr, c_locale());
  else
    value = strtod_l(copy.c_str(), nullptr, c_locale());
  if (!std::isfinite(value)) return false;
  number = value;
  return true;
}

template <class Float>
bool to_float(std::string_view text, Float& number) {
  text = bare_number(text);
  const char* const end = text.data() + text.size();
  Float value = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end) return false;
  if (error == std::errc::result_out_of_range) return round_out_of_range(text, number);
  if (error != std::errc()) return false;
  number = value;
  return true;
}

template <class Integer>
bool to_integer(std::string_view text, Integer& number, int base) {
  if (base < 2 || base > 36) return false;
  text = bare_number(text);
  if (base == 16 && text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    text.remove_prefix(2);
    if (text.front() == '-') return false;
  }
  const char* const end = text.data() + text.size();
  Integer value = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  if (stop != end || error != std::errc()) return false;
  number = value;
  return true;
}

}  // namespace

std::size_t VXStringTokenize(std::vector<std::string>& tokens, std::string_view text,
                             std::string_view separators, bool drop_empty) {
  std::size_t count = 0;
  // Strings that are there already are filled again: lines of a file are split into one vector.
  const auto add = [&](std::string_view token) {
    if (token.empty() && drop_empty) return;
    if (count < tokens.size())
      tokens[count].assign(token);
    else
      tokens.emplace_back(token);
    ++count;
  };
  std::size_t start = 0;
  for (std::size_t stop; (stop = text.find_first_of(separators, start)) != std::string_view::npos;
       start = stop + 1)
    add(text.substr(start, stop - start));
  add(text.substr(start));
  tokens.resize(count);
  return count;
}

bool VXStringToNumber(std::string_view text, float& number) {
  return to_float(text, number);
}
bool VXStringToNumber(std::string_view text, double& number) {
  return to_float(text, number);
}
bool VXStringToNumber(std::string_view text, int& number, int base) {
  return to_integer(text, number, base);
}
bool VXStringToNumber(std::string_view text, unsigned int& number, int base) {
  return to_integer(text, number, base);
}

std::string VXNumberToString(double number, char format, int precision) {
  switch (format) {
    case 'e':
      return format_text("%.*e", precision, number);
    case 'f':
      return format_text("%.*f", precision, number);
    case 'E':
      return format_text("%.*E", precision, number);
    case 'G':
      return format_text("%.*G", precision, number);
    default:
      return format_text("%.*g", precision, number);
  }
}

std::string VXNumberToString(unsigned int number, int base) {
  if (base < 2 || base > 36) return {};
  std::array<char, std::numeric_limits<unsigned int>::digits> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, base);
  return {digits.data(), end};
}

std::string format_text(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = format_text_v(format, arguments);
  va_end(arguments);
  return text;
}

std::string format_text_v(const char* format, std::va_list arguments) {
  const UseCLocale c_locale_here;
  std::va_list again;
  va_copy(again, arguments);
  std::array<char, 256> small{};
  const int length = std::vsnprintf(small.data(), small.size(), format, arguments);
  std::string text;
  if (length > 0) {
    const auto size = static_cast<std::size_t>(length);
    if (size < small.size()) {
      text.assign(small.data(), size);
    } else {
      text.resize(size);
      std::vsnprintf(text.data(), size + 1, format, again);
    }
  }
  va_end(again);
  return text;
}

bool VXFloatCompare(float a, float b, float tolerance) {
  return a == b || std::abs(a - b) <= tolerance;
}

double VXTruncate(double value, int factor) {
  constexpr double all_whole = 9007199254740992.0;  // 2^53
  const double scaled = value * factor;
  // Written so that a NaN, too, comes back as it is.
  if (factor == 0 || !(std::abs(value) < all_whole) || !(std::abs(scaled) < all_whole))
    return value;
  return std::trunc(scaled) / factor;
}

bool VXIsNaN(double value) {
  return std::isnan(value);
}

std::string VXFileExtension(const std::string& filename, const std::string& look_past) {
  std::string_view name = filename;
  if (const auto slash = name.rfind('/'); slash != std::string_view::npos)
    name.remove_prefix(slash + 1);
  const auto extension = [](std::string_view text) {
    const auto dot = text.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : text.substr(dot + 1);
  };
  std::string_view found = extension(name);
  if (!look_past.empty() && found == look_past)
    found = extension(name.substr(0, name.size() - found.size() - 1));
  return std::string(found);
}

}  // namespace VXCore
