// The Ascii grid: a short header, then one value a line.
#include "vxgrid/gridio/ascii.h"

#include <algorithm>    // for max, min
#include <array>        // for array
#include <charconv>     // for to_chars
#include <cstdint>      // for uint64_t
#include <limits>       // for numeric_limits
#include <string>       // for string
#include <string_view>  // for string_view
#include <utility>      // for move
#include <vector>       // for vector

#include "toolkit/host/bounded_read.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/core/value_buffer.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

namespace {

using Tokens = std::vector<std::string>;
using Dimensions = std::array<unsigned int, 3>;

// Beyond this a grid takes no dimensions.
constexpr std::uint64_t most_points = std::numeric_limits<unsigned int>::max();

// Reads a line that starts with this word. False, with the warning about it, for another.
bool read_line(VXHost::vxistream& in, const char* keyword, Tokens& tokens) {
  std::string line;
  in.getline(line);
  VXStringTokenize(tokens, line, " \t\n");
  return !tokens.empty() && tokens[0] == keyword;
}

bool complain(const char* keyword) {
  VXThrow.Warning("Problem reading %s line in Ascii grid", keyword);
  return false;
}

// The same for a line of so many tokens in all.
bool read_line(VXHost::vxistream& in, const char* keyword, std::size_t count, Tokens& tokens) {
  return (read_line(in, keyword, tokens) && tokens.size() == count) || complain(keyword);
}

// The product, or the largest number there is.
std::uint64_t size_of(const Dimensions& dim) {
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t plane = std::uint64_t{dim[0]} * dim[1];
  return dim[2] == 0 || plane <= most / dim[2] ? plane * dim[2] : most;
}

// Takes values as they come; its memory grows with them and stays in proportion.
class Values {
 public:
  explicit Values(std::uint64_t expected) : expected_(expected) {}

  void add(float value) {
    if (count_ >= values_.size()) {
      constexpr std::uint64_t least = 1 << 16;
      values_.resize(static_cast<std::size_t>(std::min(expected_, std::max(least, 4 * count_))));
    }
    values_[static_cast<std::size_t>(count_++)] = value;
  }
  std::uint64_t count() const { return count_; }
  /// All that are expected, those that did not come being zero.
  ValueBuffer<float> take() {
    values_.resize(static_cast<std::size_t>(expected_));
    return std::move(values_);
  }

 private:
  std::uint64_t expected_;
  std::uint64_t count_ = 0;
  ValueBuffer<float> values_;
};

// Reads as many lines as the dimensions ask for into the grid, whose size is set by now unless the
// stream may turn out too short for it.
bool read_values(VXHost::vxistream& in, const Dimensions& dim, VXGrid<float>& grid) {
  const std::uint64_t claimed = size_of(dim);
  if (claimed == 0) return true;
  // Dimensions that no grid can have run into the end of the file; their values have no place.
  const bool representable = claimed <= most_points;
  const std::uint64_t expected = representable ? claimed : grid.GetSize();
  const std::uint64_t start = in.tell();
  Values values(claimed);
  std::uint64_t lines = 0;
  std::string line;
  while (lines < claimed && in.getline(line)) {
    ++lines;
    float value = 0.0f;
    if (!VXStringToNumber(line, value)) {
      VXThrow.Warning("Could not read floating point value from the text '%s'", line.c_str());
      value = 0.0f;
    }
    if (representable) values.add(value);
  }
  if (representable && VXHost::detail::is_proportionate(4 * claimed, in.tell() - start)) {
    if (grid.GetSize() == claimed || grid.SetDim(dim[0], dim[1], dim[2])) {
      grid.AdoptValues(values.take());
    }
  }
  if (lines == claimed) return true;
  VXThrow.Warning("Reached early end-of-file.");
  VXThrow.Warning("Expected grid size: %llu, found: %llu",
                  static_cast<unsigned long long>(expected),
                  static_cast<unsigned long long>(lines));
  return false;
}

}  // namespace

bool VXReadAsciiGrid(VXHost::vxistream& in, VXGrid<float>& grid) {
  Tokens tokens;
  if (!read_line(in, "Title:", tokens)) return complain("Title:");
  if (tokens.size() > 1) {
    std::string title = tokens[1];
    for (std::size_t i = 2; i < tokens.size(); ++i)
      title += " " + tokens[i];
    grid.SetTitle(title);
  }

  if (!read_line(in, "Mid:", 4, tokens)) return false;
  std::array<float, 3> mid{};
  for (std::size_t i = 0; i < 3; ++i)
    VXStringToNumber(tokens[i + 1], mid[i]);
  grid.SetMid(mid[0], mid[1], mid[2]);

  if (!read_line(in, "Dim:", 4, tokens)) return false;
  Dimensions dim{};
  for (std::size_t i = 0; i < 3; ++i)
    VXStringToNumber(tokens[i + 1], dim[i], 10);
  // A size far beyond what is left of the stream, or what may be, waits for the values to arrive.
  const std::uint64_t claimed = size_of(dim);
  const bool is_backed = claimed <= VXHost::detail::granted_claim / 4 ||
                         (in.bytes_left() && VXHost::detail::may_back(in, 4 * claimed));
  if (is_backed || claimed > most_points) {
    grid.SetDim(dim[0], dim[1], dim[2]);
  } else {
    grid.SetDim(0, 0, 0);
  }

  if (!read_line(in, "Spacing:", 2, tokens)) return false;
  float spacing = 0.0f;
  VXStringToNumber(tokens[1], spacing);
  grid.SetSpacing(spacing);

  if (!read_line(in, "Values:", 1, tokens)) return false;
  return read_values(in, dim, grid);
}

bool VXWriteAsciiGrid(VXHost::vxostream& out, const VXFixedGrid<float>& grid) {
  unsigned int xdim = 0, ydim = 0, zdim = 0;
  float x = 0.0f, y = 0.0f, z = 0.0f;
  grid.GetDim(xdim, ydim, zdim);
  grid.GetMid(x, y, z);
  out << "Title: " << grid.GetTitle() << VXHost::vxendl;
  out << format_text("Mid: %12.6f %12.6f %12.6f", static_cast<double>(x), static_cast<double>(y),
                     static_cast<double>(z))
      << VXHost::vxendl;
  out << format_text("Dim: %6u %6u %6u", xdim, ydim, zdim) << VXHost::vxendl;
  out << format_text("Spacing: %12.6f", static_cast<double>(grid.GetSpacing())) << VXHost::vxendl;
  out << "Values:" << VXHost::vxendl;

  // As printf's "%-12.6e", free of the locale.
  constexpr std::size_t least_width = 12;
  std::array<char, 32> text;
  const std::size_t size = std::size_t{xdim} * ydim * zdim;
  const float* const values = grid.GetValues();
  for (std::size_t i = 0; i < size; ++i) {
    const auto end = std::to_chars(text.data(), text.data() + text.size(), values[i],
                                   std::chars_format::scientific, 6);
    auto length = static_cast<std::size_t>(end.ptr - text.data());
    while (length < least_width)
      text[length++] = ' ';
    text[length++] = '\n';
    out.write(text.data(), length);
  }
  return true;
}

}  // namespace VXCore
