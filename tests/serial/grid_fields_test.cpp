// Grids as fields of records: their bytes, round trips, vectors with gaps, and JSON.
#include "vxgrid/serial/grid_fields.h"

#include <gtest/gtest.h>

#include <array>     // for array
#include <cmath>     // for sin
#include <optional>  // for optional
#include <string>    // for string
#include <vector>    // for vector

#include "support/bad_input.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXPipe {
namespace {

using VXCore::VXScalarGrid;
using VXCore::VXSkewGrid;
using vxgrid_test::cell_of;
using vxgrid_test::dims_of;
using vxgrid_test::MessageCapture;
using vxgrid_test::values_of;

VXScalarGrid scalar_grid() {
  VXScalarGrid grid(5, 4, 6, 1.0f, -2.0f, 0.5f, 0.5f, "scalar");
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid[i] = 100.0f * std::sin(static_cast<float>(i));
  grid.SetType(VXCore::VXGridType::Dorn);
  return grid;
}

VXSkewGrid skew_grid() {
  VXSkewGrid grid;
  grid.SetTitle("skew");
  grid.SetDim(3, 4, 5);
  grid.SetMid(1.0f, -2.0f, 3.5f);
  grid.SetUnitCell(30.0f, 41.0f, 52.5f, 80.0f, 95.0f, 107.0f, 60, 80, 100);
  grid.SetSpaceGroup(1);
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid.GetValues()[i] = 100.0f * std::sin(static_cast<float>(i));
  return grid;
}

template <class Grid>
std::string grd_file(const Grid& grid) {
  VXHost::vxosstream out;
  EXPECT_TRUE(VXCore::VXWriteGrid(out, grid, VXCore::VXGridFileType::GRD));
  return out.str();
}

std::string text_of(const VXBytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

template <class Grid>
VXBytes bytes_of(const Grid& grid) {
  return VXFieldType<Grid>::ToBytes(grid);
}

void expect_same(const VXSkewGrid& a, const VXSkewGrid& b) {
  EXPECT_TRUE(bytes_of(a) == bytes_of(b));
}

// The values stand one point further down each axis; the last of each axis count as outside.
void expect_window_of(const VXScalarGrid& window, const VXScalarGrid& grid) {
  ASSERT_EQ(dims_of(window), dims_of(grid));
  const auto [nx, ny, nz] = dims_of(grid);
  EXPECT_EQ(window.GetXMid(), grid.GetXMid() + grid.GetSpacing());
  EXPECT_EQ(window.GetTitle(), grid.GetTitle());
  EXPECT_EQ(window.GetType(), grid.GetType());
  for (unsigned int z = 0; z < nz; ++z)
    for (unsigned int y = 0; y < ny; ++y)
      for (unsigned int x = 0; x < nx; ++x) {
        const bool inside = x + 2 < nx && y + 2 < ny && z + 2 < nz;
        EXPECT_NEAR(window(x, y, z), inside ? grid(x + 1, y + 1, z + 1) : 0.0f, 1e-4f);
      }
}

TEST(GridFields, have_their_names_and_are_registered_under_them) {
  const auto& registry = VXFieldTypeHandlerRegistry::GetInstance();
  for (const char* name : {"Chem.Grid", "Chem.GridVec", "Chem.SkewGrid", "Chem.SkewGridVec"}) {
    const VXFieldTypeHandler* handler = registry.FindHandler(name);
    ASSERT_TRUE(handler) << name;
    EXPECT_EQ(handler->GetName(), name);
    EXPECT_EQ(handler->IsCacheable(), std::string(name).find("Vec") != std::string::npos);
  }
  const std::unique_ptr<VXFieldTypeHandler> another(VXInitSkewGridVecFieldHandler());
  EXPECT_EQ(another->GetName(), "Chem.SkewGridVec");

  EXPECT_EQ(VXFieldType<VXScalarGrid>::Format(VXScalarGrid()), "<VXScalarGrid>");
  EXPECT_EQ(VXFieldType<VXSkewGrid>::Format(VXSkewGrid()), "<VXSkewGrid>");
  using Vector = std::vector<VXSkewGrid>;
  EXPECT_EQ(VXVectorFieldType<VXSkewGrid>::Format(Vector(1)), "[1 grid]");
  EXPECT_EQ(VXVectorFieldType<VXSkewGrid>::Format(Vector(2)), "[2 grids]");
  EXPECT_EQ(VXVectorFieldType<VXScalarGrid>::Format(std::vector<std::optional<VXScalarGrid>>()),
            "[0 grids]");
}

TEST(GridFields, are_grd_files) {
  EXPECT_TRUE(text_of(bytes_of(skew_grid())) == grd_file(skew_grid()));
  EXPECT_TRUE(text_of(bytes_of(scalar_grid())) == grd_file(scalar_grid()));
  EXPECT_EQ(VXFieldType<VXSkewGrid>::ToBytes(std::optional<VXSkewGrid>()), std::nullopt);
  EXPECT_TRUE(*VXFieldType<VXSkewGrid>::ToBytes(std::optional(skew_grid())) ==
              bytes_of(skew_grid()));
}

TEST(GridFields, survive_their_bytes) {
  VXSkewGrid skew;
  ASSERT_TRUE(VXFieldType<VXSkewGrid>::FromBytes(skew, bytes_of(skew_grid())));
  expect_same(skew, skew_grid());
  EXPECT_EQ(skew.GetSpaceGroup(), 1u);
  VXScalarGrid scalar;
  ASSERT_TRUE(VXFieldType<VXScalarGrid>::FromBytes(scalar, bytes_of(scalar_grid())));
  expect_window_of(scalar, scalar_grid());
  EXPECT_FALSE(VXFieldType<VXSkewGrid>::FromBytes(skew, {}));
  EXPECT_FALSE(VXFieldType<VXScalarGrid>::FromBytes(scalar, {}));
}

TEST(GridFields, without_values_come_back_without_values) {
  const MessageCapture heard;
  VXSkewGrid skew;
  skew.SetTitle("no points");
  skew.SetMid(1.0f, 2.0f, 3.0f);
  skew.SetSpacing(0.5f);
  skew.SetType(4);
  VXSkewGrid skew_back = skew_grid();
  ASSERT_TRUE(VXFieldType<VXSkewGrid>::FromBytes(skew_back, bytes_of(skew)));
  expect_same(skew_back, skew);
  EXPECT_EQ(skew_back.GetTitle(), "no points");
  EXPECT_EQ(skew_back.GetValues(), nullptr);

  VXScalarGrid scalar(0, 0, 0, 1.0f, 2.0f, 3.0f, 0.5f, "no points");
  scalar.SetType(4);
  VXScalarGrid scalar_back = scalar_grid();
  ASSERT_TRUE(VXFieldType<VXScalarGrid>::FromBytes(scalar_back, bytes_of(scalar)));
  EXPECT_EQ(scalar_back.GetTitle(), "no points");
  EXPECT_EQ(scalar_back.GetYMid(), 2.0f);
  EXPECT_EQ(scalar_back.GetSpacing(), 0.5f);
  EXPECT_EQ(scalar_back.GetType(), 4u);
  EXPECT_EQ(scalar_back.GetValues(), nullptr);
}

TEST(GridFields, vectors_survive_with_empty_and_missing_elements) {
  using Type = VXVectorFieldType<VXSkewGrid>;
  const MessageCapture heard;
  const std::vector<std::optional<VXSkewGrid>> grids{skew_grid(), std::nullopt, VXSkewGrid()};
  const VXBytes bytes = Type::ToBytes(grids);
  std::vector<std::optional<VXSkewGrid>> back;
  ASSERT_TRUE(Type::FromBytes(back, bytes));
  ASSERT_EQ(back.size(), 3u);
  expect_same(*back[0], skew_grid());
  EXPECT_FALSE(back[1]);
  ASSERT_TRUE(back[2]);
  EXPECT_EQ(back[2]->GetSize(), 0u);
  EXPECT_TRUE(Type::ToBytes(back) == bytes);

  // Where there is no gap, a default grid stands in it.
  std::vector<VXSkewGrid> plain(7);
  ASSERT_TRUE(Type::FromBytes(plain, bytes));
  ASSERT_EQ(plain.size(), 3u);
  expect_same(plain[0], skew_grid());
  EXPECT_EQ(plain[1].GetSize(), 0u);

  VXWriteBuffer by_hand;
  by_hand.WriteInt(2);
  by_hand.WriteBlob(bytes_of(scalar_grid()));
  by_hand.WriteNoneBlob();
  using Scalars = VXVectorFieldType<VXScalarGrid>;
  EXPECT_TRUE(Scalars::ToBytes(std::vector<std::optional<VXScalarGrid>>{
                  scalar_grid(), std::nullopt}) == by_hand.GetBytes());
  std::vector<std::optional<VXScalarGrid>> scalars;
  ASSERT_TRUE(Scalars::FromBytes(scalars, by_hand.GetBytes()));
  expect_window_of(*scalars.at(0), scalar_grid());
  EXPECT_FALSE(scalars.at(1));
}

TEST(GridFields, a_vector_of_none_is_the_count_0) {
  using Type = VXVectorFieldType<VXScalarGrid>;
  const VXBytes none = Type::ToBytes(std::vector<VXScalarGrid>());
  EXPECT_EQ(none, (VXBytes{0, 0, 0, 0}));
  std::vector<VXScalarGrid> grids;
  EXPECT_TRUE(Type::FromBytes(grids, none));
  EXPECT_TRUE(grids.empty());
  EXPECT_TRUE(Type::FromBytes(grids, {255, 255, 255, 255}));
  EXPECT_FALSE(Type::FromBytes(grids, {}));
  EXPECT_EQ(Type().BytesToJSON(none), R"({"type":"Chem.GridVec","value":[]})");
  EXPECT_EQ(Type::ToBytes(std::optional<std::vector<VXScalarGrid>>()), std::nullopt);
  EXPECT_EQ(Type::ToBytes(std::optional(std::vector<VXScalarGrid>())), none);
}

TEST(GridFields, are_grid_documents_in_json_and_come_back_from_them) {
  const VXFieldType<VXSkewGrid> type;
  VXSkewGrid grid;
  // Sampled by its dimensions, so that the document tells all.
  grid.SetDim(2, 3, 4);
  grid.SetUnitCell(10.0f, 12.0f, 14.0f, 80.0f, 90.0f, 100.0f, 2, 3, 4);
  grid.SetMid(1.0f, 2.0f, 3.0f);
  grid.SetTitle("t");
  grid.GetValues()[5] = -0.125f;
  const std::string json = type.BytesToJSON(bytes_of(grid));
  EXPECT_EQ(json, VXCore::VXGridToJSON(grid, 17303));
  EXPECT_TRUE(type.JSONToBytes(json) == bytes_of(grid));
  EXPECT_TRUE(type.PtrToBytes(&grid) == bytes_of(grid));

  const VXVectorFieldType<VXSkewGrid> vector_type;
  const std::vector<std::optional<VXSkewGrid>> grids{grid, std::nullopt};
  const VXBytes bytes = VXVectorFieldType<VXSkewGrid>::ToBytes(grids);
  const std::string vector_json = vector_type.BytesToJSON(bytes);
  EXPECT_EQ(vector_json, R"({"type":"Chem.SkewGridVec","value":[)" + json + ",null]}");
  EXPECT_TRUE(vector_type.JSONToBytes(vector_json) == bytes);
  const std::vector<VXSkewGrid> plain{grid};
  EXPECT_TRUE(vector_type.PtrToBytes(&plain) == VXVectorFieldType<VXSkewGrid>::ToBytes(plain));

  const VXFieldType<VXScalarGrid> scalar_type;
  VXScalarGrid scalar;
  ASSERT_TRUE(VXCore::VXJSONToGrid(scalar, scalar_type.BytesToJSON(bytes_of(scalar_grid()))));
  expect_window_of(scalar, scalar_grid());

  const MessageCapture heard;
  EXPECT_TRUE(type.JSONToBytes(VXCore::VXGridToJSON(scalar, 0)).empty());
  EXPECT_TRUE(type.JSONToBytes("[").empty());
  EXPECT_TRUE(vector_type.JSONToBytes("{\"value\":[7]}").empty());
  EXPECT_TRUE(vector_type.JSONToBytes("{\"values\":[]}").empty());
  EXPECT_EQ(type.BytesToJSON({1, 2, 3}), "");
  EXPECT_EQ(vector_type.BytesToJSON({1, 0, 0, 0}), "");
}

TEST(GridFields, copies_for_the_cache_are_deep) {
  std::vector<VXScalarGrid> grids{scalar_grid()};
  const auto copy = VXVectorFieldType<VXScalarGrid>::GetCopyForCache(grids);
  const float value = grids[0][3];
  grids[0][3] = 1e9f;
  EXPECT_EQ((*copy)[0][3], value);
  const std::vector<std::optional<VXScalarGrid>> gaps{std::nullopt, scalar_grid()};
  EXPECT_FALSE(VXVectorFieldType<VXScalarGrid>::GetCopyForCache(gaps)->at(0));
}

TEST(GridFields, in_a_record_can_be_made_written_read_and_shown) {
  VXRecord record;
  const VXField<VXScalarGrid> scalar_field("scalar");
  const VXField<VXSkewGrid> skew_field("skew");
  const VXField<std::vector<VXSkewGrid>> vector_field("vector");
  const VXField<std::vector<std::optional<VXSkewGrid>>> gaps_field("vector");
  EXPECT_TRUE(VXSetValue(record, VXField<int>("scalar"), 1));
  // The number stood in the way.
  EXPECT_TRUE(VXSetGridValue(record, scalar_field, scalar_grid()));
  EXPECT_TRUE(VXSetGridValue(record, skew_field, skew_grid()));
  EXPECT_TRUE(VXSetValue(record, vector_field, std::vector<VXSkewGrid>{skew_grid()}));
  EXPECT_EQ(record.CheckField(skew_field), VXFieldBytes);
  EXPECT_EQ(record.CheckField(vector_field), VXFieldCached);

  VXRecord back;
  ASSERT_TRUE(back.FromBytes(record.ToBytes()));
  VXScalarGrid scalar;
  VXSkewGrid skew;
  std::vector<VXSkewGrid> grids;
  ASSERT_TRUE(VXGetGridValue(back, scalar_field, scalar));
  expect_window_of(scalar, scalar_grid());
  ASSERT_TRUE(VXGetGridValue(back, skew_field, skew));
  expect_same(skew, skew_grid());
  for (const VXRecord* either : {&record, &back}) {
    ASSERT_TRUE(VXGetValue(*either, vector_field, grids));
    expect_same(grids.at(0), skew_grid());
    std::vector<std::optional<VXSkewGrid>> gaps;
    ASSERT_TRUE(VXGetValue(*either, gaps_field, gaps));
    EXPECT_EQ(gaps.size(), 1u);
  }
  EXPECT_EQ(back.ToJSON(), record.ToJSON());
  EXPECT_NE(back.ToJSON().find(R"({"name":"skew","type":"Chem.SkewGrid","value":{"type":"grid",)"),
            std::string::npos);
  // Of another type, and not there.
  EXPECT_FALSE(VXGetGridValue(back, VXField<VXScalarGrid>("skew"), scalar));
  EXPECT_FALSE(VXGetGridValue(back, VXField<VXScalarGrid>("none"), scalar));
}

TEST(GridFields, that_would_grow_out_of_proportion_are_refused) {
  const MessageCapture heard;
  // A cell of tiny steps, along which even a flat box has many points.
  VXSkewGrid fine;
  fine.SetDim(2, 2, 3);
  fine.SetUnitCell(6e-8f, 6e-8f, 2.0f, 90.0f, 90.0f, 90.0f, 1, 1, 1024);
  VXScalarGrid grid;
  EXPECT_FALSE(VXFieldType<VXScalarGrid>::FromBytes(grid, bytes_of(fine)));
  // What is granted to one grid is granted to all of a vector together.
  VXSkewGrid some;
  some.SetDim(2, 2, 2);
  some.SetUnitCell(1.0f, 1.0f, 1.0f, 90.0f, 90.0f, 90.0f, 1, 1, 1000);
  ASSERT_TRUE(VXFieldType<VXScalarGrid>::FromBytes(grid, bytes_of(some)));
  const std::size_t granted = (std::size_t{64} << 20) / sizeof(float) / grid.GetSize();
  std::vector<VXScalarGrid> grids;
  EXPECT_FALSE(VXVectorFieldType<VXScalarGrid>::FromBytes(
      grids, VXVectorFieldType<VXSkewGrid>::ToBytes(std::vector<VXSkewGrid>(granted + 2, some))));
  EXPECT_LE(grids.size(), granted + 1);
  // Eight bytes say that a grid is missing, for which a plain vector has one all the same.
  using Skew = VXVectorFieldType<VXSkewGrid>;
  const VXBytes missing = Skew::ToBytes(std::vector<std::optional<VXSkewGrid>>(200000));
  std::vector<std::optional<VXSkewGrid>> optional;
  EXPECT_TRUE(Skew::FromBytes(optional, missing));
  std::vector<VXSkewGrid> plain;
  EXPECT_FALSE(Skew::FromBytes(plain, missing));
}

TEST(GridFields, cut_or_damaged_bytes_fail_and_do_no_harm) {
  const MessageCapture heard;
  const VXBytes one = bytes_of(skew_grid());
  const VXBytes two =
      VXVectorFieldType<VXSkewGrid>::ToBytes(std::vector<VXSkewGrid>(2, skew_grid()));
  // A GRD file may end before its crystal data, as old ones do.
  const std::size_t old_end = one.size() - 44;
  for (std::size_t length = 0; length < two.size(); ++length) {
    const auto cut = [&](const VXBytes& bytes) {
      return VXBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    };
    VXSkewGrid grid;
    if (length < one.size()) {
      ASSERT_EQ(VXFieldType<VXSkewGrid>::FromBytes(grid, cut(one)), length == old_end) << length;
    }
    std::vector<VXSkewGrid> grids;
    ASSERT_FALSE(VXVectorFieldType<VXSkewGrid>::FromBytes(grids, cut(two))) << length;
    ASSERT_LE(grids.size(), 1u);
  }
  vxgrid_test::for_random_bytes(text_of(two), 2000, [](const std::string& bytes) {
    const VXBytes input(bytes.begin(), bytes.end());
    std::vector<std::optional<VXSkewGrid>> grids;
    VXVectorFieldType<VXSkewGrid>::FromBytes(grids, input);
    VXFieldType<VXScalarGrid>().BytesToJSON(input);
  });
}

}  // namespace
}  // namespace VXPipe
