// Bytes of CCP4 map files in any axis order, byte order and mode, made word by word from the
// published layout, without the library's own writer.
#ifndef VXGRID_TESTS_GRIDIO_CCP4_BYTES_H
#define VXGRID_TESTS_GRIDIO_CCP4_BYTES_H

#include <algorithm>  // for reverse, equal
#include <array>      // for array
#include <bit>        // for bit_cast
#include <cstdint>    // for int32_t, uint32_t
#include <cstring>    // for memcpy
#include <map>        // for map
#include <string>     // for string
#include <vector>     // for vector

namespace vxgrid_test {

/// The six orders in which x (1), y (2), z (3) can run along columns, rows, sections.
inline constexpr std::array<std::array<int, 3>, 6> axis_orders{
    {{1, 2, 3}, {1, 3, 2}, {2, 1, 3}, {2, 3, 1}, {3, 1, 2}, {3, 2, 1}}};

struct CCP4File {
  std::array<int, 3> points{5, 6, 7};       ///< along x, y, z
  std::array<int, 3> start{-2, 3, 11};      ///< along x, y, z
  std::array<int, 3> sampling{20, 24, 28};  ///< along x, y, z
  std::array<float, 6> cell{20, 36, 33, 80, 95, 107};
  std::array<int, 3> axes{1, 2, 3};
  int mode = 2;
  bool big_endian = false;
  std::vector<std::string> symmetry;
  std::map<int, std::uint32_t> words;  ///< Header words that are to differ, counted from 1.

  /// The value of a point, as a float or, in mode 0, as a byte.
  static float real(int x, int y, int z) {
    return static_cast<float>(x) - 10.5f * static_cast<float>(y) + 100.25f * static_cast<float>(z);
  }
  static unsigned char byte(int x, int y, int z) {
    return static_cast<unsigned char>(37 * x + 11 * y + 5 * z);
  }

  std::string header() const {
    std::vector<std::uint32_t> word(257, 0);
    const auto point_count = [&](int file_axis) {
      return points[static_cast<std::size_t>(axes[static_cast<std::size_t>(file_axis)] - 1)];
    };
    for (int i = 0; i < 3; ++i) {
      const auto axis = static_cast<std::size_t>(i);
      word[axis + 1] = static_cast<std::uint32_t>(point_count(i));
      word[axis + 5] = static_cast<std::uint32_t>(start[static_cast<std::size_t>(axes[axis] - 1)]);
      word[axis + 8] = static_cast<std::uint32_t>(sampling[axis]);
      word[axis + 17] = static_cast<std::uint32_t>(axes[axis]);
    }
    word[4] = static_cast<std::uint32_t>(mode);
    for (std::size_t i = 0; i < 6; ++i)
      word[11 + i] = std::bit_cast<std::uint32_t>(cell[i]);
    const std::array<float, 3> statistics{-50.5f, 700.25f, 12.125f};
    for (std::size_t i = 0; i < 3; ++i)
      word[20 + i] = std::bit_cast<std::uint32_t>(statistics[i]);
    word[23] = 2;
    word[24] = static_cast<std::uint32_t>(80 * symmetry.size());
    word[54] = 0x4144;
    word[55] = std::bit_cast<std::uint32_t>(33.5f);
    word[56] = 2;
    for (const auto& [number, value] : words)
      word[static_cast<std::size_t>(number)] = value;
    std::string out;
    for (std::size_t i = 1; i <= 256; ++i)
      append(out, word[i]);
    out.replace(208, 4, "MAP ");
    out.replace(224, 800, std::string(800, ' '));
    out.replace(224, 11, "first label");
    out.replace(304, 12, "second label");
    return out;
  }

  std::string bytes() const {
    std::string out = header();
    for (std::string record : symmetry) {
      record.resize(80, ' ');
      out += record;
    }
    std::array<int, 3> file{};  // column, row, section
    const auto count = [&](std::size_t i) { return points[static_cast<std::size_t>(axes[i] - 1)]; };
    for (file[2] = 0; file[2] < count(2); ++file[2]) {
      for (file[1] = 0; file[1] < count(1); ++file[1]) {
        for (file[0] = 0; file[0] < count(0); ++file[0]) {
          std::array<int, 3> xyz{};
          for (std::size_t i = 0; i < 3; ++i)
            xyz[static_cast<std::size_t>(axes[i] - 1)] = file[i];
          if (mode == 0) {
            out += static_cast<char>(byte(xyz[0], xyz[1], xyz[2]));
          } else {
            append(out, std::bit_cast<std::uint32_t>(real(xyz[0], xyz[1], xyz[2])));
          }
        }
      }
    }
    return out;
  }

 private:
  void append(std::string& out, std::uint32_t word) const {
    for (unsigned i = 0; i < 4; ++i) {
      out += static_cast<char>((word >> (big_endian ? 24 - 8 * i : 8 * i)) & 0xff);
    }
  }
};

}  // namespace vxgrid_test

#endif
