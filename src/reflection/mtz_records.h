// The first block and the text records of an MTZ file.
//
// The layout is that of the CCP4 suite: "MTZ ", the header's position and the machine stamp in a
// block of 80 bytes, the reflections as rows of 32-bit reals, and a header of 80-byte text records.
#ifndef VXGRID_SRC_REFLECTION_MTZ_RECORDS_H
#define VXGRID_SRC_REFLECTION_MTZ_RECORDS_H

#include <array>        // for array
#include <cstddef>      // for size_t
#include <cstdint>      // for int64_t, uint32_t
#include <optional>     // for optional
#include <string_view>  // for string_view

#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

inline constexpr std::size_t mtz_record_size = 80;

/// What the first 80 bytes tell.
struct MtzStart {
  bool swap_reals = false;        ///< The reals are in the other byte order than this machine's.
  bool swap_integers = false;     ///< So is the header position, and so count the index columns.
  std::int64_t header_words = 0;  ///< Position of the text records in 4-byte words, from 1.

  /// Bytes between this block and the text records; negative in a file that makes no sense.
  std::int64_t data_size() const { return 4 * header_words - 84; }
};

/// Empty unless the 80 bytes begin with "MTZ ".
std::optional<MtzStart> parse_mtz_start(const std::array<char, mtz_record_size>& block);

/// The next text record, up to a zero byte, in `buffer`; empty at the end of the stream. The last
/// record may be cut short.
std::optional<std::string_view> read_mtz_record(vxistream& is,
                                                std::array<char, mtz_record_size>& buffer);

}  // namespace VXCore::detail

#endif
