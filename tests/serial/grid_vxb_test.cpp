#include "vxgrid/serial/grid_vxb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "support/bad_input.h"
#include "support/grid_probes.h"
#include "support/vxb_bytes.h"
#include "support/vxb_objects.h"
#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/grid/contours.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/vxb/mol_stream.h"

namespace VXCore {
namespace {

using vxgrid_test::bytes_of;
using vxgrid_test::values_of;
using vxgrid_test::vxb_read;
using vxgrid_test::vxb_record;
using vxgrid_test::vxb_tagged_data;
using vxgrid_test::vxb_written;
using vxgrid_test::VXBTurner;
using VXHost::vxisstream;
using VXHost::vxosstream;

std::string unknown() {
  return vxb_record("Future", "abc");
}

template <class Grid>
void tag(Grid& grid) {
  grid.SetDoubleData("resolution", 1.5);
  VXAddContour(grid, 2.5f, VXColor(0xff00ff00));
  vxisstream in(unknown());
  VXBinaryIOHandler().ReadAs(in, grid, type_ids::base);
}

template <class Grid>
void expect_tags(const Grid& grid) {
  EXPECT_EQ(grid.GetDoubleData("resolution"), 1.5);
  ASSERT_EQ(VXNumContours(grid), 1u);
  EXPECT_EQ(VXGetContourLevel(grid, 0), 2.5f);
  EXPECT_EQ(VXGetContourColor(grid, 0).GetPackedColor(), 0xff00ff00u);
  EXPECT_NE(vxb_written(grid).find(unknown()), std::string::npos);
}

VXScalarGrid scalar_grid() {
  VXScalarGrid grid(4, 3, 2, 1, 2, 3, 0.5f, "scalar");
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid[i] = static_cast<float>(i) - 3.25f;
  grid.SetType(99);
  tag(grid);
  return grid;
}

// Every field that there is, in a cell without a right angle, on an orientation of its own.
VXBrioGrid brio_grid() {
  VXBrioGrid grid;
  grid.SetTitle("brio");
  grid.SetDim(4, 3, 5);
  grid.SetMid(1, -2, 3);
  grid.SetUnitCell(10, 12, 14, 80, 95, 107, 8, 9, 5);
  const float orientation[9] = {1, 0.5f, 0, 0, 2, 0.25f, 0, 0, 3};
  grid.SetOrientation(orientation);
  grid.SetSpaceGroup(5);
  grid.SetType(3);
  grid.SetXReentrant();
  grid.SetZReentrant();
  grid.SetFloatsMultiple(3);
  grid.SetIntegersMultiple(2);
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    grid.GetFloats()[0][i] = 0.5f * static_cast<float>(i);
    grid.GetFloats()[2][i] = 1e10f;
    grid.GetIntegers()[1][i] = static_cast<int>(i) - 7;
  }
  grid.SetFloatsMultiple(2);
  tag(grid);
  return grid;
}

VXSkewGrid skew_grid() {
  VXSkewGrid grid{VXSkewGridImpl(brio_grid())};
  tag(grid);
  return grid;
}

void expect_same(const VXScalarGrid& a, const VXScalarGrid& b) {
  EXPECT_EQ(values_of(a), values_of(b));
  EXPECT_EQ(vxgrid_test::dims_of(a), vxgrid_test::dims_of(b));
  EXPECT_EQ(vxgrid_test::place_of(a, 7), vxgrid_test::place_of(b, 7));
  EXPECT_EQ(a.GetTitle(), b.GetTitle());
  EXPECT_EQ(a.GetType(), b.GetType());
  EXPECT_FALSE(b.HasData("vx_deleteme"));
}

void expect_same(const VXBrioGrid& a, const VXBrioGrid& b) {
  EXPECT_EQ(a.GetTitle(), b.GetTitle());
  EXPECT_EQ(vxgrid_test::dims_of(a), vxgrid_test::dims_of(b));
  EXPECT_EQ(vxgrid_test::place_of(a, 7), vxgrid_test::place_of(b, 7));
  EXPECT_EQ(a.GetSpacing(), b.GetSpacing());
  EXPECT_EQ(vxgrid_test::cell_of(a), vxgrid_test::cell_of(b));
  std::array<unsigned int, 3> steps_a{}, steps_b{};
  a.GetUnitSpacing(steps_a[0], steps_a[1], steps_a[2]);
  b.GetUnitSpacing(steps_b[0], steps_b[1], steps_b[2]);
  EXPECT_EQ(steps_a, steps_b);
  EXPECT_EQ(a.GetOrientationSet(), b.GetOrientationSet());
  EXPECT_EQ(a.GetReentrant(), b.GetReentrant());
  EXPECT_EQ(a.GetSpaceGroup(), b.GetSpaceGroup());
  EXPECT_EQ(a.GetType(), b.GetType());
  EXPECT_EQ(a.GetFloatsMultiple(), b.GetFloatsMultiple());
  EXPECT_EQ(a.GetIntegersMultiple(), b.GetIntegersMultiple());
  ASSERT_EQ(a.GetFloats().GetNumGrids(), b.GetFloats().GetNumGrids());
  ASSERT_EQ(a.GetIntegers().GetNumGrids(), b.GetIntegers().GetNumGrids());
  for (unsigned int i = 0; i < a.GetFloats().GetNumGrids(); ++i)
    EXPECT_EQ(values_of(a.GetFloats()[i]), values_of(b.GetFloats()[i]));
  for (unsigned int i = 0; i < a.GetIntegers().GetNumGrids(); ++i)
    EXPECT_TRUE(std::equal(a.GetIntegers().GetValues(i), a.GetIntegers().GetValues(i) + a.GetSize(),
                           b.GetIntegers().GetValues(i)));
}

void expect_same(const VXSkewGrid& a, const VXSkewGrid& b) {
  expect_same(a.GetImpl().GetImpl(), b.GetImpl().GetImpl());
  EXPECT_FALSE(b.HasData("vx_deleteme"));
}

template <class Grid>
void check_survival(const Grid& grid) {
  const std::string bytes = vxb_written(grid);
  for (const std::string& source : {bytes, VXBTurner::turned(bytes)}) {
    Grid back;
    ASSERT_EQ(vxb_read(source, back), VXBStatus::Success);
    expect_same(grid, back);
    expect_tags(back);
    EXPECT_EQ(vxb_written(back), bytes);
  }
  // As a datum of a molecule that has other data too.
  VXMol::VXGraphMol mol;
  mol.SetData("density", grid);
  mol.SetIntData("number", 4);
  const std::string datum = vxb_written(mol);
  for (const std::string& source : {datum, VXBTurner::turned(datum)}) {
    VXMol::VXGraphMol back;
    ASSERT_EQ(vxb_read(source, back), VXBStatus::Success);
    EXPECT_EQ(back.GetIntData("number"), 4);
    const Grid* value = back.FindDataValue<Grid>("density");
    ASSERT_TRUE(value);
    expect_same(grid, *value);
    expect_tags(*value);
  }
}

TEST(GridVXB, grids_survive_with_tags_and_unknown_records_and_in_the_other_byte_order) {
  check_survival(scalar_grid());
  check_survival(brio_grid());
  check_survival(skew_grid());
}

template <class Grid>
void check_unknown_inside(const Grid& grid, const std::string& tag) {
  const std::string payload = vxb_written(grid).substr(5 + tag.size());
  Grid back;
  ASSERT_EQ(vxb_read(vxb_record(tag, payload + vxb_record("New", "1234")), back),
            VXBStatus::Success);
  expect_same(grid, back);
  EXPECT_NE(vxb_written(back).find(unknown() + vxb_record("New", "1234")), std::string::npos);
}

TEST(GridVXB, an_unknown_record_inside_that_of_a_grid_is_kept) {
  check_unknown_inside(scalar_grid(), "VXScalarGrid");
  check_unknown_inside(brio_grid(), "VXBrioGrid");
}

TEST(GridVXB, grids_of_which_nothing_is_set_come_back_so) {
  VXBrioGrid brio;
  ASSERT_EQ(vxb_read(vxb_written(VXBrioGrid()), brio), VXBStatus::Success);
  expect_same(VXBrioGrid(), brio);
  EXPECT_FALSE(brio.GetOrientationSet() || brio.HasUnitCell() || brio.IsSpacingSet() ||
               brio.IsTitleSet() || brio.GetBaseImpl());
  VXSkewGrid skew;
  ASSERT_EQ(vxb_read(vxb_written(VXSkewGrid()), skew), VXBStatus::Success);
  expect_same(VXSkewGrid(), skew);
  VXScalarGrid scalar;
  ASSERT_EQ(vxb_read(vxb_written(VXScalarGrid()), scalar), VXBStatus::Success);
  EXPECT_FALSE(scalar.IsSpacingSet() || scalar.IsTitleSet());
  EXPECT_EQ(scalar.GetSize(), 0u);
}

TEST(GridVXB, skew_and_scalar_grids_without_tags_start_with_a_placeholder) {
  const std::string placeholder =
      vxb_tagged_data(vxb_record("int", std::string("\0\13vx_deleteme", 13) + bytes_of(1)));
  EXPECT_EQ(vxb_written(VXSkewGrid()).find(placeholder), 15u);
  EXPECT_EQ(vxb_written(VXScalarGrid()).find(placeholder), 17u);
  VXSkewGrid tagged;
  tagged.SetIntData("a", 1);
  EXPECT_EQ(vxb_written(tagged).find("vx_deleteme"), std::string::npos);
  VXScalarGrid tagged_scalar;
  tagged_scalar.SetIntData("a", 1);
  EXPECT_EQ(vxb_written(tagged_scalar).find(placeholder), 17u);
}

// The example of docs/vxb_format.md.
TEST(GridVXB, a_small_scalar_grid_is_these_bytes) {
  const float values[] = {1, 2};
  VXScalarGrid grid(2, 1, 1, 0, 0, 0, 0.5f, "map", values);
  grid.SetType(3);
  grid.SetIntData("n", 7);
  const std::string lead = vxb_record("int", std::string("\0\13vx_deleteme\1\0\0\0", 17));
  const std::string tags = vxb_record("int", std::string("\0\1n\7\0\0\0", 7));
  const std::string lattice(
      "\1\0\0\37\3map"
      "\0\0\0\x3f\0\0\0\0\0\0\0\0\0\0\0\0"
      "\2\0\0\0\1\0\0\0\1\0\0\0\2\0\0\0\0\0\x80\x3f\0\0\0\x40",
      48);
  EXPECT_EQ(vxb_written(grid),
            vxb_record("VXScalarGrid",
                       vxb_tagged_data(lead) + std::string("\0\0\1\3\0\0\0", 7) +
                           vxb_record("VXFixedGridFloat", lattice + vxb_tagged_data(tags))));
  EXPECT_EQ(vxb_written(grid).size(), 163u);
}

TEST(GridVXB, the_symmetry_of_a_grid_is_left_out) {
  VXSkewGrid grid = skew_grid();
  grid.SetData("vx_symm", VXXtal::VXSymmetry());
  VXSkewGrid back;
  ASSERT_EQ(vxb_read(vxb_written(grid), back), VXBStatus::Success);
  EXPECT_FALSE(back.HasData("vx_symm"));
  expect_same(grid, back);
}

TEST(GridVXB, functors_carry_the_tags_and_classes_of_their_records) {
  EXPECT_EQ(VXBrioGridWriteFxn().GetTag(), "VXBrioGrid");
  EXPECT_EQ(VXBrioGridReadFxn().GetTag(), "VXBrioGrid");
  EXPECT_EQ(VXBrioGridDataReadFxn().GetTag(), "VXBrioGridData");
  EXPECT_EQ(VXBrioGridFloatReadFxn().GetTag(), "VXBrioGridFloatMultiGrid");
  EXPECT_EQ(VXBrioGridIntReadFxn().GetTag(), "VXBrioGridIntMultiGrid");
  EXPECT_EQ(VXSkewGridBrioGridReadFxn().GetTag(), "VXBrioGrid");
  EXPECT_EQ(VXSkewGridBrioGridReadFxn().GetType(), VXSkewGrid().GetDataType());
  EXPECT_EQ(VXScalarGridReadFxn().GetType(), VXScalarGrid().GetDataType());
  EXPECT_EQ(VXBrioGridIntReadFxn().GetType(), VXBrioGrid().GetDataType());
  const VXBaseVXBReadFxn<VXSkewGrid> datum("VXBaseVXSkewGrid");
  const std::unique_ptr<VXReadFxnBase> copy(datum.CreateCopy());
  EXPECT_EQ(copy->GetTag(), "VXBaseVXSkewGrid");
  EXPECT_EQ(copy->GetType(), VXBase().GetDataType());
  EXPECT_EQ(datum.GetStoredType(), DataTypeId<VXSkewGrid>::get());
}

// Keeps the order in which functors come.
class Recorder : public VXBinaryIOHandlerBase {
 public:
  bool AddReadFxn(const VXReadFxnBase& fxn, unsigned int flags) override {
    calls.push_back((flags == 0 ? "r " : "? ") + fxn.GetTag());
    return true;
  }
  bool AddWriteFxn(const VXWriteFxnBase& fxn, unsigned int flags) override {
    calls.push_back((flags == 0 ? "w " : "? ") + fxn.GetTag());
    return true;
  }
  bool AddDataWriteFxn(const VXWriteFxnBase& fxn) override {
    calls.push_back("d " + fxn.GetTag());
    return true;
  }
  std::vector<std::string> calls;
};

TEST(GridVXB, handlers_are_registered_in_their_order_and_known_to_every_handler) {
  Recorder recorder;
  EXPECT_TRUE(VXInitGridHandlers(recorder));
  const std::vector<std::string> expected{"w VXBrioGrid",
                                          "r VXBrioGridFloatMultiGrid",
                                          "r VXBrioGridIntMultiGrid",
                                          "r VXBrioGrid",
                                          "r VXBrioGridData",
                                          "w VXSkewGrid",
                                          "r VXSkewGrid",
                                          "w VXScalarGrid",
                                          "r VXScalarGrid",
                                          "w VXGaussian",
                                          "r VXGaussian",
                                          "w VXGaussianCont",
                                          "r VXGaussianCont",
                                          "d VXBaseVXScalarGrid",
                                          "r VXBaseVXScalarGrid",
                                          "d VXBaseVXSkewGrid",
                                          "r VXBaseVXSkewGrid",
                                          "d VXBaseVXBrioGrid",
                                          "r VXBaseVXBrioGrid",
                                          "r VXBrioGrid"};
  EXPECT_EQ(recorder.calls, expected);

  VXMol::vxmolstreambase stream;
  VXInitGridHandlers(stream);
  VXContainer object;
  object.SetData("grid", scalar_grid());
  vxosstream out;
  EXPECT_TRUE(stream.GetBinaryIOHandler().WriteObject(out, object));
  EXPECT_EQ(out.str(), vxb_written(object)) << "a second registration changes nothing";
}

// The fields of a "VXBrioGridData" payload of a grid with an orientation.
std::string brio_data() {
  const std::string bytes = vxb_written(brio_grid());
  const std::size_t at = bytes.find("VXBrioGridData") + 14;
  return bytes.substr(at + 4, vxgrid_test::number_at<unsigned int>(bytes, at));
}

TEST(GridVXB, the_data_of_a_brio_grid_have_their_stated_places_and_end_where_a_field_does) {
  const std::string data = brio_data();
  ASSERT_EQ(data.size(), 92u);
  EXPECT_EQ(data[2], 1);
  EXPECT_EQ(vxgrid_test::number_at<float>(data, 7), 0.5f) << "orientation, column 1";
  EXPECT_EQ(vxgrid_test::number_at<unsigned int>(data, 39), 2u) << "floats";
  EXPECT_EQ(vxgrid_test::number_at<unsigned int>(data, 43), 2u) << "integers";
  EXPECT_EQ(data[47], 5) << "reentrant flags";
  EXPECT_EQ(vxgrid_test::number_at<float>(data, 48), 10.0f) << "a";
  EXPECT_EQ(vxgrid_test::number_at<unsigned int>(data, 76), 9u) << "intervals along b";
  EXPECT_EQ(vxgrid_test::number_at<unsigned int>(data, 84), 5u) << "space group";
  EXPECT_EQ(vxgrid_test::number_at<unsigned int>(data, 88), 3u) << "type";

  VXBinaryIOHandler handler;
  for (std::size_t length = 0; length <= data.size(); ++length) {
    VXBrioGrid grid;
    vxisstream in(data.substr(0, length));
    const unsigned int status =
        VXBrioGridDataReadFxn()(in, grid, static_cast<unsigned int>(data.size()), handler);
    const unsigned int expected = length < 3                     ? VXBStatus::StreamEnded
                                  : length == 48 || length == 92 ? VXBStatus::Success
                                                                 : VXBStatus::FieldEnded;
    EXPECT_EQ(status, expected) << length;
    EXPECT_EQ(grid.HasUnitCell(), length == 92) << length;
    EXPECT_EQ(grid.GetOrientationSet(), length >= 39) << length;
    EXPECT_EQ(grid.GetReentrant(), length >= 48 ? 5u : 0u) << length;
  }
}

TEST(GridVXB, counts_of_fields_that_no_bytes_stand_for_are_refused) {
  std::string data = brio_data();
  for (const auto& [count, status] :
       std::vector<std::pair<unsigned int, unsigned int>>{{1, VXBStatus::Success},
                                                          {40, VXBStatus::Success},
                                                          {60000, VXBStatus::ShortRecord},
                                                          {0xffffffff, VXBStatus::ShortRecord}}) {
    data.replace(39, 4, bytes_of(count));
    VXBrioGrid grid;
    EXPECT_EQ(vxb_read(vxb_record("VXBrioGrid", vxb_record("VXBrioGridData", data)), grid), status);
    EXPECT_LE(grid.GetFloats().GetNumGrids(), 40u);
  }
  // More fields in use than the record goes on to bring.
  VXBrioGrid grid;
  grid.SetFloatsMultiple(200);
  grid.GetFloats().SetNumGrids(2);
  VXBrioGrid back;
  EXPECT_EQ(vxb_read(vxb_written(grid), back), VXBStatus::Success);
  EXPECT_EQ(back.GetFloatsMultiple(), 2);
  data.replace(39, 4, bytes_of(40));
  std::string bytes = vxb_written(brio_grid());
  bytes.replace(bytes.find("VXBrioGridData") + 18, data.size(), data);
  EXPECT_EQ(vxb_read(bytes, back), VXBStatus::Success);
  EXPECT_EQ(back.GetFloatsMultiple(), 3);
}

TEST(GridVXB, grids_in_grids_do_not_count_on_the_same_bytes) {
  std::string data = brio_data();
  data.replace(39, 4, bytes_of(500));
  data = vxb_record("VXBrioGridData", data);
  // The outer grid's fields and then those of the inner one, whose record would do for either.
  const std::string inner =
      vxb_record("VXBrioGrid", data + vxb_record("x", std::string(2200, 'x')));
  const std::string datum = vxb_record("VXBaseVXBrioGrid", "\1n" + inner);
  VXBrioGrid grid;
  EXPECT_EQ(vxb_read(inner, grid), VXBStatus::Success);
  EXPECT_EQ(vxb_read(vxb_record("VXBrioGrid", vxb_tagged_data(datum)), grid), VXBStatus::Success);
  EXPECT_EQ(vxb_read(vxb_record("VXBrioGrid", data + vxb_tagged_data(datum)), grid),
            VXBStatus::Success)
      << "the outer grid has its fields already";
  VXBrioGrid fresh;
  EXPECT_EQ(vxb_read(vxb_record("VXBrioGrid", data + vxb_tagged_data(datum)), fresh),
            VXBStatus::ShortRecord);
}

TEST(GridVXB, a_skew_grid_takes_the_record_of_a_brio_grid) {
  VXSkewGrid skew;
  EXPECT_EQ(vxb_read(vxb_written(brio_grid()), skew), VXBStatus::Success);
  expect_same(brio_grid(), skew.GetImpl().GetImpl());
  EXPECT_EQ(vxb_read(vxb_record("VXBrioGrid", "\3ab"), skew), VXBStatus::Success) << "always";
  // Of another class it is unknown, which is no failure.
  VXScalarGrid scalar;
  EXPECT_EQ(vxb_read(vxb_written(brio_grid()), scalar), VXBStatus::Success);
  EXPECT_EQ(scalar.GetSize(), 0u);
  EXPECT_NE(vxb_written(scalar).find(vxb_written(brio_grid())), std::string::npos);
}

TEST(GridVXB, a_scalar_grid_record_that_ends_early_says_where) {
  const std::string record = vxb_written(scalar_grid());
  const std::size_t head = 17;
  const std::string payload = record.substr(head);
  const std::size_t lead = 9 + 1 + 4 + vxgrid_test::number_at<unsigned int>(payload, 10);
  for (const auto& [kept, status] :
       std::vector<std::pair<std::size_t, unsigned int>>{{lead, VXBStatus::StreamEnded},
                                                         {lead + 2, VXBStatus::StreamEnded},
                                                         {lead + 3, VXBStatus::Success},
                                                         {lead + 5, VXBStatus::Success},
                                                         {lead + 7, VXBStatus::Success},
                                                         {lead + 8, VXBStatus::NoTag}}) {
    VXScalarGrid grid;
    EXPECT_EQ(vxb_read(vxb_record("VXScalarGrid", payload.substr(0, kept)), grid), status) << kept;
    EXPECT_EQ(grid.GetType(), kept >= lead + 7 ? 99u : 0u) << kept;
    EXPECT_FALSE(grid.HasData("vx_deleteme"));
  }
}

class Fails : public VXWriteFxn<VXScalarGrid> {
 public:
  std::string GetTag() const override { return "VXScalarGrid"; }
  Fails* CreateCopy() const override { return new Fails(*this); }
  bool operator()(VXHost::vxostream&, const VXBase&, VXBinaryIOHandlerBase&) const override {
    return false;
  }
};

TEST(GridVXB, a_value_that_cannot_be_written_leaves_its_tag_behind) {
  class : public VXBinaryIOHandlerBase {
  } handler;
  handler.AddWriteFxn(Fails(), 0);
  VXContainer object;
  object.SetData("grid", scalar_grid());
  vxosstream out;
  const VXBaseVXBWriteFxn<VXScalarGrid> write("VXBaseVXScalarGrid");
  EXPECT_FALSE(write(out, object, handler));
  EXPECT_EQ(out.str(), "\22VXBaseVXScalarGrid");
  vxosstream other;
  EXPECT_TRUE(VXBaseVXBWriteFxn<VXSkewGrid>("VXBaseVXSkewGrid")(other, object, handler));
  EXPECT_EQ(other.str(), "") << "a datum of another type";
}

TEST(GridVXB, a_datum_without_a_value_or_a_name_comes_back_empty) {
  struct {
    std::string payload;
    const char* name;
  } const cases[] = {{"\4name", "name"}, {"\4na", ""}, {std::string("\0", 1), ""}};
  for (const auto& c : cases) {
    VXContainer object;
    EXPECT_EQ(vxb_read(vxb_tagged_data(vxb_record("VXBaseVXSkewGrid", c.payload)), object),
              VXBStatus::Success);
    const auto* value = object.FindDataValue<VXSkewGrid>(c.name);
    ASSERT_TRUE(value) << c.name;
    EXPECT_EQ(value->GetSize(), 0u);
  }
}

TEST(GridVXB, records_of_length_0_leave_grids_alone) {
  VXBinaryIOHandler handler;
  VXBrioGrid brio;
  VXSkewGrid skew;
  VXScalarGrid scalar;
  vxisstream in("x");
  EXPECT_EQ(VXBrioGridReadFxn()(in, brio, 0, handler), VXBStatus::Success);
  EXPECT_EQ(VXSkewGridReadFxn()(in, skew, 0, handler), VXBStatus::Success);
  EXPECT_EQ(VXScalarGridReadFxn()(in, scalar, 0, handler), VXBStatus::Success);
  EXPECT_EQ(VXBaseVXBReadFxn<VXBrioGrid>("VXBaseVXBrioGrid")(in, brio, 0, handler),
            VXBStatus::Success);
  EXPECT_EQ(in.peekbyte(), 'x');
  EXPECT_FALSE(brio.GetBaseImpl());
}

template <class Grid>
void check_bad_input(const Grid& grid) {
  const std::string good = vxb_written(grid);
  vxgrid_test::for_every_cut(good, [&](const std::string& cut, std::size_t length) {
    Grid back;
    EXPECT_NE(vxb_read(cut, back), VXBStatus::Success) << length;
  });
  vxgrid_test::for_random_bytes(good, 1000, [&](const std::string& bytes) {
    Grid back;
    vxb_read(bytes, back);
    vxb_written(back);
    EXPECT_LE(back.GetSize(), 16 * bytes.size());
  });
}

TEST(GridVXB, a_record_cut_at_any_byte_fails_and_damaged_ones_do_no_harm) {
  VXScalarGrid scalar = scalar_grid();
  scalar.SetData("inner", brio_grid());
  check_bad_input(scalar);
  check_bad_input(brio_grid());
  check_bad_input(skew_grid());
}

TEST(GridVXB, grids_in_grids_survive_down_to_the_deepest_level_and_no_deeper) {
  VXScalarGrid grid;
  int levels = 0;
  for (; levels < 100; ++levels) {
    VXScalarGrid next;
    next.SetData("inner", grid);
    VXBinaryIOHandler handler;
    vxosstream out;
    if (!handler.WriteObject(out, next)) break;
    VXScalarGrid back;
    ASSERT_EQ(vxb_read(out.str(), back), VXBStatus::Success) << levels;
    grid = next;
  }
  EXPECT_EQ(levels, 31) << "a level takes four records";
}

}  // namespace
}  // namespace VXCore
