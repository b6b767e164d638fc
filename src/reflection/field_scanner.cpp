// Takes words and numbers off a line of a reflection file.
#include "reflection/field_scanner.h"

#include <charconv>      // for from_chars
#include <cstddef>       // for size_t
#include <system_error>  // for errc
#include <type_traits>   // for is_floating_point_v

namespace VXCore::detail {
namespace {

constexpr bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

void FieldScanner::skip_blanks() {
  std::size_t blanks = 0;
  while (blanks < rest_.size() && is_blank(rest_[blanks]))
    ++blanks;
  rest_.remove_prefix(blanks);
}

template <class T>
bool FieldScanner::scan_number(T& value) {
  skip_blanks();
  std::string_view text = rest_;
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) {
    if constexpr (!std::is_floating_point_v<T>) {
      overflowed_ = true;
      return false;
    }
    number = 0;
  } else if (error != std::errc()) {
    return false;
  }
  value = number;
  rest_ = text.substr(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool FieldScanner::number(unsigned int& value) {
  return scan_number(value);
}
bool FieldScanner::number(int& value) {
  return scan_number(value);
}
bool FieldScanner::number(float& value) {
  return scan_number(value);
}

bool FieldScanner::word(std::string_view& value) {
  skip_blanks();
  if (rest_.empty()) return false;
  std::size_t size = 1;
  while (size < rest_.size() && !is_blank(rest_[size]))
    ++size;
  value = rest_.substr(0, size);
  rest_.remove_prefix(size);
  return true;
}

bool FieldScanner::character(char& value) {
  skip_blanks();
  if (rest_.empty()) return false;
  value = rest_.front();
  rest_.remove_prefix(1);
  return true;
}

}  // namespace VXCore::detail
