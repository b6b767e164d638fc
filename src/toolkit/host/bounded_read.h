// Reading as many values as a file's header claims without trusting that claim.
//
// Memory stays in proportion to the bytes that arrive. What a short file does not fill is zero, as
// long as the claim is at most 64 MiB or 16 times what arrived; beyond that the file is refused.
#ifndef VXGRID_SRC_TOOLKIT_HOST_BOUNDED_READ_H
#define VXGRID_SRC_TOOLKIT_HOST_BOUNDED_READ_H

#include <algorithm>    // for min
#include <cstddef>      // for size_t
#include <cstdint>      // for uint64_t
#include <limits>       // for numeric_limits
#include <optional>     // for optional
#include <type_traits>  // for is_trivially_copyable_v

#include "vxgrid/toolkit/host/streams.h"

namespace VXHost::detail {

/// A claim up to this many bytes is granted whatever arrives.
inline constexpr std::uint64_t granted_claim = std::uint64_t{64} << 20;
/// A claim up to this many times the bytes that arrived is granted.
inline constexpr std::uint64_t granted_ratio = 16;

/// True when a claim of so many bytes stands in proportion to the bytes that arrived.
constexpr bool is_proportionate(std::uint64_t claimed, std::uint64_t arrived) {
  return claimed <= granted_claim || claimed / granted_ratio < arrived ||
         claimed == arrived * granted_ratio;
}

/// False when it is known, before any read, that the stream cannot back a claim of so many bytes.
/// True also when the stream does not know how much it holds.
inline bool may_back(const vxistream& in, std::uint64_t claimed) {
  const std::optional<std::uint64_t> left = in.bytes_left();
  return !left || is_proportionate(claimed, *left);
}

/// Reads `count` values as they stand in the stream into `values`, a container that adds zeros
/// when resized (ValueBuffer<T> or std::vector<T>). `arrived`, when given, takes the bytes that
/// were there. True when all of them were, or when the claim is proportionate and the rest is zero;
/// false, with `values` empty, when it is not, or when the size has no representation.
///
/// Plain files and memory are read straight into one block of the final size. Where the length is
/// not known ahead the block grows sixteenfold with what arrives, so that at most one fifteenth of
/// the bytes move again.
template <class Buffer>
bool read_claimed(vxistream& in, std::uint64_t count, Buffer& values,
                  std::uint64_t* arrived = nullptr) {
  using Value = typename Buffer::value_type;
  static_assert(std::is_trivially_copyable_v<Value>);
  if (arrived) *arrived = 0;
  values = Buffer();
  constexpr std::uint64_t most_bytes = std::numeric_limits<std::ptrdiff_t>::max();
  if (count > most_bytes / sizeof(Value)) return false;
  const std::uint64_t claimed = count * sizeof(Value);
  if (!may_back(in, claimed)) return false;

  constexpr std::uint64_t first_grant = granted_claim / sizeof(Value) * sizeof(Value);
  std::uint64_t granted = in.bytes_left() ? claimed : std::min(claimed, first_grant);
  std::uint64_t done = 0;
  while (true) {
    values.resize(static_cast<std::size_t>(granted / sizeof(Value)));
    char* const bytes = reinterpret_cast<char*>(values.data());
    done += in.read(bytes + done, static_cast<std::size_t>(granted - done));
    if (arrived) *arrived = done;
    if (done < granted || granted == claimed) break;
    granted = claimed / granted_ratio < granted ? claimed : granted * granted_ratio;
  }
  if (done < claimed && !is_proportionate(claimed, done)) {
    values = Buffer();
    return false;
  }
  if (granted < claimed) values.resize(static_cast<std::size_t>(count));
  return true;
}

}  // namespace VXHost::detail

#endif
