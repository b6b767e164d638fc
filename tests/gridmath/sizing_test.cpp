// Sizes of grids around points and atoms.
#include "vxgrid/gridmath/sizing.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>  // for pair
#include <vector>

#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;

// Atoms over a box of 6 x 4 x 2 around (1, 2, 3), widened by radii of 1 to 8 x 6 x 4; a third atom
// far off has no radius.
struct Atoms {
  std::vector<PdbStruct> atoms = std::vector<PdbStruct>(3);
  std::vector<float> radii = {1, 1, 0};
  Atoms() {
    std::tie(atoms[0].x, atoms[0].y, atoms[0].z) = std::tuple(-2.0f, 0.0f, 2.0f);
    std::tie(atoms[1].x, atoms[1].y, atoms[1].z) = std::tuple(4.0f, 4.0f, 4.0f);
    atoms[2].x = 101;
  }
  int make(center_size& size, GridStruct& grid, float probe, int keep_all = 0) {
    int levels = 0;
    vi_make_grid(0, &size, &grid, atoms.data(), radii.data(), 3, probe, &levels, keep_all);
    return levels;
  }
};

GridStruct record_of(std::array<int, 3> dims, float spacing) {
  GridStruct grid;
  std::tie(grid.xdim, grid.ydim, grid.zdim) = std::tuple(dims[0], dims[1], dims[2]);
  grid.spacing = spacing;
  return grid;
}
std::array<int, 3> dims(const GridStruct& g) {
  return {g.xdim, g.ydim, g.zdim};
}
std::array<float, 3> mid(const GridStruct& g) {
  return {g.xmid, g.ymid, g.zmid};
}

TEST(Sizing, points_get_their_buffer_and_one_point_to_spare) {
  float points[] = {1, 2, 3, 3, 2, 7};
  GridStruct grid;
  float value = 0;
  grid.floats = &value;
  ASSERT_EQ(vx_set_grid_from_points(points, 1, 4, 4, 4, 0.5f, &grid), 1);
  EXPECT_EQ(dims(grid), (std::array{19, 19, 19}));
  EXPECT_EQ(mid(grid), (std::array{1.0f, 2.0f, 3.0f}));
  EXPECT_EQ(grid.inverse_spacing, 2.0f);
  EXPECT_EQ(grid.floats, nullptr);
  ASSERT_EQ(vx_set_grid_from_points(points, 2, 0, 0.4f, 1, 0.5f, &grid), 1);
  EXPECT_EQ(dims(grid), (std::array{7, 4, 15}));
  EXPECT_EQ(mid(grid), (std::array{2.0f, 2.0f, 5.0f}));

  const GridStruct before = grid;
  float nowhere[] = {std::numeric_limits<float>::quiet_NaN(), 0, 0};
  const struct {
    float* points;
    int count;
    float buffer, spacing;
  } refused[] = {{points, 2, 1, 0},      {points, 0, 1, 1},     {nullptr, 2, 1, 1},
                 {points, 2, 1, 1e-12f}, {points, 2, -1e9f, 1}, {nowhere, 1, 1, 1}};
  for (const auto& r : refused)
    EXPECT_EQ(vx_set_grid_from_points(r.points, r.count, 1, 1, r.buffer, r.spacing, &grid), 0);
  EXPECT_EQ(dims(grid), dims(before));
}

TEST(Sizing, midpoint_is_the_middle_element) {
  const std::pair<std::array<int, 3>, int> cases[] = {
      {{3, 3, 3}, 13}, {{4, 4, 4}, 21}, {{1, 1, 1}, 0}, {{5, 1, 2}, 2}};
  for (const auto& [d, element] : cases) {
    GridStruct grid = record_of(d, 1);
    EXPECT_EQ(vx_grid_struct_midpoint(&grid), element);
  }
  constexpr int least = std::numeric_limits<int>::min();
  GridStruct huge = record_of({least, least, least}, 1);
  vx_grid_struct_midpoint(&huge);
}

TEST(Sizing, dimensions_are_raised_to_one_more_than_a_multiple_of_the_factor) {
  const std::tuple<std::array<int, 3>, std::array<int, 3>, int> cases[] = {
      {{81, 50, 3}, {81, 65, 17}, 5},  {{82, 81, 81}, {97, 81, 81}, 5},
      {{80, 42, 41}, {81, 49, 41}, 4}, {{40, 20, 2}, {41, 21, 5}, 3},
      {{20, 4, 1}, {21, 5, 1}, 2},     {{3, 2, 21}, {5, 5, 21}, 3}};
  for (const auto& [given, raised, level] : cases) {
    Atoms atoms;
    center_size size;
    size.dims_given = size.spacing_given = 1;
    GridStruct grid = record_of(given, 0.25f);
    EXPECT_EQ(atoms.make(size, grid, 1.4f), level);
    EXPECT_EQ(dims(grid), raised);
    EXPECT_EQ(mid(grid), (std::array{1.0f, 2.0f, 3.0f}));
    EXPECT_EQ(grid.inverse_spacing, 4.0f);
    EXPECT_EQ(size.centre_set, 1);
    EXPECT_EQ(size.sized, 1);
  }
}

// 2*border + 2 + trunc(2*buffer + length + 2*probe), then raised.
TEST(Sizing, spacing_alone_takes_the_dimensions_from_the_atoms) {
  Atoms atoms;
  center_size size;
  size.spacing_given = 1;
  size.x_buffer = 1;
  size.y_border = 2;
  GridStruct grid = record_of({}, 1);
  EXPECT_EQ(atoms.make(size, grid, 0.5f), 2);
  EXPECT_EQ(dims(grid), (std::array{13, 13, 7}));  // 2+2+8+1, 4+2+6+1, 2+4+1

  // The name doubles the probe: 13+1, 13+1, 7+1.
  std::string name = "accessible surface";
  grid = record_of({}, 1);
  grid.name = name.data();
  vi_clear_cen_size(&size, 0);
  atoms.make(size, grid, 0.5f);
  EXPECT_EQ(dims(grid), (std::array{15, 15, 9}));

  // A centre that is given makes the box symmetric about it.
  grid = record_of({}, 1);
  std::tie(grid.xmid, grid.ymid, grid.zmid) = std::tuple(5.0f, 2.0f, 3.0f);
  size = {};
  size.spacing_given = size.centre_set = 1;
  atoms.make(size, grid, 0.0f);
  EXPECT_EQ(dims(grid), (std::array{19, 9, 7}));  // 2+16, 2+6, 2+4
  EXPECT_EQ(grid.xmid, 5.0f);
}

TEST(Sizing, dimensions_alone_take_the_spacing_from_the_atoms_and_say_so) {
  Atoms atoms;
  center_size size;
  size.dims_given = 1;
  size.y_border = 1;
  GridStruct grid = record_of({11, 11, 11}, 0);
  MessageCapture capture;
  atoms.make(size, grid, 1.0f);
  EXPECT_TRUE(capture.warned("Grid constructed with dimensions but no spacing or extents."));
  EXPECT_FLOAT_EQ(grid.spacing, 1.0f);  // (8+2)/10, (6+2)/8, (4+2)/10
  EXPECT_EQ(mid(grid), (std::array{1.0f, 2.0f, 3.0f}));
}

TEST(Sizing, extents_and_dimensions_give_the_larger_spacing_with_warnings) {
  Atoms atoms;
  center_size size;
  size.dims_given = size.extent_given = 1;
  size.x_extent = size.y_extent = size.z_extent = 10;
  GridStruct grid = record_of({11, 21, 21}, 0);
  MessageCapture capture;
  atoms.make(size, grid, 0);
  EXPECT_TRUE(capture.warned("Grid dimensions inconsistent with volume specifications!!"));
  EXPECT_TRUE(capture.warned("Grid spacing set to 1.000000"));
  EXPECT_EQ(grid.spacing, 1.0f);

  size = {};
  size.spacing_given = size.extent_given = 1;
  size.x_extent = size.y_extent = size.z_extent = 8;
  grid = record_of({}, 0.5f);
  atoms.make(size, grid, 0);
  EXPECT_EQ(dims(grid), (std::array{17, 17, 17}));
}

TEST(Sizing, keep_all_counts_atoms_without_radius_and_a_record_sized_before_is_only_rounded) {
  Atoms atoms;
  center_size size;
  size.spacing_given = size.dims_given = 1;
  GridStruct grid = record_of({5, 5, 5}, 1), sized = record_of({30, 30, 30}, 0.5f);
  atoms.make(size, grid, 0, 1);
  EXPECT_EQ(mid(grid), (std::array{49.0f, 2.0f, 2.5f}));
  size = {};
  size.sized = size.spacing_given = 1;
  EXPECT_EQ(atoms.make(size, sized, 1.4f), 3);
  EXPECT_EQ(dims(sized), (std::array{33, 33, 33}));
  EXPECT_EQ(mid(sized), (std::array{0.0f, 0.0f, 0.0f}));
}

TEST(Sizing, what_cannot_be_sized_leaves_the_record_alone) {
  Atoms atoms;
  atoms.radii = {0, 0, 0};
  const float inf = std::numeric_limits<float>::infinity();
  const struct {
    int dims_given, extent_given, spacing_given;
    float spacing, extent;
  } cases[] = {{0, 0, 1, 1, 0},     {1, 0, 0, 0, 0},  {0, 1, 1, 0, 10},  {0, 0, 0, 0, 0},
               {0, 1, 1, 1, 1e12f}, {0, 1, 1, 1, -9}, {1, 1, 0, 0, inf}, {0, 1, 1, 1e-30f, 1}};
  MessageCapture quiet;
  for (const auto& c : cases) {
    center_size size;
    size.dims_given = c.dims_given;
    size.extent_given = c.extent_given;
    size.spacing_given = c.spacing_given;
    size.x_extent = size.y_extent = size.z_extent = c.extent;
    GridStruct grid = record_of({}, c.spacing);
    if (c.dims_given) grid.xdim = grid.ydim = grid.zdim = 9;
    const GridStruct before = grid;
    EXPECT_EQ(atoms.make(size, grid, 0), 0);
    EXPECT_EQ(dims(grid), dims(before));
    EXPECT_EQ(grid.spacing, before.spacing);
    EXPECT_EQ(size.sized, 0);
  }
}

TEST(Sizing, clearing_the_record_stops_before_what_was_given) {
  center_size size;
  size.x_extent = size.z_buffer = 3;
  size.x_border = 2;
  size.centre_set = size.sized = size.dims_given = size.extent_given = size.spacing_given = 1;
  vi_clear_cen_size(&size, 0);
  EXPECT_EQ(size.centre_set + size.sized, 0);
  EXPECT_EQ(size.x_border, 2);
  vi_clear_cen_size(&size, 1);
  EXPECT_EQ(size.x_border, 0);
  EXPECT_EQ(size.x_extent + size.z_buffer, 0);
  EXPECT_EQ(size.dims_given + size.extent_given + size.spacing_given, 3);
}

}  // namespace
