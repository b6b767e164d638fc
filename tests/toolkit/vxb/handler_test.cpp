#include "vxgrid/toolkit/vxb/handler.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include "support/bad_input.h"
#include "support/vxb_bytes.h"
#include "support/vxb_objects.h"
#include "vxgrid/toolkit/core/host_grids.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {
namespace {

using vxgrid_test::vxb_read;
using vxgrid_test::vxb_record;
using vxgrid_test::vxb_tagged_data;
using vxgrid_test::vxb_written;
using vxgrid_test::VXBTurner;
using VXHost::vxisstream;
using VXHost::vxosstream;

// Knows nothing but what a test gives it.
class BareHandler : public VXBinaryIOHandlerBase {};

void tag(VXBase& object) {
  object.SetBoolData("yes", true);
  object.SetBoolData("no", false);
  object.SetIntData("int", -5);
  object.SetData("uint", 4000000000u);
  object.SetFloatData("float", 0.1f);
  object.SetDoubleData("double", 1.0 / 3);
  object.SetStringData("text", std::string("two\nlines\0and a zero", 20));
  object.SetStringData("empty", "");
  object.SetData("ints", std::vector<int>{1, -2, std::numeric_limits<int>::min()});
  object.SetData("uints", std::vector<unsigned int>{0xdeadbeef});
  object.SetData("floats", std::vector<float>{1.5f, -0.0f, std::numeric_limits<float>::infinity()});
  object.SetData("no floats", std::vector<float>());
  object.SetData("doubles", std::vector<double>{M_PI, 1e300});
  object.SetData("texts", std::vector<std::string>{"a", "", std::string(300, 'b')});
  object.SetData("point", std::array<float, 3>{1, 2, 3});
  object.SetData("cell", std::array<float, 6>{10, 11, 12, 90, 100, 110});
  object.SetIntData(std::string(400, 'n'), 1);
}

template <class T>
void expect_same(const VXBase& a, const VXBase& b, DataTag tag) {
  T from_a{}, from_b{};
  ASSERT_TRUE(a.GetData(tag, from_a));
  ASSERT_TRUE(b.GetData(tag, from_b));
  EXPECT_EQ(from_a, from_b) << VXGetTag(tag.number());
}

void expect_same_tags(const VXBase& a, const VXBase& b) {
  ASSERT_TRUE(b.GetBaseImpl());
  EXPECT_EQ(a.GetBaseImpl()->GetAllData().size(), b.GetBaseImpl()->GetAllData().size());
  for (const char* name : {"yes", "no"})
    expect_same<bool>(a, b, name);
  expect_same<int>(a, b, "int");
  expect_same<unsigned int>(a, b, "uint");
  expect_same<float>(a, b, "float");
  expect_same<double>(a, b, "double");
  for (const char* name : {"text", "empty"})
    expect_same<std::string>(a, b, name);
  expect_same<std::vector<int>>(a, b, "ints");
  expect_same<std::vector<unsigned int>>(a, b, "uints");
  for (const char* name : {"floats", "no floats"})
    expect_same<std::vector<float>>(a, b, name);
  expect_same<std::vector<double>>(a, b, "doubles");
  expect_same<std::vector<std::string>>(a, b, "texts");
  expect_same<std::array<float, 3>>(a, b, "point");
  expect_same<std::array<float, 6>>(a, b, "cell");
  expect_same<int>(a, b, std::string(400, 'n'));
}

TEST(VXBinaryIOHandler, data_of_all_plain_types_survive_on_any_object_in_both_byte_orders) {
  VXMol::VXGraphMol mol;
  tag(mol);
  const std::string bytes = vxb_written(mol);
  VXMol::VXGraphMol back;
  EXPECT_EQ(vxb_read(bytes, back), VXBStatus::Success);
  expect_same_tags(mol, back);

  VXContainer other;
  EXPECT_EQ(vxb_read(VXBTurner::turned(bytes), other), VXBStatus::Success);
  expect_same_tags(mol, other);
}

TEST(VXBinaryIOHandler, an_object_with_nothing_to_tell_is_a_record_all_the_same) {
  VXContainer nothing;
  EXPECT_EQ(vxb_written(nothing), vxb_record("VXBasePOD", "\1"));
  VXContainer back;
  EXPECT_EQ(vxb_read(vxb_written(nothing), back), VXBStatus::Success);
  EXPECT_FALSE(back.GetBaseImpl());
}

TEST(VXBinaryIOHandler, a_datum_of_a_type_without_a_handler_is_left_out) {
  struct Odd {
    int a;
  };
  VXContainer object;
  object.SetData("odd", Odd{1});
  object.SetIntData("even", 2);
  VXContainer back;
  EXPECT_EQ(vxb_read(vxb_written(object), back), VXBStatus::Success);
  EXPECT_FALSE(back.HasData("odd"));
  EXPECT_EQ(back.GetIntData("even"), 2);
}

TEST(VXBinaryIOHandler, unknown_records_are_kept_and_written_out_again) {
  const std::string first = vxb_record("Future", "12345");
  const std::string second = vxb_record("Future", std::string("\0\1", 2));
  VXContainer object;
  VXBinaryIOHandler handler;
  vxisstream in(first + vxb_tagged_data(second));
  EXPECT_EQ(handler.ReadObject(in, object), VXBStatus::Success);
  EXPECT_EQ(handler.ReadObject(in, object), VXBStatus::Success);
  const VXContainer copy(object);
  EXPECT_EQ(vxb_written(copy), vxb_tagged_data(first + second));
  VXContainer back;
  EXPECT_EQ(vxb_read(vxb_written(copy), back), VXBStatus::Success);
  EXPECT_EQ(vxb_written(back), vxb_written(copy));
  vxisstream cut(first.substr(0, first.size() - 1));
  EXPECT_EQ(handler.ReadObject(cut, object), VXBStatus::NotKept);
}

TEST(VXBinaryIOHandler, reading_says_what_is_wrong_with_the_head_of_a_record) {
  struct {
    std::string bytes;
    unsigned int status;
  } const cases[] = {
      {"", VXBStatus::NoTag},
      {std::string("\0", 1), VXBStatus::NoTag},
      {"\5ab", VXBStatus::NoTag},
      {"\2ab", VXBStatus::StreamEnded},
      {std::string("\2ab\1\0\0", 6), VXBStatus::StreamEnded},
      {std::string("\2ab\0\0\0\0", 7), VXBStatus::StreamEnded},
      {std::string("\2ab\0\0\0\0x", 8), VXBStatus::NotKept},
      {"\2ab\xff\xff\xff\xffxyz", VXBStatus::NotKept},
      {"\xff\xff\xff\xff\xffxyz", VXBStatus::NoTag},
      {std::string("\xff\0\0\0\0\1\0\0\0x", 10), VXBStatus::NoTag},
      {"\11VXBasePOD\xff\xff\xff\xffxyz", VXBStatus::ShortRecord},
      {vxb_record("VXBasePOD", "\2"), VXBStatus::NotKept},
      {vxb_tagged_data(vxb_record("int", std::string("\0\1a\1\2\3", 6))), VXBStatus::ShortRecord},
      {vxb_tagged_data(vxb_record("floats", std::string("\0\1a\1\2\3", 6))),
       VXBStatus::ShortRecord},
      {vxb_tagged_data(vxb_record("int", std::string("\0\7a", 3))), VXBStatus::NoTag},
  };
  for (const auto& c : cases) {
    VXContainer object;
    EXPECT_EQ(vxb_read(c.bytes, object), c.status) << testing::PrintToString(c.bytes);
  }
}

// A writer that leaves a known text, and a reader that counts its calls.
class Mark : public VXWriteFxn<VXBase> {
 public:
  explicit Mark(TypeId type, std::string text) : type_(type), text_(std::move(text)) {}
  std::string GetTag() const override { return text_; }
  TypeId GetType() const override { return type_; }
  Mark* CreateCopy() const override { return new Mark(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase&, VXBinaryIOHandlerBase&) const override {
    out << text_;
    return true;
  }

 private:
  TypeId type_;
  std::string text_;
};

class Sees : public VXReadFxn<VXBase> {
 public:
  Sees(TypeId type, unsigned int status) : type_(type), status_(status) {}
  std::string GetTag() const override { return "t"; }
  TypeId GetType() const override { return type_; }
  Sees* CreateCopy() const override { return new Sees(*this); }
  unsigned int operator()(VXHost::vxistream&, VXBase&, unsigned int length,
                          VXBinaryIOHandlerBase&) const override {
    return status_ + length;
  }

 private:
  TypeId type_;
  unsigned int status_;
};

TEST(VXBinaryIOHandler, takes_the_first_functor_of_a_class_and_falls_back_to_that_of_any_object) {
  BareHandler handler;
  vxosstream out;
  const VXContainer object;
  EXPECT_TRUE(handler.WriteAs(out, object, 7));
  EXPECT_EQ(out.str(), "") << "the default writer finds no tagged data";
  handler.AddWriteFxn(Mark(8, "a"), 0);
  handler.AddWriteFxn(Mark(7, "b"), 0);
  handler.AddWriteFxn(Mark(7, "c"), 0);
  EXPECT_TRUE(handler.WriteAs(out, object, 7));
  EXPECT_EQ(out.str(), "b");

  const auto status = [&](TypeId type) {
    VXContainer target;
    vxisstream in(vxb_record("t", "xy"));
    return handler.ReadAs(in, target, type);
  };
  EXPECT_EQ(status(7), VXBStatus::Success) << "kept as unknown";
  handler.AddReadFxn(Sees(type_ids::base, 100), 0);
  handler.AddReadFxn(Sees(7, 200), 0);
  handler.AddReadFxn(Sees(7, 300), 0);
  EXPECT_EQ(status(7), 202u);
  EXPECT_EQ(status(8), 102u);
}

template <class Grid>
void fill(Grid& grid) {
  grid.SetTitle("title");
  grid.SetSpacing(0.25f);
  grid.SetXMid(1);
  grid.SetZMid(-3);
  grid.SetDim(3, 5, 7);
  tag(grid);
}

template <class Grid>
void expect_same_geometry(const Grid& a, const Grid& b) {
  EXPECT_EQ(a.GetTitle(), b.GetTitle());
  EXPECT_EQ(a.GetSpacing(), b.GetSpacing());
  for (unsigned int i : {0u, 104u}) {
    std::array<float, 3> from_a{}, from_b{};
    EXPECT_TRUE(a.ElementToSpatialCoord(i, from_a[0], from_a[1], from_a[2]));
    EXPECT_TRUE(b.ElementToSpatialCoord(i, from_b[0], from_b[1], from_b[2]));
    EXPECT_EQ(from_a, from_b);
  }
  EXPECT_TRUE(b.IsTitleSet() && b.IsSpacingSet() && b.IsXMidSet() && b.IsZMidSet());
  EXPECT_FALSE(b.IsYMidSet());
}

template <class T>
void check_host_grids() {
  VXGrid<T> grid;
  fill(grid);
  for (unsigned int i = 0; i < 105; ++i)
    grid[i] = static_cast<T>(i * i) / 2;
  VXMultiGrid<T> fields;
  fill(fields);
  fields.SetNumGrids(3);
  std::copy_n(grid.GetValues(), 105, fields.GetValues(0));
  std::copy_n(grid.GetValues(), 50, fields.GetValues(2));
  fields[1].SetIntData("field", 1);
  for (const bool other_order : {false, true}) {
    const auto bytes = [&](const VXBase& object) {
      return other_order ? VXBTurner::turned(vxb_written(object)) : vxb_written(object);
    };
    VXGrid<T> grid_back;
    ASSERT_EQ(vxb_read(bytes(grid), grid_back), VXBStatus::Success);
    expect_same_geometry(grid, grid_back);
    VXMultiGrid<T> fields_back;
    ASSERT_EQ(vxb_read(bytes(fields), fields_back), VXBStatus::Success);
    expect_same_geometry(fields, fields_back);
    ASSERT_EQ(fields_back.GetNumGrids(), 3u);
    EXPECT_EQ(fields_back[1].GetIntData("field"), 1);
    for (unsigned int i = 0; i < 105; ++i) {
      EXPECT_EQ(grid[i], grid_back[i]);
      for (unsigned int field = 0; field < 3; ++field)
        EXPECT_EQ(fields[field][i], fields_back[field][i]);
    }
    EXPECT_EQ(vxb_written(grid_back), vxb_written(grid));
    EXPECT_EQ(vxb_written(fields_back), vxb_written(fields));
  }
}

TEST(VXBinaryIOHandler, host_grids_survive_with_their_fields_and_tags_in_both_byte_orders) {
  check_host_grids<float>();
  check_host_grids<int>();
}

TEST(VXBinaryIOHandler, zeros_at_the_end_of_a_lattice_cost_a_sixteenth) {
  VXGrid<float> grid;
  grid.SetDim(64, 64, 64);
  EXPECT_LT(vxb_written(grid).size(), 64u * 64 * 64 * 4 / 16 + 200);
  for (const unsigned int last : {0u, 16384u, 200000u, 262143u}) {
    grid.Realloc();
    grid[last] = -0.0f;
    const std::string bytes = vxb_written(grid);
    EXPECT_LT(bytes.size(), 4 * std::max(last + 1, 16384u) + 200);
    VXGrid<float> back;
    ASSERT_EQ(vxb_read(bytes, back), VXBStatus::Success);
    ASSERT_EQ(back.GetSize(), grid.GetSize());
    EXPECT_TRUE(std::signbit(back[last]));
    EXPECT_EQ(std::count(back.GetValues(), back.GetValues() + back.GetSize(), 0.0f), 262144);
  }
}

// Changes a number in a record of a 3 x 5 x 7 grid with no more than a geometry.
TEST(VXBinaryIOHandler, a_lattice_that_its_record_does_not_back_is_refused_before_it_is_made) {
  VXGrid<float> grid;
  grid.SetDim(3, 5, 7);
  std::fill_n(grid.GetValues(), 105, 1.0f);
  const std::string good = vxb_written(grid);
  const std::string dims = vxgrid_test::bytes_of(3u) + vxgrid_test::bytes_of(5u);
  const std::size_t at = good.find(dims);
  ASSERT_NE(at, std::string::npos);
  const auto status_with = [&](std::size_t offset, unsigned int number) {
    std::string bytes = good;
    bytes.replace(at + offset, 4, vxgrid_test::bytes_of(number));
    VXGrid<float> back;
    const unsigned int status = vxb_read(bytes, back);
    EXPECT_LE(back.GetSize(), 1680u);
    return status;
  };
  EXPECT_EQ(status_with(0, 48), VXBStatus::Success) << "sixteen times the stored values";
  EXPECT_EQ(status_with(0, 49), VXBStatus::ShortRecord);
  EXPECT_EQ(status_with(8, 0xffffffff), VXBStatus::ShortRecord);
  EXPECT_EQ(status_with(12, 104), VXBStatus::NoTag) << "a value where a record should be";
  EXPECT_EQ(status_with(12, 106), VXBStatus::ShortRecord);
}

TEST(VXBinaryIOHandler, ten_thousand_levels_of_records_and_many_data_are_refused) {
  std::string nested = "x";
  for (int i = 0; i < 10000; ++i)
    nested = vxb_tagged_data(nested);
  VXContainer object;
  EXPECT_EQ(vxb_read(nested, object), VXBStatus::NotKept);

  std::string data;
  for (int i = 0; i < 10000; ++i)
    data += vxb_record("bool", std::string("\0", 1) + '\4' + vxgrid_test::bytes_of(i) + '\1');
  EXPECT_EQ(vxb_read(vxb_tagged_data(data), object), VXBStatus::NotKept);
  EXPECT_LE(object.GetBaseImpl()->GetAllData().size(), VXBMostData + 1);
}

TEST(VXBinaryIOHandler, a_record_cut_at_any_byte_fails_and_damaged_ones_do_no_harm) {
  VXMultiGrid<float> fields;
  fill(fields);
  fields.SetNumGrids(2);
  const std::string good = vxb_written(fields);
  vxgrid_test::for_every_cut(good, [&](const std::string& cut, std::size_t length) {
    VXMultiGrid<float> back;
    EXPECT_NE(vxb_read(cut, back), VXBStatus::Success) << length;
  });
  vxgrid_test::for_random_bytes(good, 2000, [&](const std::string& bytes) {
    VXMultiGrid<float> back;
    vxb_read(bytes, back);
    EXPECT_GE(back.GetNumGrids(), 1u);
  });
}

}  // namespace
}  // namespace VXCore
