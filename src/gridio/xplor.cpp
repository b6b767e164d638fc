// Reading XPLOR maps in their text and binary form.
#include "gridio/xplor.h"

#include <algorithm>    // for min, max
#include <array>        // for array
#include <charconv>     // for from_chars
#include <cstdint>      // for int32_t, uint64_t
#include <limits>       // for numeric_limits
#include <optional>     // for optional
#include <span>         // for span
#include <string>       // for string
#include <string_view>  // for string_view
#include <utility>      // for move

#include "gridio/map_layout.h"
#include "toolkit/host/bounded_read.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/legacy/messages.h"
#include "vxgrid/toolkit/legacy/numeric.h"

namespace VXCore::detail {

namespace {

constexpr std::size_t field_width = 12;

struct Header {
  std::array<int, 3> intervals{};  // NA, NB, NC
  std::array<int, 3> first{};      // AMIN, BMIN, CMIN
  std::array<int, 3> last{};       // AMAX, BMAX, CMAX
  std::array<float, 6> cell{};
  std::string order;

  // From NA, AMIN, AMAX, NB, BMIN, ...
  void set_extents(const std::array<int, 9>& words) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      intervals[axis] = words[3 * axis];
      first[axis] = words[3 * axis + 1];
      last[axis] = words[3 * axis + 2];
    }
  }
};

// Where the values of a map belong.
struct Layout {
  MapRange range;
  MapAxes axes;
  std::size_t size = 0;

  std::size_t slow_points() const { return static_cast<std::size_t>(range.points(axes.slow)); }
  std::size_t section_size() const { return size / slow_points(); }
};

std::optional<Layout> layout_of(const Header& header) {
  Layout layout;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    layout.range.lo[axis] = header.first[axis];
    layout.range.hi[axis] = header.last[axis];
  }
  if (!vi_grid_range_from_axes(true, header.order.c_str(), header.intervals[0], header.intervals[1],
                               header.intervals[2], layout.range, &layout.axes)) {
    return std::nullopt;
  }
  layout.size = static_cast<std::size_t>(
      vi_checked_grid_size(layout.range.points(0), layout.range.points(1), layout.range.points(2)));
  if (layout.size == 0) return std::nullopt;
  return layout;
}

// The values in the order of the file. Memory grows with what arrives.
class ValuesInFileOrder {
 public:
  explicit ValuesInFileOrder(std::size_t expected) : expected_(expected) {}

  std::size_t count() const { return count_; }
  // The values that came.
  std::span<const float> arrived() const { return {values_.data(), count_}; }
  void add(float value) {
    if (count_ == values_.size()) {
      constexpr std::size_t least = 1 << 16;
      values_.resize(std::min(expected_, std::max(least, 2 * count_)));
    }
    values_[count_++] = value;
  }
  // All that are expected, with zeros for those that did not come.
  ValueBuffer<float> take() {
    values_.resize(expected_);
    return std::move(values_);
  }

 private:
  std::size_t expected_;
  std::size_t count_ = 0;
  ValueBuffer<float> values_;
};

// Turns the values of a file to x fastest. Point (s, m, f) of the file goes to element
// (s - origin_s)*slow_stride + ...; what falls outside of the array is dropped.
ValueBuffer<float> with_x_fastest(ValuesInFileOrder& in_file_order, const Layout& layout,
                                  const std::array<std::int64_t, 3>& origin) {
  const MapAxes& axes = layout.axes;
  const std::array<unsigned int, 3> order{axes.slow, axes.middle, axes.fast};
  const std::array<std::int64_t, 3> strides{static_cast<std::int64_t>(axes.slow_stride),
                                            static_cast<std::int64_t>(axes.middle_stride),
                                            static_cast<std::int64_t>(axes.fast_stride)};
  std::int64_t start = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    start += (layout.range.lo[order[i]] - origin[order[i]]) * strides[i];
  }
  if (axes.fast == 0 && axes.middle == 1 && start == 0) return in_file_order.take();

  ValueBuffer<float> values(layout.size);
  const auto size = static_cast<std::int64_t>(layout.size);
  const auto middle_points = layout.range.points(order[1]);
  const auto fast_points = layout.range.points(order[2]);
  std::array<std::int64_t, 3> at{};
  for (const float value : in_file_order.arrived()) {
    const std::int64_t element =
        start + at[0] * strides[0] + at[1] * strides[1] + at[2] * strides[2];
    if (element >= 0 && element < size) values[static_cast<std::size_t>(element)] = value;
    if (++at[2] < fast_points) continue;
    at[2] = 0;
    if (++at[1] < middle_points) continue;
    at[1] = 0;
    ++at[0];
  }
  return values;
}

bool load_grid(VXBrioGrid& grid, ValueBuffer<float>&& values, const Header& header,
               const Layout& layout) {
  grid.Clear();
  if (!vi_load_map_into_grid(grid, std::move(values), header.cell, header.intervals[0],
                             header.intervals[1], header.intervals[2], layout.range)) {
    return false;
  }
  grid.SetTitle("xplor");
  return true;
}

// The text form.

using Line = std::array<char, 1025>;

bool next_line(VXHost::vxistream& in, Line& line) {
  return in.getline(line.data(), line.size());
}

bool holds_number(const char* line) {
  return VXBrioMol::vx_number_of_numbers_in_a_string(line) > 0;
}

// The first number of a line as an integer; 0 when it fits none.
int first_integer(const char* line) {
  const auto end = static_cast<std::size_t>(VXBrioMol::vx_end_position_of_number_in_string(line));
  // The number is the longest one that ends there.
  for (std::size_t start = std::string_view(line).find_first_of("+-.0123456789"); start < end;
       ++start) {
    double number = 0.0;
    if (!VXStringToNumber(std::string_view(line).substr(start, end - start), number)) continue;
    constexpr double most = std::numeric_limits<int>::max();
    return number >= -most && number <= most ? static_cast<int>(number) : 0;
  }
  return 0;
}

// As scanf does with nine "%d": what comes behind a word that is no integer stays 0.
std::array<int, 9> nine_integers(std::string_view text) {
  std::array<int, 9> words{};
  for (int& word : words) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\f\v"), text.size()));
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), word);
    if (parsed.ec != std::errc()) break;
    text.remove_prefix(static_cast<std::size_t>(parsed.ptr - text.data()));
  }
  return words;
}

bool parse_cell(std::string_view line, std::array<float, 6>& cell) {
  for (std::size_t i = 0; i < cell.size(); ++i) {
    if (line.size() <= i * field_width) return false;
    if (!VXStringToNumber(line.substr(i * field_width, field_width), cell[i])) return false;
  }
  return true;
}

std::string find_order(VXHost::vxistream& in) {
  Line line;
  while (next_line(in, line)) {
    for (const char* order : {"XYZ", "XZY", "YZX", "YXZ", "ZXY", "ZYX"}) {
      if (std::string_view(line.data()).find(order) != std::string_view::npos) return order;
    }
  }
  return {};
}

bool read_text_header(VXHost::vxistream& in, Header& header) {
  Line line{};
  do {
    if (!next_line(in, line)) {
      VXBrioMol::vi_warning("Failed to retrieve number of title lines");
      return false;
    }
  } while (!holds_number(line.data()));
  const int titles = first_integer(line.data());
  for (int i = 0; i < titles && next_line(in, line); ++i) {
  }

  line[0] = '\0';
  next_line(in, line);
  if (VXBrioMol::vx_number_of_numbers_in_a_string(line.data()) == 9) {
    header.set_extents(nine_integers(line.data()));
  }

  line[0] = '\0';
  next_line(in, line);
  const std::string_view cell(line.data());
  constexpr std::size_t full_cell_line = 6 * field_width;
  const bool is_cell_line = VXBrioMol::vx_number_of_numbers_in_a_string(line.data()) == 6 ||
                            cell.size() == full_cell_line;
  if (!is_cell_line || !parse_cell(cell, header.cell)) return false;

  header.order = find_order(in);
  if (header.order.empty()) {
    VXBrioMol::vi_warning("Could not find the ordering specification");
    return false;
  }
  return true;
}

bool read_text_values(VXHost::vxistream& in, const Layout& layout, ValuesInFileOrder& values) {
  std::string line;
  for (std::size_t section = 0; section < layout.slow_points(); ++section) {
    while (in.getline(line) && !holds_number(line.c_str())) {
    }
    std::string_view rest;
    for (std::size_t i = 0; i < layout.section_size(); ++i) {
      if (rest.empty()) {
        in.getline(line);
        rest = line;
      }
      const std::string_view field = rest.substr(0, field_width);
      rest.remove_prefix(field.size());
      float value = 0.0f;
      if (!VXStringToNumber(field, value)) {
        VXBrioMol::vi_warning("Unable to convert string to number while reading XPLOR file: %s",
                              std::string(field).c_str());
        return false;
      }
      values.add(value);
    }
  }
  return true;
}

bool read_text(VXHost::vxistream& in, VXBrioGrid& grid) {
  Header header;
  if (!read_text_header(in, header)) return false;
  const std::optional<Layout> layout = layout_of(header);
  if (!layout) return false;
  ValuesInFileOrder values(layout->size);
  if (!read_text_values(in, *layout, values)) return false;
  return load_grid(grid, with_x_fastest(values, *layout, layout->range.lo), header, *layout);
}

// The binary form.

// What the stream does not hold is zero.
template <class Word, std::size_t N>
void read_words(VXHost::vxistream& in, std::array<Word, N>& words) {
  words.fill(Word());
  in.read(reinterpret_cast<char*>(words.data()), sizeof words);
}

void skip_words(VXHost::vxistream& in, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::array<std::int32_t, 1> word;
    read_words(in, word);
  }
}

// The stream stands behind the number of titles.
Header read_binary_header(VXHost::vxistream& in, int titles) {
  constexpr std::size_t words_per_title = 80 / 4;
  Header header;
  skip_words(in, words_per_title * static_cast<std::size_t>(titles));
  // The end of a record and the start of the next.
  skip_words(in, 2);
  std::array<int, 9> extents;
  read_words(in, extents);
  header.set_extents(extents);
  skip_words(in, 2);
  std::array<double, 6> cell;
  read_words(in, cell);
  for (std::size_t i = 0; i < cell.size(); ++i)
    header.cell[i] = static_cast<float>(cell[i]);
  skip_words(in, 2);
  in.read(header.order, 3);
  skip_words(in, 1);
  return header;
}

void read_binary_values(VXHost::vxistream& in, const Layout& layout, ValuesInFileOrder& values) {
  // The record of the section's number, and the start of that of its values.
  constexpr std::size_t words_before_section = 4;
  std::array<double, 4096> block;
  for (std::size_t section = 0; section < layout.slow_points(); ++section) {
    skip_words(in, words_before_section);
    for (std::size_t done = 0; done < layout.section_size();) {
      const std::size_t count = std::min(block.size(), layout.section_size() - done);
      const std::size_t got =
          in.read(reinterpret_cast<char*>(block.data()), count * sizeof(double)) / sizeof(double);
      for (std::size_t i = 0; i < got; ++i)
        values.add(static_cast<float>(block[i]));
      if (got < count) return;
      done += count;
    }
    skip_words(in, 1);
  }
}

bool read_binary(VXHost::vxistream& in, int titles, VXBrioGrid& grid) {
  const Header header = read_binary_header(in, titles);
  const std::optional<Layout> layout = layout_of(header);
  if (!layout) return false;
  ValuesInFileOrder values(layout->size);
  read_binary_values(in, *layout, values);
  if (!VXHost::detail::is_proportionate(layout->size * sizeof(float),
                                        values.count() * sizeof(double))) {
    return false;
  }
  // Elements are counted from index 0 of the cell and not from the map's first index: a limit of
  // the binary form, which only maps that start at 0 come through whole.
  return load_grid(grid, with_x_fastest(values, *layout, {0, 0, 0}), header, *layout);
}

}  // namespace

bool read_xplor_grid(VXHost::vxistream& in, VXBrioGrid& grid) {
  std::array<int, 2> start;
  read_words(in, start);
  constexpr int most_titles = 100;
  if (start[1] >= 1 && start[1] <= most_titles) return read_binary(in, start[1], grid);
  in.rewind();
  return read_text(in, grid);
}

}  // namespace VXCore::detail
