// The first block and the text records of an MTZ file.
#include "reflection/mtz_records.h"

#include <bit>           // for bit_cast, endian
#include <charconv>      // for from_chars
#include <cstring>       // for memcpy
#include <system_error>  // for errc

namespace VXCore::detail {
namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

}  // namespace

std::optional<MtzStart> parse_mtz_start(const std::array<char, mtz_record_size>& block) {
  if (std::string_view(block.data(), 4) != "MTZ ") return std::nullopt;
  // Stamps of the machine that wrote the file, reals and integers.
  constexpr bool little = std::endian::native == std::endian::little;
  constexpr char other_reals = little ? 0x11 : 0x44;
  constexpr char other_integers = little ? 0x11 : 0x41;
  MtzStart start;
  start.swap_reals = block[8] == other_reals;
  start.swap_integers = block[9] == other_integers;
  std::uint32_t position = 0;
  std::memcpy(&position, block.data() + 4, sizeof position);
  if (start.swap_integers) position = __builtin_bswap32(position);
  start.header_words = std::bit_cast<std::int32_t>(position);
  return start;
}

std::optional<std::string_view> read_mtz_record(vxistream& is,
                                                std::array<char, mtz_record_size>& buffer) {
  const std::size_t size = is.read(buffer.data(), buffer.size());
  if (size == 0) return std::nullopt;
  const std::string_view record(buffer.data(), size);
  return record.substr(0, record.find('\0'));
}

void MtzRecordScanner::skip_blanks() {
  const std::size_t start = rest_.find_first_not_of(blanks);
  rest_.remove_prefix(start == std::string_view::npos ? rest_.size() : start);
}

template <class T>
bool MtzRecordScanner::scan_number(T& value) {
  skip_blanks();
  std::string_view text = rest_;
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  value = number;
  rest_ = text.substr(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool MtzRecordScanner::number(unsigned int& value) {
  return scan_number(value);
}
bool MtzRecordScanner::number(int& value) {
  return scan_number(value);
}
bool MtzRecordScanner::number(float& value) {
  return scan_number(value);
}

bool MtzRecordScanner::word(std::string_view& value) {
  skip_blanks();
  if (rest_.empty()) return false;
  value = rest_.substr(0, rest_.find_first_of(blanks));
  rest_.remove_prefix(value.size());
  return true;
}

bool MtzRecordScanner::character(char& value) {
  skip_blanks();
  if (rest_.empty()) return false;
  value = rest_.front();
  rest_.remove_prefix(1);
  return true;
}

}  // namespace VXCore::detail
