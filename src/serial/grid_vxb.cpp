// The VXB records of the grids.
#include "vxgrid/serial/grid_vxb.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cstdint>    // for uint64_t

#include "toolkit/vxb/numbers.h"
#include "toolkit/vxb/ordered_values.h"
#include "vxgrid/serial/gaussian_vxb.h"
#include "vxgrid/toolkit/vxb/mol_stream.h"

namespace VXCore {
namespace {

constexpr const char* data_tag = "VXBrioGridData";
constexpr const char* floats_tag = "VXBrioGridFloatMultiGrid";
constexpr const char* integers_tag = "VXBrioGridIntMultiGrid";
constexpr const char* placeholder_tag = "vx_deleteme";

// The records of skew and scalar grids never start with the grid itself: where there are no tagged
// data to write, those of an object that has only this one stand there.
bool write_placeholder(RecordPayload& out, VXBinaryIOHandlerBase& handler) {
  VXContainer placeholder;
  placeholder.SetIntData(placeholder_tag, 1);
  return handler.WriteAs(out, placeholder, type_ids::base);
}

unsigned int read_leading_data(RecordReader& in, VXBase& grid, VXBinaryIOHandlerBase& handler) {
  const unsigned int status = handler.ReadAs(in, grid, type_ids::base);
  grid.DeleteData(placeholder_tag);
  return status;
}

// The count of fields in use, as far as there are so many.
template <class T>
unsigned int fields_in_use(int multiple, const VXFixedMultiGrid<T>& fields) {
  return std::min(static_cast<unsigned int>(std::max(multiple, 0)), fields.GetNumGrids());
}

bool write_brio_data(RecordPayload& out, const VXBrioGrid& grid) {
  RecordWriter record(out, data_tag);
  if (!record) return false;
  RecordPayload& payload = record.payload();
  payload.put(VXBIntEndian());
  payload.put(VXBFloatEndian());
  std::array<float, 9> orientation{};
  const bool is_oriented = grid.GetOrientation(orientation.data());
  payload.put(is_oriented ? 1 : 0);
  if (is_oriented) detail::write_numbers(payload, orientation.data(), orientation.size());
  detail::write_number(payload, fields_in_use(grid.GetFloatsMultiple(), grid.GetFloats()));
  detail::write_number(payload, fields_in_use(grid.GetIntegersMultiple(), grid.GetIntegers()));
  payload.put(static_cast<char>(grid.GetReentrant()));
  std::array<float, 6> cell{};
  grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  detail::write_numbers(payload, cell.data(), cell.size());
  std::array<unsigned int, 3> intervals{};
  grid.GetUnitSpacing(intervals[0], intervals[1], intervals[2]);
  detail::write_numbers(payload, intervals.data(), intervals.size());
  detail::write_number(payload, grid.GetSpaceGroup());
  detail::write_number(payload, grid.GetType());
  return record.finish();
}

template <class T>
bool write_fields(RecordPayload& out, const char* tag, const VXFixedMultiGrid<T>& fields,
                  VXBinaryIOHandlerBase& handler) {
  RecordWriter record(out, tag);
  return record && detail::write_ordered<T>(record.payload(), fields, handler) && record.finish();
}

template <class T>
unsigned int read_fields(VXHost::vxistream& in, VXFixedMultiGrid<T>& fields, unsigned int length,
                         VXBinaryIOHandlerBase& handler) {
  RecordReader payload(in, length);
  if (payload.status() != VXBStatus::Success) return payload.status();
  return detail::read_ordered<T>(payload, fields, handler);
}

// A count of fields comes before the fields. It is believed as far as there are bytes for them: a
// field has at least a count of its values, and a sixteenth of these.
template <class T>
bool are_backed(RecordReader& in, const VXFixedMultiGrid<T>& fields, unsigned int count) {
  if (count <= fields.GetNumGrids()) return true;
  const std::uint64_t added = count - fields.GetNumGrids();
  return in.set_aside(added * (4 + std::uint64_t{fields.GetSize()} / 4));
}

// Reads the fields of a "VXBrioGridData" payload.
class BrioDataReader {
 public:
  BrioDataReader(RecordReader& in, VXBrioGrid& grid) : in_(in), grid_(grid) {}

  unsigned int read() {
    const int int_mark = in_.getbyte();
    const int float_mark = in_.getbyte();
    const int oriented = in_.getbyte();
    if (oriented < 0) return VXBStatus::StreamEnded;
    ints_reversed_ = VXBIntEndian(int_mark);
    floats_reversed_ = VXBFloatEndian(float_mark);
    is_oriented_ = oriented != 0;
    if (is_oriented_) {
      if (!floats(orientation_)) return VXBStatus::FieldEnded;
      set_orientation();
    }
    std::array<unsigned int, 2> multiples{};
    if (!integers(multiples)) return VXBStatus::FieldEnded;
    if (!are_backed(in_, grid_.GetFloats(), multiples[0]) ||
        !are_backed(in_, grid_.GetIntegers(), multiples[1]) ||
        !grid_.SetFloatsMultiple(multiples[0]) || !grid_.SetIntegersMultiple(multiples[1])) {
      return VXBStatus::ShortRecord;
    }
    const int reentrant = in_.getbyte();
    if (reentrant < 0) return VXBStatus::FieldEnded;
    if ((reentrant & 1) != 0) grid_.SetXReentrant();
    if ((reentrant & 2) != 0) grid_.SetYReentrant();
    if ((reentrant & 4) != 0) grid_.SetZReentrant();
    // Older writers stop here.
    return in_.eof() ? VXBStatus::Success : read_crystal();
  }

 private:
  unsigned int read_crystal() {
    std::array<float, 6> cell{};
    std::array<unsigned int, 3> intervals{};
    std::array<unsigned int, 2> group_and_type{};
    if (!floats(cell) || !integers(intervals) || !integers(group_and_type))
      return VXBStatus::FieldEnded;
    // Zeros are what a grid without a cell writes, and would make a spacing that is no number.
    if (cell != decltype(cell){} || intervals != decltype(intervals){}) {
      grid_.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5], intervals[0],
                        intervals[1], intervals[2]);
    }
    // The cell has made an orientation of its own.
    if (is_oriented_) set_orientation();
    grid_.SetSpaceGroup(group_and_type[0]);
    grid_.SetType(group_and_type[1]);
    return VXBStatus::Success;
  }

  template <std::size_t N>
  bool floats(std::array<float, N>& numbers) {
    return detail::read_numbers(in_, numbers.data(), N, floats_reversed_);
  }
  template <std::size_t N>
  bool integers(std::array<unsigned int, N>& numbers) {
    return detail::read_numbers(in_, numbers.data(), N, ints_reversed_);
  }
  void set_orientation() {
    grid_.SetOrientation(orientation_.data());
    grid_.SetOrientationSet(true);
  }

  RecordReader& in_;
  VXBrioGrid& grid_;
  bool ints_reversed_ = false;
  bool floats_reversed_ = false;
  bool is_oriented_ = false;
  std::array<float, 9> orientation_{};
};

}  // namespace

std::string VXBrioGridWriteFxn::GetTag() const {
  return "VXBrioGrid";
}
VXBrioGridWriteFxn* VXBrioGridWriteFxn::CreateCopy() const {
  return new VXBrioGridWriteFxn(*this);
}
bool VXBrioGridWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                    VXBinaryIOHandlerBase& handler) const {
  const VXBrioGrid& grid = cast(object);
  RecordWriter record(out, GetTag());
  return record && handler.WriteAs(record.payload(), grid, type_ids::base) &&
         write_brio_data(record.payload(), grid) &&
         write_fields<float>(record.payload(), floats_tag, grid.GetFloats(), handler) &&
         write_fields<int>(record.payload(), integers_tag, grid.GetIntegers(), handler) &&
         record.finish();
}

std::string VXBrioGridReadFxn::GetTag() const {
  return "VXBrioGrid";
}
VXBrioGridReadFxn* VXBrioGridReadFxn::CreateCopy() const {
  return new VXBrioGridReadFxn(*this);
}
unsigned int VXBrioGridReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                           unsigned int length,
                                           VXBinaryIOHandlerBase& handler) const {
  if (length == 0) return VXBStatus::Success;
  RecordReader payload(in, length);
  unsigned int status = payload.status();
  while (status == VXBStatus::Success && payload.peekbyte() >= 0)
    status = handler.ReadAs(payload, object, GetType());
  return status;
}

std::string VXBrioGridDataReadFxn::GetTag() const {
  return data_tag;
}
VXBrioGridDataReadFxn* VXBrioGridDataReadFxn::CreateCopy() const {
  return new VXBrioGridDataReadFxn(*this);
}
unsigned int VXBrioGridDataReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                               unsigned int length,
                                               VXBinaryIOHandlerBase& /*handler*/) const {
  // Of a record that is cut off, the fields that are there are taken.
  RecordReader payload(in, length);
  return BrioDataReader(payload, cast(object)).read();
}

std::string VXBrioGridFloatReadFxn::GetTag() const {
  return floats_tag;
}
VXBrioGridFloatReadFxn* VXBrioGridFloatReadFxn::CreateCopy() const {
  return new VXBrioGridFloatReadFxn(*this);
}
unsigned int VXBrioGridFloatReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                                unsigned int length,
                                                VXBinaryIOHandlerBase& handler) const {
  VXBrioGrid& grid = cast(object);
  const unsigned int status = read_fields<float>(in, grid.GetFloats(), length, handler);
  grid.SetFloatsMultiple(fields_in_use(grid.GetFloatsMultiple(), grid.GetFloats()));
  return status;
}

std::string VXBrioGridIntReadFxn::GetTag() const {
  return integers_tag;
}
VXBrioGridIntReadFxn* VXBrioGridIntReadFxn::CreateCopy() const {
  return new VXBrioGridIntReadFxn(*this);
}
unsigned int VXBrioGridIntReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                              unsigned int length,
                                              VXBinaryIOHandlerBase& handler) const {
  VXBrioGrid& grid = cast(object);
  const unsigned int status = read_fields<int>(in, grid.GetIntegers(), length, handler);
  grid.SetIntegersMultiple(fields_in_use(grid.GetIntegersMultiple(), grid.GetIntegers()));
  return status;
}

std::string VXSkewGridWriteFxn::GetTag() const {
  return "VXSkewGrid";
}
VXSkewGridWriteFxn* VXSkewGridWriteFxn::CreateCopy() const {
  return new VXSkewGridWriteFxn(*this);
}
bool VXSkewGridWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                    VXBinaryIOHandlerBase& handler) const {
  const VXSkewGrid& grid = cast(object);
  RecordWriter record(out, GetTag());
  if (!record || !handler.WriteAs(record.payload(), grid, type_ids::base)) return false;
  if (record.empty() && !write_placeholder(record.payload(), handler)) return false;
  return handler.WriteAs(record.payload(), grid.GetImpl().GetImpl(), type_ids::brio_grid) &&
         record.finish();
}

std::string VXSkewGridReadFxn::GetTag() const {
  return "VXSkewGrid";
}
VXSkewGridReadFxn* VXSkewGridReadFxn::CreateCopy() const {
  return new VXSkewGridReadFxn(*this);
}
unsigned int VXSkewGridReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                           unsigned int length,
                                           VXBinaryIOHandlerBase& handler) const {
  if (length == 0) return VXBStatus::Success;
  VXSkewGrid& grid = cast(object);
  RecordReader payload(in, length);
  unsigned int status = payload.status();
  if (status == VXBStatus::Success) status = read_leading_data(payload, grid, handler);
  if (status == VXBStatus::Success && !payload.eof())
    status = handler.ReadAs(payload, grid.GetImpl().GetImpl(), type_ids::brio_grid);
  return status;
}

std::string VXSkewGridBrioGridReadFxn::GetTag() const {
  return "VXBrioGrid";
}
VXSkewGridBrioGridReadFxn* VXSkewGridBrioGridReadFxn::CreateCopy() const {
  return new VXSkewGridBrioGridReadFxn(*this);
}
unsigned int VXSkewGridBrioGridReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                                   unsigned int length,
                                                   VXBinaryIOHandlerBase& handler) const {
  VXBrioGridReadFxn()(in, cast(object).GetImpl().GetImpl(), length, handler);
  return VXBStatus::Success;
}

std::string VXScalarGridWriteFxn::GetTag() const {
  return "VXScalarGrid";
}
VXScalarGridWriteFxn* VXScalarGridWriteFxn::CreateCopy() const {
  return new VXScalarGridWriteFxn(*this);
}
bool VXScalarGridWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                      VXBinaryIOHandlerBase& handler) const {
  const VXScalarGrid& grid = cast(object);
  RecordWriter record(out, GetTag());
  // The tagged data go with the host grid part.
  if (!record || !write_placeholder(record.payload(), handler)) return false;
  RecordPayload& payload = record.payload();
  payload.put(VXBIntEndian());
  payload.put(VXBFloatEndian());
  payload.put(1);
  return detail::write_number(payload, grid.GetType()) &&
         handler.WriteAs(payload, grid, type_ids::fixed_grid_float) && record.finish();
}

std::string VXScalarGridReadFxn::GetTag() const {
  return "VXScalarGrid";
}
VXScalarGridReadFxn* VXScalarGridReadFxn::CreateCopy() const {
  return new VXScalarGridReadFxn(*this);
}
unsigned int VXScalarGridReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                             unsigned int length,
                                             VXBinaryIOHandlerBase& handler) const {
  if (length == 0) return VXBStatus::Success;
  VXScalarGrid& grid = cast(object);
  RecordReader payload(in, length);
  unsigned int status = payload.status();
  if (status == VXBStatus::Success) status = read_leading_data(payload, grid, handler);
  if (status != VXBStatus::Success) return status;

  const int int_mark = payload.getbyte();
  const int float_mark = payload.getbyte();
  const int has_raw_values = payload.getbyte();
  if (has_raw_values < 0) return VXBStatus::StreamEnded;
  unsigned int type = 0;
  if (detail::read_numbers(payload, &type, 1, VXBIntEndian(int_mark))) grid.SetType(type);
  while (status == VXBStatus::Success && !payload.eof())
    status = handler.ReadAs(payload, grid, type_ids::fixed_grid_float);
  if (has_raw_values != 0 && VXBFloatEndian(float_mark))
    ArraySwapBytes(grid.GetValues(), grid.GetSize());
  return status;
}

template class VXBaseVXBWriteFxn<VXScalarGrid>;
template class VXBaseVXBWriteFxn<VXSkewGrid>;
template class VXBaseVXBWriteFxn<VXBrioGrid>;
template class VXBaseVXBReadFxn<VXScalarGrid>;
template class VXBaseVXBReadFxn<VXSkewGrid>;
template class VXBaseVXBReadFxn<VXBrioGrid>;

bool VXInitGridHandlers(VXBinaryIOHandlerBase& handler) {
  handler.AddWriteFxn(VXBrioGridWriteFxn(), 0);
  handler.AddReadFxn(VXBrioGridFloatReadFxn(), 0);
  handler.AddReadFxn(VXBrioGridIntReadFxn(), 0);
  handler.AddReadFxn(VXBrioGridReadFxn(), 0);
  handler.AddReadFxn(VXBrioGridDataReadFxn(), 0);
  handler.AddWriteFxn(VXSkewGridWriteFxn(), 0);
  handler.AddReadFxn(VXSkewGridReadFxn(), 0);
  handler.AddWriteFxn(VXScalarGridWriteFxn(), 0);
  handler.AddReadFxn(VXScalarGridReadFxn(), 0);
  handler.AddWriteFxn(VXGaussianWriteFxn(), 0);
  handler.AddReadFxn(VXGaussianReadFxn(), 0);
  handler.AddWriteFxn(VXGaussianContainerWriteFxn(), 0);
  handler.AddReadFxn(VXGaussianContainerReadFxn(), 0);
  handler.AddDataWriteFxn(VXBaseVXBWriteFxn<VXScalarGrid>("VXBaseVXScalarGrid"));
  handler.AddReadFxn(VXBaseVXBReadFxn<VXScalarGrid>("VXBaseVXScalarGrid"), 0);
  handler.AddDataWriteFxn(VXBaseVXBWriteFxn<VXSkewGrid>("VXBaseVXSkewGrid"));
  handler.AddReadFxn(VXBaseVXBReadFxn<VXSkewGrid>("VXBaseVXSkewGrid"), 0);
  handler.AddDataWriteFxn(VXBaseVXBWriteFxn<VXBrioGrid>("VXBaseVXBrioGrid"));
  handler.AddReadFxn(VXBaseVXBReadFxn<VXBrioGrid>("VXBaseVXBrioGrid"), 0);
  handler.AddReadFxn(VXSkewGridBrioGridReadFxn(), 0);
  return true;
}

void VXInitGridHandlers(VXMol::vxmolstreambase& stream) {
  VXInitGridHandlers(stream.GetBinaryIOHandler());
}

}  // namespace VXCore
