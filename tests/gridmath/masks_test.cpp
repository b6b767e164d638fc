// Masks against their rule, point by point.
#include "vxgrid/gridmath/masks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "gridmath/test_record.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/grid/scalar_grid.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::TestRecord;
using vxgrid_test::values_of;

VXBrioGrid grid_of(const std::vector<float>& values) {
  return VXScalarGrid(static_cast<int>(values.size()), 1, 1, 0, 0, 0, 1.0f, "", values.data());
}

TEST(Masks, value_rules_by_type) {
  const std::vector<float> mask = {0, 0.5f, 0.49f, 0.51f, -1, NAN};
  const auto e = [](float m) { return 8 * std::exp(-m / 2); };
  const std::pair<unsigned int, std::vector<float>> cases[] = {
      {4, {8, 8, 8, 0, 8, 8}},
      {5, {0, 8, 0, 8, 0, 8}},
      {6, {8, e(0.5f), e(0.49f), e(0.51f), e(-1), NAN}},
      {7, {0, 8 - e(0.5f), 8 - e(0.49f), 8 - e(0.51f), 8 - e(-1), NAN}}};
  for (const auto& [type, expected] : cases) {
    std::vector<float> values(6, 8.0f);
    EXPECT_TRUE(VXMaskGridValues(values.data(), mask.data(), 6, type));
    for (std::size_t i = 0; i < 6; ++i) {
      EXPECT_EQ(std::isnan(values[i]), std::isnan(expected[i]));
      if (!std::isnan(expected[i])) {
        EXPECT_NEAR(values[i], expected[i], 2e-6) << "type " << type << " item " << i;
      }
    }
  }
  std::vector<float> values(6, 8.0f);
  for (const unsigned int type : {0u, 3u, 8u})
    EXPECT_FALSE(VXMaskGridValues(values.data(), mask.data(), 6, type));
  EXPECT_FALSE(VXMaskGridValues(nullptr, mask.data(), 6, 4));
  EXPECT_EQ(values, std::vector<float>(6, 8.0f));
}

TEST(Masks, grids_are_cleared_past_the_value_and_kept_at_it) {
  const std::vector<float> start = {-2, 1, 1.5f, 3};
  const struct {
    const char* type;
    std::vector<float> expected;
  } cases[] = {{"value+", {-2, 1, 1.5f, 0}}, {"value-", {0, 0, 1.5f, 3}}};
  for (const auto& c : cases) {
    VXBrioGrid grid = grid_of(start);
    grid.SetFloatsMultiple(2);
    ASSERT_TRUE(grid.GetFloats().SetValues(1, start.data(), 4));
    EXPECT_EQ(vx_mask_grid(grid, 1.5f, c.type), 1);
    EXPECT_EQ(values_of(grid), c.expected);
    grid.SetFloatsMultiple(1);
    EXPECT_EQ(values_of(grid), c.expected);
  }
  VXBrioGrid grid = grid_of(start);
  for (const char* type : {"value", "Value+", "value+ ", "grid+", ""})
    EXPECT_EQ(vx_mask_grid(grid, 1.5f, type), 0);
  EXPECT_EQ(vx_mask_grid(grid, 1.5f, nullptr), 0);
  EXPECT_EQ(values_of(grid), start);
}

TEST(Masks, a_second_grid_decides_by_its_own_values) {
  const VXBrioGrid other = grid_of({0, 1, 2, 1});
  const std::pair<const char*, std::vector<float>> cases[] = {{"grid+", {5, 6, 0, 8}},
                                                              {"grid-", {0, 6, 7, 8}}};
  for (const auto& [type, expected] : cases) {
    VXBrioGrid grid = grid_of({5, 6, 7, 8});
    EXPECT_EQ(vx_mask_grid(grid, other, 1.0f, type), 1);
    EXPECT_EQ(values_of(grid), expected);
    EXPECT_EQ(vx_mask_grid(grid, other, 1.0f, "value+"), 0);
    // A mask that has less than the grid reaches nothing.
    EXPECT_EQ(vx_mask_grid(grid, grid_of({0, 9}), 1.0f, type), 0);
    EXPECT_EQ(values_of(grid), expected);
  }
}

struct Ball {
  double x, y, z, r;
};

// Number of the last ball around each point, counted from 1; -1 where a point lies too near to a
// surface to be judged in single precision. The first plane of each axis takes none.
std::vector<int> marked(const TestRecord& record, const std::vector<Ball>& balls) {
  std::vector<int> result(record.floats.size());
  record.for_each_point([&](int x, int y, int z, std::size_t e) {
    if (x == 0 || y == 0 || z == 0) return;
    const auto p = record.place(x, y, z);
    for (std::size_t i = 0; i < balls.size(); ++i) {
      const double d = std::hypot(p[0] - balls[i].x, p[1] - balls[i].y, p[2] - balls[i].z);
      if (std::abs(d - balls[i].r) < 1e-4) {
        result[e] = -1;
      } else if (d < balls[i].r && result[e] >= 0) {
        result[e] = static_cast<int>(i) + 1;
      }
    }
  });
  return result;
}

// Counts the points inside, after a look at the integers of all that can be judged.
std::size_t expect_marks(const int* integers, const std::vector<int>& expected, bool numbered) {
  std::size_t inside = 0;
  for (std::size_t e = 0; e < expected.size(); ++e) {
    if (expected[e] < 0) continue;
    EXPECT_EQ(integers[e], numbered ? expected[e] : expected[e] > 0) << e;
    inside += expected[e] > 0;
  }
  return inside;
}

std::vector<Ball> random_balls(std::size_t count) {
  std::mt19937 generator(9);
  std::uniform_real_distribution<float> place(-6, 6);
  std::uniform_real_distribution<float> radius(-0.5f, 2.5f);
  std::vector<Ball> balls(count);
  for (Ball& b : balls)
    b = {place(generator), place(generator), place(generator), radius(generator)};
  return balls;
}

// The items of one kind, with a radius of `probe` taken out of each.
struct Items {
  Items(const std::vector<Ball>& balls, float probe) {
    for (const Ball& b : balls) {
      const float xyz[3] = {float(b.x), float(b.y), float(b.z)};
      const float r = float(b.r) - probe;
      atoms.emplace_back();
      std::tie(atoms.back().x, atoms.back().y, atoms.back().z) = std::tie(xyz[0], xyz[1], xyz[2]);
      triples.insert(triples.end(), xyz, xyz + 3);
      doubles.insert(doubles.end(), xyz, xyz + 3);
      quadruples.insert(quadruples.end(), {xyz[0], xyz[1], xyz[2], r});
      radii.push_back(r);
    }
  }
  std::vector<PdbStruct> atoms;
  std::vector<float> triples, quadruples, radii;
  std::vector<double> doubles;
};

TEST(Masks, spheres_of_every_kind_mark_the_points_inside) {
  std::vector<Ball> balls = random_balls(40);
  balls[3] = {-4.5, -4.5, -4.5, 1.2};  // around the first corner
  balls[4].r = 0;
  for (Ball& b : balls)
    b.r = std::max(b.r, 0.0);
  constexpr float probe = 0.25f;
  Items items(balls, probe);
  const struct {
    const char* kind;
    void* items;
  } cases[] = {{"atoms", items.atoms.data()},
               {"spheres", items.quadruples.data()},
               {"points", items.triples.data()},
               {"coordinates", items.triples.data()}};
  for (const auto& c : cases) {
    TestRecord record({19, 16, 13}, {0, 0.1f, -0.2f}, 0.5f);
    const std::vector<int> expected = marked(record, balls);
    ASSERT_EQ(
        vi_map_spheres_to_grid(c.items, c.kind, items.radii.data(), record.grid, probe, 40, 2.5f),
        1);
    EXPECT_GT(expect_marks(record.integers.data(), expected, true), 300u) << c.kind;
    for (std::size_t e = 0; e < expected.size(); ++e)
      EXPECT_EQ(record.floats[e], record.integers[e] > 0 ? 2.5f : 0.0f);
  }
}

TEST(Masks, a_null_buffer_is_left_out_and_null_radii_leave_the_probe) {
  TestRecord record({9, 9, 9}, {0, 0, 0}, 1.0f);
  PdbStruct atom;
  GridStruct g = record.grid;
  g.integers = nullptr;
  ASSERT_EQ(vi_map_spheres_to_grid(&atom, "atoms", nullptr, g, 1.5f, 1, 1.0f), 1);
  EXPECT_EQ(std::count(record.floats.begin(), record.floats.end(), 1.0f),
            19);  // the centre, 6 at 1 and 12 at sqrt(2)
  EXPECT_EQ(record.integers, std::vector<int>(729));
  // A point on the surface is not inside.
  ASSERT_EQ(vi_map_spheres_to_grid(&atom, "atoms", nullptr, g, 1.0f, 1, 2.0f), 1);
  EXPECT_EQ(std::count(record.floats.begin(), record.floats.end(), 2.0f), 1);
  g.floats = nullptr;
  EXPECT_EQ(vi_map_spheres_to_grid(&atom, "atoms", nullptr, g, 1.5f, 1, 1.0f), 1);
}

TEST(Masks, sphere_kinds_and_items_that_mark_nothing) {
  TestRecord record({5, 5, 5}, {0, 0, 0}, 1.0f);
  float point[4] = {0, 0, 0, 1};
  MessageCapture capture;
  EXPECT_EQ(vi_map_spheres_to_grid(point, "doubles", nullptr, record.grid, 2, 1, 1), 1);
  EXPECT_EQ(vi_map_spheres_to_grid(point, "Atoms", nullptr, record.grid, 2, 1, 1), 0);
  EXPECT_TRUE(capture.warned("no such sphere type as Atoms"));
  EXPECT_EQ(vi_map_spheres_to_grid(point, "atoms", nullptr, record.grid, 2, 0, 1), 1);
  for (const float x : {NAN, INFINITY, 3e38f, -3e38f}) {
    point[0] = x;
    EXPECT_EQ(vi_map_spheres_to_grid(point, "spheres", nullptr, record.grid, 2, 1, 1), 1);
  }
  GridStruct flat = record.grid;
  flat.spacing = 0;
  point[0] = 0;
  EXPECT_EQ(vi_map_spheres_to_grid(point, "spheres", nullptr, flat, 2, 1, 1), 1);
  EXPECT_EQ(record.floats, std::vector<float>(125));
  // Without end in all directions: everything but the first planes.
  point[3] = INFINITY;
  EXPECT_EQ(vi_map_spheres_to_grid(point, "spheres", nullptr, record.grid, 2, 1, 1), 1);
  record.for_each_point([&](int x, int y, int z, std::size_t e) {
    EXPECT_EQ(record.integers[e], x * y * z > 0 ? 1 : 0);
  });
}

TEST(Masks, a_grid_is_sized_around_spheres_and_marked) {
  std::vector<Ball> balls = random_balls(25);
  for (Ball& b : balls)
    b.r = std::abs(b.r) + 0.4;
  constexpr float probe = 0.4f;
  constexpr float buffer = 0.7f;
  Items items(balls, probe);
  const struct {
    int kind;
    void* items;
    bool probe_alone;
  } cases[] = {{1, items.atoms.data(), false},
               {2, items.triples.data(), true},
               {3, items.triples.data(), true},
               {4, items.quadruples.data(), false},
               {5, items.doubles.data(), true}};
  for (const auto& c : cases) {
    GridStruct g;
    ASSERT_EQ(vi_sph_to_grid(0, c.items, items.radii.data(), 25, probe, &g, 0.5f, buffer, c.kind),
              1);
    double low = 1e5, high = -1e5;
    for (const Ball& b : balls) {
      low = std::min(low, b.x - b.r);
      high = std::max(high, b.x + b.r);
    }
    const double half = (high - low) / 2 + double{probe} + double{buffer};
    EXPECT_NEAR(g.xmid, (high + low) / 2, 1e-5);
    EXPECT_EQ(g.xdim, 3 + 2 * static_cast<int>(half / 0.5));
    EXPECT_EQ(g.inverse_spacing, 2.0f);
    std::vector<Ball> marks = balls;
    for (Ball& b : marks)
      b.r = c.probe_alone ? double{probe} : b.r;
    TestRecord twin({g.xdim, g.ydim, g.zdim}, {g.xmid, g.ymid, g.zmid}, 0.5f);
    const std::vector<int> expected = marked(twin, marks);
    EXPECT_GT(expect_marks(g.integers, expected, false), 25u) << c.kind;
    vx_deallocate_grid_struct(g, true, false);
  }
}

TEST(Masks, a_grid_around_spheres_that_cannot_be_made_is_left_alone) {
  float point[4] = {0, 0, 0, 1};
  GridStruct g;
  MessageCapture capture;
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 1, 1, &g, 0.0f, 1, 4), 1);
  EXPECT_TRUE(capture.warned("cant have a grid of zero spacing!"));
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 1, 1, &g, 0.5f, 1, 6), 0);
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 0, 1, &g, 0.5f, 1, 4), 0);
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 1, 1, &g, 1e-7f, 1, 4), 0);
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 1, -5, &g, 0.5f, 1, 4), 0);
  point[0] = NAN;
  point[1] = INFINITY;
  EXPECT_EQ(vi_sph_to_grid(0, point, nullptr, 1, 1, &g, 0.5f, 1, 4), 0);
  EXPECT_EQ(g.integers, nullptr);
  EXPECT_EQ(g.xdim, 0);
}

}  // namespace
