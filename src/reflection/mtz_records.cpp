// The first block and the text records of an MTZ file.
#include "reflection/mtz_records.h"

#include <bit>      // for bit_cast, endian
#include <cstring>  // for memcpy

namespace VXCore::detail {

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

}  // namespace VXCore::detail
