// Numbers in VXB payloads: in the writer's byte order, which a mark ahead of them tells.
#ifndef VXGRID_SRC_TOOLKIT_VXB_NUMBERS_H
#define VXGRID_SRC_TOOLKIT_VXB_NUMBERS_H

#include <algorithm>    // for reverse
#include <cstddef>      // for size_t
#include <type_traits>  // for is_arithmetic_v

#include "toolkit/host/byte_order.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

template <class Number>
bool write_numbers(VXHost::vxostream& out, const Number* numbers, std::size_t count) {
  static_assert(std::is_arithmetic_v<Number>);
  const std::size_t bytes = count * sizeof(Number);
  return out.write(reinterpret_cast<const char*>(numbers), bytes) == bytes;
}

template <class Number>
bool write_number(VXHost::vxostream& out, Number number) {
  return write_numbers(out, &number, 1);
}

/// Turns numbers of one, four or eight bytes around.
template <class Number>
void reverse_numbers(Number* numbers, std::size_t count) {
  static_assert(std::is_arithmetic_v<Number>);
  if constexpr (sizeof(Number) == 4) {
    VXHost::detail::reverse_words(numbers, count);
  } else if constexpr (sizeof(Number) > 1) {
    for (std::size_t i = 0; i < count; ++i) {
      char* const bytes = reinterpret_cast<char*>(numbers + i);
      std::reverse(bytes, bytes + sizeof(Number));
    }
  }
}

/// False when the stream ends too early.
template <class Number>
bool read_numbers(VXHost::vxistream& in, Number* numbers, std::size_t count, bool reversed) {
  const std::size_t bytes = count * sizeof(Number);
  if (in.read(reinterpret_cast<char*>(numbers), bytes) != bytes) return false;
  if (reversed) reverse_numbers(numbers, count);
  return true;
}

}  // namespace VXCore::detail

#endif
