// Reading and writing the GRD format.
#include "gridio/grd.h"

#include <array>    // for array
#include <cstdint>  // for int64_t, uint64_t
#include <limits>   // for numeric_limits
#include <string>   // for string
#include <utility>  // for move

#include "gridio/map_layout.h"
#include "toolkit/host/bounded_read.h"
#include "toolkit/host/byte_order.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace VXCore::detail {

namespace {

constexpr std::size_t title_block = 80;
constexpr std::size_t title_length = 78;

class Writer {
 public:
  explicit Writer(VXHost::vxostream& out) : out_(out) {}

  template <class Word>
  void word(Word value) {
    block(&value, 1);
  }
  template <class Word>
  void block(const Word* values, std::size_t count) {
    static_assert(sizeof(Word) == 4);
    out_.write(reinterpret_cast<const char*>(values), count * sizeof(Word));
  }
  template <class Word>
  void item(bool is_set, Word value) {
    word<int>(is_set ? 1 : 0);
    if (is_set) word(value);
  }
  void title(const VXBrioGrid& grid) {
    word<int>(grid.IsTitleSet() ? 1 : 0);
    if (!grid.IsTitleSet()) return;
    // As a zero-terminated text.
    std::string text = grid.GetTitle().c_str();
    text.resize(title_length, ' ');
    text.resize(title_block, '\0');
    out_.write(text.data(), text.size());
  }
  template <class T>
  void field(const VXFixedGrid<T>& field) {
    if (field.GetValues()) block(field.GetValues(), field.GetSize());
  }
  template <class T>
  void first_field(bool is_set, const VXMultiGrid<T>& fields) {
    word<int>(is_set ? 1 : 0);
    if (is_set) field(fields[0]);
  }
  template <class T>
  void further_fields(int count, const VXMultiGrid<T>& fields) {
    for (unsigned int i = 1; i < fields.GetNumGrids() && static_cast<int>(i) < count; ++i) {
      field(fields[i]);
    }
  }

 private:
  VXHost::vxostream& out_;
};

// The state words of the file and the numbers behind them. Every member is false when the stream
// ends, and `state` also for a word that is no state.
class Reader {
 public:
  explicit Reader(VXHost::vxistream& in) : in_(in) {}

  bool at_end() { return in_.peekbyte() < 0; }
  void reverse_numbers(bool reverse) { reverse_ = reverse; }

  bool text(std::string& to, std::size_t length) { return in_.read(to, length) == length; }
  bool raw_word(int& word) {
    return in_.read(reinterpret_cast<char*>(&word), sizeof word) == sizeof word;
  }
  bool state(int& state) {
    if (!raw_word(state)) return false;
    if (state <= 2) return true;
    VXThrow.Warning("Corrupt state read from GRD file: %i", state);
    return false;
  }
  template <class Word>
  bool numbers(Word* to, std::size_t count) {
    const std::size_t bytes = count * sizeof(Word);
    if (in_.read(reinterpret_cast<char*>(to), bytes) != bytes) return false;
    if (reverse_) VXHost::detail::reverse_words(to, count);
    return true;
  }
  // A state and, when it is not 0, a number.
  template <class Word>
  bool item(int& state_word, Word& number) {
    return state(state_word) && (state_word == 0 || numbers(&number, 1));
  }
  // A field of values. `store` takes what there is, also of a field that the file breaks off; it
  // is not called for one that the file is too short to back.
  template <class T, class Store>
  bool field(std::int64_t size, Store store) {
    ValueBuffer<T> values;
    std::uint64_t arrived = 0;
    if (!VXHost::detail::read_claimed(in_, static_cast<std::uint64_t>(size), values, &arrived)) {
      return false;
    }
    if (reverse_) VXHost::detail::reverse_words(values.data(), arrived / sizeof(T));
    const bool is_whole = arrived == values.size() * sizeof(T);
    return store(std::move(values)) && is_whole;
  }

 private:
  VXHost::vxistream& in_;
  bool reverse_ = false;
};

// The fields that a file brings are read in its order into a grid that keeps what it got.
class GridReader {
 public:
  GridReader(VXHost::vxistream& in, VXBrioGrid& grid) : in_(in), grid_(grid) {}

  bool read() {
    return read_title() && read_place() && read_dimensions() && read_first_fields() &&
           read_orientation() && read_further_fields() && (in_.at_end() || read_crystal());
  }

 private:
  bool read_title() {
    int state = 0;
    if (!in_.state(state)) return false;
    if (state == 0) return true;
    std::string title;
    if (!in_.text(title, title_block)) return false;
    const std::size_t last = title.find_last_not_of(" \t\f\v\n\r", title_length - 1);
    if (last != std::string::npos) title.erase(last + 1);
    grid_.SetTitle(title.c_str());
    return true;
  }

  bool read_place() {
    auto& floats = grid_.GetFloats();
    auto& integers = grid_.GetIntegers();
    int state = 0;
    float number = 0.0f;
    if (!in_.state(state)) return false;
    // The state of xmid speaks for the whole file.
    in_.reverse_numbers(state == 2);
    if (state != 0) {
      if (!in_.numbers(&number, 1)) return false;
      if (!integers.SetXMid(number) || !floats.SetXMid(number)) return false;
    }
    if (!in_.item(state, number)) return false;
    if (state != 0 && !(integers.SetYMid(number) && floats.SetYMid(number))) return false;
    if (!in_.item(state, number)) return false;
    if (state != 0 && !(integers.SetZMid(number) && floats.SetZMid(number))) return false;
    if (!in_.item(state, number)) return false;
    return state == 0 || (integers.SetSpacing(number) && floats.SetSpacing(number));
  }

  bool read_dimensions() {
    int state = 0;
    return in_.item(state, dim_[0]) && in_.item(state, dim_[1]) && in_.item(state, dim_[2]);
  }

  bool read_first_fields() {
    int state = 0;
    if (!in_.state(state)) return false;
    if (state != 0) {
      take_reentrant_signs();
      if (!read_first_field(grid_.GetFloats())) return false;
    }
    if (!in_.state(state)) return false;
    return state == 0 || read_first_field(grid_.GetIntegers());
  }

  void take_reentrant_signs() {
    constexpr std::array<void (VXBrioGrid::*)(), 3> set_reentrant{
        &VXBrioGrid::SetXReentrant, &VXBrioGrid::SetYReentrant, &VXBrioGrid::SetZReentrant};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (dim_[axis] >= 0) continue;
      // The lowest number has no counterpart; it stays, and is no dimension.
      if (dim_[axis] != std::numeric_limits<int>::min()) dim_[axis] = -dim_[axis];
      (grid_.*set_reentrant[axis])();
    }
  }

  // The size of a field, 0 with the warnings when there is none.
  std::int64_t size() const {
    const std::int64_t size = vi_checked_grid_size(dim_[0], dim_[1], dim_[2]);
    if (size < 1) {
      VXThrow.Warning("Attempting to read a grid with bad dimensions: %i x %i x %i", dim_[0],
                      dim_[1], dim_[2]);
    }
    return size;
  }

  template <class T>
  bool read_first_field(VXMultiGrid<T>& fields) {
    const std::int64_t points = size();
    if (points < 1) return false;
    return in_.field<T>(points, [&](ValueBuffer<T>&& values) {
      return fields.SetDim(static_cast<unsigned int>(dim_[0]), static_cast<unsigned int>(dim_[1]),
                           static_cast<unsigned int>(dim_[2])) &&
             fields[0].AdoptValues(std::move(values));
    });
  }

  bool read_orientation() {
    int state = 0;
    if (!in_.state(state)) return false;
    if (state == 0) return true;
    std::array<float, 9> orientation{};
    if (!in_.numbers(orientation.data(), orientation.size())) return false;
    grid_.SetOrientationSet(true);
    grid_.SetOrientation(orientation.data());
    return true;
  }

  bool read_further_fields() {
    int ignored_state = 0;
    int float_fields = 0;
    int integer_fields = 0;
    if (!in_.raw_word(ignored_state) || !in_.numbers(&float_fields, 1) ||
        !in_.raw_word(ignored_state) || !in_.numbers(&integer_fields, 1)) {
      return false;
    }
    // A negative count is one that no grid takes.
    if (float_fields < 1 || !grid_.SetFloatsMultiple(1)) return false;
    const std::int64_t points = size();
    // A grid without points has a head and no fields, and there is nothing more to size.
    const bool is_empty = dim_ == std::array<int, 3>{} && float_fields == 1 && integer_fields == 1;
    if (points < 1 && !is_empty) return false;
    return read_further_fields(grid_.GetFloats(), float_fields, points,
                               &VXBrioGrid::SetFloatsMultiple) &&
           integer_fields >= 1 &&
           read_further_fields(grid_.GetIntegers(), integer_fields, points,
                               &VXBrioGrid::SetIntegersMultiple);
  }

  // The grid gets its fields one by one, so that a count costs no memory before its values arrive.
  // Fields of a kind that has no first field in the file have no place in the grid.
  template <class T>
  bool read_further_fields(VXMultiGrid<T>& fields, int count, std::int64_t points,
                           bool (VXBrioGrid::*set_multiple)(unsigned int)) {
    for (int i = 1; i < count; ++i) {
      const auto index = static_cast<unsigned int>(i);
      const bool is_read = in_.field<T>(points, [&](ValueBuffer<T>&& values) {
        if (!(grid_.*set_multiple)(index + 1)) return false;
        fields[index].AdoptValues(std::move(values));
        return true;
      });
      if (!is_read) return false;
    }
    return (grid_.*set_multiple)(static_cast<unsigned int>(count));
  }

  bool read_crystal() {
    std::array<float, 6> cell{};
    std::array<int, 3> intervals{};
    if (!in_.numbers(cell.data(), cell.size()) ||
        !in_.numbers(intervals.data(), intervals.size())) {
      return false;
    }
    bool is_set = true;
    for (const float edge_or_angle : cell)
      is_set = is_set && edge_or_angle != 0.0f;
    for (const int count : intervals)
      is_set = is_set && count != 0;
    if (is_set) {
      grid_.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5],
                        static_cast<unsigned int>(intervals[0]),
                        static_cast<unsigned int>(intervals[1]),
                        static_cast<unsigned int>(intervals[2]));
    }
    int space_group = 0;
    int type = 0;
    if (!in_.numbers(&space_group, 1)) return false;
    if (space_group != 0) grid_.SetSpaceGroup(static_cast<unsigned int>(space_group));
    if (!in_.numbers(&type, 1)) return false;
    if (type != 0) grid_.SetType(static_cast<unsigned int>(type));
    return true;
  }

  Reader in_;
  VXBrioGrid& grid_;
  std::array<int, 3> dim_{};
};

}  // namespace

bool write_grd(VXHost::vxostream& out, const VXBrioGrid& grid) {
  Writer writer(out);
  const auto& floats = grid.GetFloats();
  writer.title(grid);
  writer.item(floats.IsXMidSet(), floats.GetXMid());
  writer.item(floats.IsYMidSet(), floats.GetYMid());
  writer.item(floats.IsZMidSet(), floats.GetZMid());
  writer.item(floats.IsSpacingSet(), floats.GetSpacing());

  const unsigned int reentrant = grid.GetReentrant();
  const auto signed_dim = [](unsigned int dim, bool negative) {
    return negative ? -static_cast<int>(dim) : static_cast<int>(dim);
  };
  writer.item(true, signed_dim(grid.GetXDim(), (reentrant & 1u) != 0));
  writer.item(true, signed_dim(grid.GetYDim(), (reentrant & 2u) != 0));
  writer.item(true, signed_dim(grid.GetZDim(), (reentrant & 3u) != 0));

  writer.first_field(grid.GetFloatsSet(), floats);
  writer.first_field(grid.GetIntegersSet(), grid.GetIntegers());

  writer.word<int>(grid.GetOrientationSet() ? 1 : 0);
  std::array<float, 9> orientation{};
  if (grid.GetOrientation(orientation.data())) {
    writer.block(orientation.data(), orientation.size());
  }

  const int float_fields = grid.GetFloatsMultiple();
  const int integer_fields = grid.GetIntegersMultiple();
  for (const int count : {float_fields, integer_fields}) {
    writer.word<int>(count < 1 ? 0 : 1);
    writer.word(count);
  }
  writer.further_fields(float_fields, floats);
  writer.further_fields(integer_fields, grid.GetIntegers());

  std::array<float, 6> cell{};
  std::array<unsigned int, 3> intervals{};
  grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  grid.GetUnitSpacing(intervals[0], intervals[1], intervals[2]);
  writer.block(cell.data(), cell.size());
  writer.block(intervals.data(), intervals.size());
  writer.word(grid.GetSpaceGroup());
  writer.word(grid.GetType());
  return true;
}

bool read_grd(VXHost::vxistream& in, VXBrioGrid& grid) {
  grid.Clear();
  return GridReader(in, grid).read();
}

}  // namespace VXCore::detail
