// The records of the host grids: geometry, values and tagged data.
//
// The parts that other grids have in common ("VXFixedGridFloat" and its kin) keep their values in
// the order of the machine that wrote them, and reading leaves it to the record around to turn
// them. Grids that stand on their own are such a part behind a mark of the order.
#include <algorithm>    // for max, min
#include <cstdint>      // for uint32_t, uint64_t
#include <cstring>      // for memcpy
#include <type_traits>  // for is_same_v

#include "toolkit/vxb/defaults.h"
#include "toolkit/vxb/numbers.h"
#include "toolkit/vxb/ordered_values.h"
#include "vxgrid/toolkit/core/host_grids.h"
#include "vxgrid/toolkit/vxb/handler.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {
namespace {

// Zeros at the end of a lattice are left out, down to this part of it, so that a field that nobody
// has touched costs little and a short record cannot ask for much memory.
constexpr unsigned int least_part = 16;
constexpr std::size_t word = 4;

enum SetFlags : unsigned char {
  title_set = 1,
  spacing_set = 2,
  x_mid_set = 4,
  y_mid_set = 8,
  z_mid_set = 16
};

unsigned int least_stored(unsigned int size) {
  return size / least_part + (size % least_part != 0 ? 1 : 0);
}

bool is_zero(const char* values, std::size_t count) {
  constexpr std::size_t lanes = 64;
  std::uint32_t bits[lanes] = {};
  for (std::size_t i = 0; i < count; i += lanes) {
    std::uint32_t words[lanes];
    std::memcpy(words, values + i * word, sizeof words);
    for (std::size_t lane = 0; lane < lanes; ++lane)
      bits[lane] |= words[lane];
  }
  std::uint32_t any = 0;
  for (const std::uint32_t lane : bits)
    any |= lane;
  return any == 0;
}

// How many of the values are stored: all up to the last one that is not zero, bit by bit.
unsigned int stored_count(const void* values, unsigned int size) {
  const char* const bytes = static_cast<const char*>(values);
  const unsigned int least = least_stored(size);
  constexpr unsigned int block = 4096;
  unsigned int stored = size;
  while (stored >= block && stored - block >= least &&
         is_zero(bytes + std::size_t{stored - block} * word, block)) {
    stored -= block;
  }
  std::uint32_t last = 0;
  while (stored > least) {
    std::memcpy(&last, bytes + std::size_t{stored - 1} * word, word);
    if (last != 0) break;
    --stored;
  }
  return stored;
}

bool write_geometry(VXHost::vxostream& out, const VXGridBase& grid) {
  unsigned int flags = 0;
  if (grid.IsTitleSet()) flags |= title_set;
  if (grid.IsSpacingSet()) flags |= spacing_set;
  if (grid.IsXMidSet()) flags |= x_mid_set;
  if (grid.IsYMidSet()) flags |= y_mid_set;
  if (grid.IsZMidSet()) flags |= z_mid_set;
  const float place[] = {grid.GetSpacing(), grid.GetXMid(), grid.GetYMid(), grid.GetZMid()};
  const unsigned int dim[] = {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()};
  return out.put(static_cast<char>(VXBVersion)) && out.put(VXBIntEndian()) &&
         out.put(VXBFloatEndian()) && out.put(static_cast<char>(flags)) &&
         VXBWriteTag(out, grid.GetTitle()) && detail::write_numbers(out, place, 4) &&
         detail::write_numbers(out, dim, 3);
}

// The geometry of a record that is being read.
class Geometry {
 public:
  unsigned int read(RecordReader& in) {
    const int version = in.getbyte();
    const int int_mark = in.getbyte();
    const int float_mark = in.getbyte();
    const int flags = in.getbyte();
    if (flags < 0) return VXBStatus::StreamEnded;
    if (version != VXBVersion) return VXBStatus::NotKept;
    flags_ = static_cast<unsigned int>(flags);
    ints_reversed_ = VXBIntEndian(int_mark);
    if (!VXBReadTag(in, title_)) return VXBStatus::NoTag;
    const bool is_whole = detail::read_numbers(in, place_, 4, VXBFloatEndian(float_mark)) &&
                          detail::read_numbers(in, dim_, 3, ints_reversed_);
    return is_whole ? VXBStatus::Success : VXBStatus::ShortRecord;
  }

  bool ints_reversed() const { return ints_reversed_; }

  // False when the record is too short for so many lattices of that size.
  bool is_backed(unsigned int lattices, std::size_t bytes_left) const {
    const std::uint64_t plane = std::uint64_t{dim_[0]} * dim_[1];
    if (plane == 0 || dim_[2] == 0) return true;
    const std::uint64_t most = std::uint64_t{bytes_left} / word * least_part;
    return plane <= most / dim_[2] / lattices;
  }

  // What one lattice of that size takes in the record; for sizes that are backed.
  std::uint64_t least_bytes() const {
    return std::uint64_t{least_stored(dim_[0] * dim_[1] * dim_[2])} * word;
  }

  // Gives the grid this geometry, and values that are zero.
  bool apply(VXGridBase& grid) const {
    if ((flags_ & title_set) != 0) grid.SetTitle(title_);
    if ((flags_ & spacing_set) != 0) grid.SetSpacing(place_[0]);
    if ((flags_ & x_mid_set) != 0) grid.SetXMid(place_[1]);
    if ((flags_ & y_mid_set) != 0) grid.SetYMid(place_[2]);
    if ((flags_ & z_mid_set) != 0) grid.SetZMid(place_[3]);
    return grid.SetDim(dim_[0], dim_[1], dim_[2]);
  }

 private:
  unsigned int flags_ = 0;
  bool ints_reversed_ = false;
  std::string title_;
  float place_[4] = {};
  unsigned int dim_[3] = {};
};

template <class T>
bool write_values(VXHost::vxostream& out, const VXFixedGrid<T>& grid) {
  static_assert(sizeof(T) == word);
  const unsigned int stored = stored_count(grid.GetValues(), grid.GetSize());
  return detail::write_number(out, stored) && detail::write_numbers(out, grid.GetValues(), stored);
}

template <class T>
unsigned int read_values(RecordReader& in, bool ints_reversed, VXFixedGrid<T>& grid) {
  unsigned int stored = 0;
  if (!detail::read_numbers(in, &stored, 1, ints_reversed)) return VXBStatus::ShortRecord;
  const bool is_right = stored <= grid.GetSize() && stored >= least_stored(grid.GetSize());
  return is_right && detail::read_numbers(in, grid.GetValues(), stored, false)
             ? VXBStatus::Success
             : VXBStatus::ShortRecord;
}

unsigned int read_tagged_data(RecordReader& in, VXBase& object, VXBinaryIOHandlerBase& handler) {
  unsigned int status = VXBStatus::Success;
  while (status == VXBStatus::Success && !in.eof())
    status = handler.ReadAs(in, object, type_ids::base);
  return status;
}

template <class T>
std::string tag_of(const char* stem) {
  return std::string(stem) + (std::is_same_v<T, float> ? "Float" : "Int");
}

template <class T>
bool write_content(RecordPayload& out, const VXFixedGrid<T>& grid,
                   VXBinaryIOHandlerBase& /*handler*/) {
  return write_values(out, grid);
}

// The tagged data of each field follow its values; a zero, which no record starts with, stands for
// none.
template <class T>
bool write_content(RecordPayload& out, const VXFixedMultiGrid<T>& grids,
                   VXBinaryIOHandlerBase& handler) {
  if (!detail::write_number(out, grids.GetNumGrids())) return false;
  for (unsigned int i = 0; i < grids.GetNumGrids(); ++i) {
    if (!write_values(out, grids[i])) return false;
    const std::size_t before = out.size();
    if (!handler.WriteAs(out, grids[i], type_ids::base)) return false;
    if (out.size() == before && !out.put(0)) return false;
  }
  return true;
}

template <class T>
unsigned int read_content(RecordReader& in, const Geometry& geometry, VXFixedGrid<T>& grid,
                          VXBinaryIOHandlerBase& /*handler*/) {
  if (!geometry.is_backed(1, in.left()) || !geometry.apply(grid)) return VXBStatus::ShortRecord;
  return read_values(in, geometry.ints_reversed(), grid);
}

template <class T>
unsigned int read_content(RecordReader& in, const Geometry& geometry, VXFixedMultiGrid<T>& grids,
                          VXBinaryIOHandlerBase& handler) {
  constexpr std::size_t least_field = word + 1;
  unsigned int count = 0;
  if (!detail::read_numbers(in, &count, 1, geometry.ints_reversed()) ||
      count > in.left() / least_field || !geometry.is_backed(std::max(count, 1u), in.left())) {
    return VXBStatus::ShortRecord;
  }
  // The fields may have data with grids of their own, so that others count on the same bytes.
  const std::uint64_t added = count - std::min(count, grids.GetNumGrids());
  if (!in.set_aside(added * least_field + count * geometry.least_bytes()))
    return VXBStatus::ShortRecord;
  // Who asks a store for its first field always finds one.
  grids.SetDim(0, 0, 0);
  if (!grids.SetNumGrids(std::max(count, 1u)) || !geometry.apply(grids))
    return VXBStatus::ShortRecord;
  for (unsigned int i = 0; i < count; ++i) {
    unsigned int status = read_values(in, geometry.ints_reversed(), grids[i]);
    if (status == VXBStatus::Success && in.peekbyte() != 0)
      status = handler.ReadAs(in, grids[i], type_ids::base);
    else if (status == VXBStatus::Success)
      in.getbyte();
    if (status != VXBStatus::Success) return status;
  }
  return VXBStatus::Success;
}

// What VXFixedGrid and VXFixedMultiGrid have.
template <class T, class Part>
class PartWriteFxn final : public VXWriteFxn<Part> {
 public:
  explicit PartWriteFxn(const char* stem) : tag_(tag_of<T>(stem)) {}

  std::string GetTag() const override { return tag_; }
  PartWriteFxn* CreateCopy() const override { return new PartWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override {
    const Part& grid = this->cast(object);
    RecordWriter record(out, tag_);
    return record && write_geometry(record.payload(), grid) &&
           write_content(record.payload(), grid, handler) &&
           handler.WriteAs(record.payload(), grid, type_ids::base) && record.finish();
  }

 private:
  std::string tag_;
};

template <class T, class Part>
class PartReadFxn final : public VXReadFxn<Part> {
 public:
  explicit PartReadFxn(const char* stem) : tag_(tag_of<T>(stem)) {}

  std::string GetTag() const override { return tag_; }
  PartReadFxn* CreateCopy() const override { return new PartReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override {
    Part& grid = this->cast(object);
    RecordReader payload(in, length);
    if (payload.status() != VXBStatus::Success) return payload.status();
    Geometry geometry;
    unsigned int status = geometry.read(payload);
    if (status == VXBStatus::Success) status = read_content(payload, geometry, grid, handler);
    return status == VXBStatus::Success ? read_tagged_data(payload, grid, handler) : status;
  }

 private:
  std::string tag_;
};

// A grid that stands on its own: VXGrid and VXMultiGrid.
template <class T, class Grid, class Part>
class GridWriteFxn final : public VXWriteFxn<Grid> {
 public:
  explicit GridWriteFxn(const char* stem) : tag_(tag_of<T>(stem)) {}

  std::string GetTag() const override { return tag_; }
  GridWriteFxn* CreateCopy() const override { return new GridWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override {
    const Part& part = this->cast(object);
    RecordWriter record(out, tag_);
    return record && detail::write_ordered<T>(record.payload(), part, handler) && record.finish();
  }

 private:
  std::string tag_;
};

template <class T, class Grid, class Part>
class GridReadFxn final : public VXReadFxn<Grid> {
 public:
  explicit GridReadFxn(const char* stem) : tag_(tag_of<T>(stem)) {}

  std::string GetTag() const override { return tag_; }
  GridReadFxn* CreateCopy() const override { return new GridReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override {
    Part& part = this->cast(object);
    RecordReader payload(in, length);
    if (payload.status() != VXBStatus::Success) return payload.status();
    return detail::read_ordered<T>(payload, part, handler);
  }

 private:
  std::string tag_;
};

template <class T>
void add_functors(VXBinaryIOHandlerBase& handler) {
  using Fixed = VXFixedGrid<T>;
  using FixedMulti = VXFixedMultiGrid<T>;
  handler.AddWriteFxn(PartWriteFxn<T, Fixed>("VXFixedGrid"), 0);
  handler.AddReadFxn(PartReadFxn<T, Fixed>("VXFixedGrid"), 0);
  handler.AddWriteFxn(PartWriteFxn<T, FixedMulti>("VXFixedMultiGrid"), 0);
  handler.AddReadFxn(PartReadFxn<T, FixedMulti>("VXFixedMultiGrid"), 0);
  handler.AddWriteFxn(GridWriteFxn<T, VXGrid<T>, Fixed>("VXGrid"), 0);
  handler.AddReadFxn(GridReadFxn<T, VXGrid<T>, Fixed>("VXGrid"), 0);
  handler.AddWriteFxn(GridWriteFxn<T, VXMultiGrid<T>, FixedMulti>("VXMultiGrid"), 0);
  handler.AddReadFxn(GridReadFxn<T, VXMultiGrid<T>, FixedMulti>("VXMultiGrid"), 0);
}

}  // namespace

namespace detail {

void add_host_grid_functors(VXBinaryIOHandlerBase& handler) {
  add_functors<float>(handler);
  add_functors<int>(handler);
}

}  // namespace detail
}  // namespace VXCore
