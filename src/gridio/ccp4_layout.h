// The layout of CCP4 map files, shared by all that reads or writes them: the header record, the
// order of the axes and the block of values.
#ifndef VXGRID_SRC_GRIDIO_CCP4_LAYOUT_H
#define VXGRID_SRC_GRIDIO_CCP4_LAYOUT_H

#include <array>     // for array
#include <cstddef>   // for size_t
#include <cstdint>   // for int64_t
#include <optional>  // for optional
#include <span>      // for span

#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/toolkit/core/value_buffer.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

inline constexpr std::size_t ccp4_header_bytes = 1024;
inline constexpr std::size_t ccp4_symmetry_bytes = 80;
/// NC, NR, NS and MODE, which a writer puts out before it looks at MODE.
inline constexpr std::size_t ccp4_leading_bytes = 16;
inline constexpr std::int64_t ccp4_most_values = 2147483647;

using CCP4HeaderBytes = std::array<unsigned char, ccp4_header_bytes>;

/// Reads the header record; what a short file lacks is 0. True when the file has the other byte
/// order, which a number of columns beyond 131072 tells.
bool read_ccp4_header(VXHost::vxistream& in, VXCCP4Header& header);

/// The header record, little-endian.
CCP4HeaderBytes ccp4_header_record(const VXCCP4Header& header);

inline bool is_readable_ccp4_mode(const VXCCP4Header& header) {
  return (header.MODE & ~2) == 0;
}

/// True when MAPC, MAPR and MAPS name axes at all.
bool has_ccp4_axes(const VXCCP4Header& header);

/// How many symmetry records follow the header.
inline std::size_t ccp4_symmetry_count(const VXCCP4Header& header) {
  return header.NSYMBT < 0 ? 0 : static_cast<std::size_t>(header.NSYMBT) / ccp4_symmetry_bytes;
}

/// NC * NR * NS; empty when one of them is negative or the product is beyond 2^31 - 1.
std::optional<std::size_t> ccp4_value_count(const VXCCP4Header& header);

/// The points of a file along its columns, rows and sections, and what one step along each of them
/// is in an array that has x fastest.
struct CCP4Layout {
  std::size_t columns = 0, rows = 0, sections = 0;
  std::size_t column_stride = 0, row_stride = 0, section_stride = 0;

  std::size_t size() const { return columns * rows * sections; }
  /// True when the file runs through the array from front to back.
  bool is_array_order() const;
};

/// The layout by MAPC and MAPR; MAPS is the axis that is left, whatever it says. Empty when the two
/// are equal or name no axis. No count may be negative.
std::optional<CCP4Layout> ccp4_layout(const VXCCP4Header& header);

/// Reads the block of values into an array with x fastest. Values that a short file lacks are 0.
/// False, with no values, when the file is too short for what it claims.
bool read_ccp4_values(VXHost::vxistream& in, const VXCCP4Header& header, const CCP4Layout& layout,
                      bool reversed, ValueBuffer<float>& values);

/// Writes an array with x fastest as a block of values, little-endian. False when the stream does
/// not take them all.
bool write_ccp4_values(VXHost::vxostream& out, const CCP4Layout& layout,
                       std::span<const float> values);

}  // namespace VXCore::detail

#endif
