// MTZ files for tests, written by gemmi, and what may be wrong with them.
#ifndef VXGRID_TESTS_REFLECTION_MTZ_MAKER_H
#define VXGRID_TESTS_REFLECTION_MTZ_MAKER_H

#include <algorithm>  // for reverse
#include <array>      // for array
#include <cstdint>    // for int32_t
#include <cstring>    // for memcpy
#include <string>     // for string
#include <vector>     // for vector

#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/mtz.hpp>  // for Mtz

namespace vxgrid_test {

struct MtzColumn {
  std::string label;
  char type;
  std::vector<float> values;
};

struct MtzContent {
  std::vector<std::array<int, 3>> hkl;
  std::vector<MtzColumn> columns;
  std::string group = "P 21 21 21";
  std::array<double, 6> cell = {30, 40, 50, 90, 90, 90};
};

inline std::string mtz_bytes(const MtzContent& content) {
  gemmi::Mtz mtz(true);
  mtz.spacegroup = gemmi::find_spacegroup_by_name(content.group);
  const auto& c = content.cell;
  mtz.set_cell_for_all(gemmi::UnitCell(c[0], c[1], c[2], c[3], c[4], c[5]));
  mtz.add_dataset("made");
  for (const MtzColumn& column : content.columns)
    mtz.add_column(column.label, column.type, -1, -1, false);
  std::vector<float> rows;
  for (std::size_t i = 0; i < content.hkl.size(); ++i) {
    for (int index : content.hkl[i])
      rows.push_back(static_cast<float>(index));
    for (const MtzColumn& column : content.columns)
      rows.push_back(column.values[i]);
  }
  mtz.set_data(rows.data(), rows.size());
  std::string bytes;
  mtz.write_to_string(bytes);
  return bytes;
}

inline std::int32_t header_words(const std::string& bytes) {
  std::int32_t words = 0;
  std::memcpy(&words, bytes.data() + 4, sizeof words);
  return words;
}

inline std::string with_header_words(std::string bytes, std::int32_t words) {
  std::memcpy(bytes.data() + 4, &words, sizeof words);
  return bytes;
}

/// Where the text records begin.
inline std::size_t header_start(const std::string& bytes) {
  return 4 * static_cast<std::size_t>(header_words(bytes)) - 4;
}

/// The text record with this beginning replaced by another text; without one it becomes a comment.
inline std::string with_record(std::string bytes, const std::string& beginning,
                               const std::string& text) {
  for (std::size_t at = header_start(bytes); at < bytes.size(); at += 80) {
    if (bytes.compare(at, beginning.size(), beginning) != 0) continue;
    std::string record = text;
    record.resize(80, ' ');
    bytes.replace(at, 80, record);
    break;
  }
  return bytes;
}

/// The same file as a machine of the other byte order writes it.
inline std::string other_byte_order(std::string bytes) {
  const std::size_t end = header_start(bytes);
  const auto reverse_word = [&bytes](std::size_t at) {
    std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                 bytes.begin() + static_cast<std::ptrdiff_t>(at) + 4);
  };
  reverse_word(4);
  for (std::size_t at = 80; at < end; at += 4)
    reverse_word(at);
  bytes[8] = bytes[9] = 0x11;
  return bytes;
}

}  // namespace vxgrid_test

#endif
