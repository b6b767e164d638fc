// Proximity grids against plain distances of all spheres to all points.
#include "vxgrid/fieldgrids/proximity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "support/messages.h"
#include "vxgrid/grid/pdb_struct.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;

struct Ball {
  std::array<float, 3> centre;
  float radius;
};

std::vector<Ball> random_balls(unsigned int seed, int count) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-4, 4);
  std::uniform_real_distribution<float> size(0.3f, 2.0f);
  std::vector<Ball> balls;
  for (int i = 0; i < count; ++i) {
    Ball ball{{place(random), place(random) + 10, place(random) / 2}, 0};
    ball.radius = size(random);
    balls.push_back(ball);
  }
  return balls;
}

// The same spheres in the layouts that the routines take, radii less a probe of 0.25.
struct Layouts {
  explicit Layouts(const std::vector<Ball>& balls) {
    for (const Ball& ball : balls) {
      PdbStruct atom;
      atom.x = ball.centre[0];
      atom.y = ball.centre[1];
      atom.z = ball.centre[2];
      atoms.push_back(atom);
      triples.insert(triples.end(), ball.centre.begin(), ball.centre.end());
      doubles.insert(doubles.end(), ball.centre.begin(), ball.centre.end());
      quadruples.insert(quadruples.end(), ball.centre.begin(), ball.centre.end());
      quadruples.push_back(ball.radius - probe);
      radii.push_back(ball.radius - probe);
    }
  }
  void* of_kind(int kind) {
    if (kind == 1) return atoms.data();
    if (kind == 4) return quadruples.data();
    return kind == 5 ? static_cast<void*>(doubles.data()) : triples.data();
  }
  int count() const { return static_cast<int>(atoms.size()); }

  static constexpr float probe = 0.25f;
  std::vector<PdbStruct> atoms;
  std::vector<float> triples, quadruples, radii;
  std::vector<double> doubles;
};

// A record that frees its buffers.
struct Record : GridStruct {
  Record() = default;
  Record(int x, int y, int z, float h) {
    xdim = x;
    ydim = y;
    zdim = z;
    spacing = h;
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record() { vx_deallocate_grid_struct(*this, true, true); }
  int points() const { return xdim * ydim * zdim; }
};

std::vector<int> run_at(const std::vector<int>& list, int value) {
  std::vector<int> run;
  if (value == 0) return run;
  const auto first = static_cast<std::size_t>(value);
  for (std::size_t at = first; at == first || (at < list.size() && list[at] != 0); ++at)
    run.push_back(list.at(at));
  return run;
}

std::array<double, 3> place(const GridStruct& g, int x, int y, int z) {
  return {g.xmid + (x - (g.xdim - 1) / 2.0) * double{g.spacing},
          g.ymid + (y - (g.ydim - 1) / 2.0) * double{g.spacing},
          g.zmid + (z - (g.zdim - 1) / 2.0) * double{g.spacing}};
}

double distance(const Ball& ball, const std::array<double, 3>& p) {
  return std::hypot(double{ball.centre[0]} - p[0], double{ball.centre[1]} - p[1],
                    double{ball.centre[2]} - p[2]);
}

// Every run holds the spheres around its point, in order; points near a surface may go either way.
// Gives how many runs had two spheres or more.
int expect_runs(const GridStruct& g, const std::vector<int>& list, const std::vector<Ball>& balls,
                const std::vector<Ball>& mask = {}) {
  int shared = 0;
  int entries = 0;
  int runs = 0;
  for (int i = 0; i < g.xdim * g.ydim * g.zdim; ++i) {
    const int x = i % g.xdim;
    const int y = i / g.xdim % g.ydim;
    const int z = i / g.xdim / g.ydim;
    const auto p = place(g, x, y, z);
    const std::vector<int> run = run_at(list, g.integers[i]);
    entries += static_cast<int>(run.size());
    runs += run.empty() ? 0 : 1;
    const auto on_surface = [&](const Ball& ball) {
      return std::fabs(distance(ball, p) - double{ball.radius}) < 1e-4;
    };
    const auto covers = [&](const Ball& ball) { return distance(ball, p) < double{ball.radius}; };
    if (std::any_of(balls.begin(), balls.end(), on_surface) ||
        std::any_of(mask.begin(), mask.end(), on_surface))
      continue;
    std::vector<int> expected;
    const bool closed = x == 0 || y == 0 || z == 0 || std::any_of(mask.begin(), mask.end(), covers);
    for (std::size_t n = 0; !closed && n < balls.size(); ++n) {
      if (covers(balls[n])) expected.push_back(static_cast<int>(n));
    }
    EXPECT_EQ(run, expected) << x << " " << y << " " << z;
    shared += expected.size() > 1;
  }
  // One slot for each entry and one between runs, and nothing else.
  EXPECT_EQ(list.size(), static_cast<std::size_t>(entries + runs + 1));
  return shared;
}

TEST(Proximity, every_kind_lists_the_spheres_around_each_point) {
  const std::vector<Ball> balls = random_balls(7, 40);
  Layouts layouts(balls);
  for (const int kind : {1, 2, 3, 4}) {
    Record grid;
    std::vector<int> list = {5, 5};
    EXPECT_EQ(vx_make_proximity_grid(0, layouts.of_kind(kind), layouts.radii.data(),
                                     layouts.count(), Layouts::probe, &grid, 0.5f, 1, kind, list),
              1);
    EXPECT_GT(expect_runs(grid, list, balls), 100) << kind;
    EXPECT_EQ(grid.inverse_spacing, 2.0f);
  }
  // One atom: 1.5 of radius, and 1.25 of probe and buffer on both sides.
  Record grid;
  std::vector<int> list;
  float radius = 1.25f;
  EXPECT_EQ(
      vx_make_proximity_grid(0, layouts.triples.data(), &radius, 1, 0.25f, &grid, 0.5f, 1, 2, list),
      1);
  EXPECT_EQ(grid.xdim, 3 + 2 * 5);
  EXPECT_FLOAT_EQ(grid.ymid, layouts.triples[1]);
}

TEST(Proximity, a_run_starts_behind_a_zero_and_the_last_ends_with_the_list) {
  // Two spheres around one point and a third around another, along x, of a 5 by 3 by 3 grid.
  std::vector<float> points = {0, 0, 0, 0, 0, 0, 2, 0, 0};
  Record grid;
  std::vector<int> list;
  EXPECT_EQ(vx_make_proximity_grid(0, points.data(), nullptr, 3, 0.25f, &grid, 1, 0, 2, list), 1);
  EXPECT_EQ(grid.xdim, 5);
  EXPECT_EQ(list, (std::vector<int>{0, 0, 0, 1, 0, 2}));
  const int middle_row = 5 * (1 + 3 * 1);
  EXPECT_EQ(grid.integers[middle_row + 1], 2);
  EXPECT_EQ(grid.integers[middle_row + 3], 5);
  EXPECT_EQ(std::count(grid.integers, grid.integers + grid.points(), 0), grid.points() - 2);

  // Between the points they leave no trace.
  points = {0, 0, 0, 1, 1, 1};
  const std::vector<int> before = list;
  EXPECT_EQ(vx_make_proximity_grid(0, points.data(), nullptr, 2, 0.25f, &grid, 1, 0, 2, list), 0);
  EXPECT_EQ(list, before);
  EXPECT_EQ(std::count(grid.integers, grid.integers + grid.points(), 0), grid.points());
}

TEST(Proximity, a_given_box_is_filled_save_what_the_mask_covers) {
  const std::vector<Ball> balls = random_balls(11, 60);
  const std::vector<Ball> mask = random_balls(12, 15);
  Layouts layouts(balls);
  Layouts masks(mask);
  for (const bool masked : {false, true}) {
    Record grid(14, 11, 9, 0.4f);
    grid.xmid = -1;
    grid.ymid = 11;
    ASSERT_EQ(vx_allocate_grid_struct(grid, true, true, -1), 1);
    std::fill_n(grid.floats, grid.points(), 3.0f);
    std::vector<int> list;
    EXPECT_EQ(vx_make_masked_and_boxed_proximity_grid(
                  layouts.triples.data(), layouts.radii.data(), layouts.count(), Layouts::probe,
                  masks.triples.data(), masks.radii.data(), masked ? masks.count() : 0,
                  Layouts::probe, &grid, list),
              1);
    EXPECT_GT(expect_runs(grid, list, balls, masked ? mask : std::vector<Ball>()), 30);
    EXPECT_EQ(std::count(grid.floats, grid.floats + grid.points(), 0.0f), grid.points());
    EXPECT_EQ(grid.inverse_spacing, 2.5f);
  }
}

TEST(Proximity, a_point_reads_the_node_in_whose_cell_it_lies) {
  Record grid(4, 3, 5, 0.5f);
  grid.ymid = 1;
  ASSERT_EQ(vx_allocate_grid_struct(grid, true, false, -1), 1);
  for (int i = 0; i < grid.points(); ++i)
    grid.integers[i] = i + 1;
  std::vector<Ball> probes;
  std::vector<int> expected;
  // From a cell below the grid to one above it on each axis, a little inside the faces.
  for (const float within : {-0.24f, 0.0f, 0.24f}) {
    for (int z = -1; z <= 5; ++z) {
      for (int y = -1; y <= 3; ++y) {
        for (int x = -1; x <= 4; ++x) {
          const auto p = place(grid, x, y, z);
          probes.push_back({{static_cast<float>(p[0]) + within, static_cast<float>(p[1]) + within,
                             static_cast<float>(p[2]) + within},
                            1});
          const bool inside = x >= 0 && x < 4 && y >= 0 && y < 3 && z >= 0 && z < 5;
          expected.push_back(inside ? 1 + x + 4 * (y + 3 * z) : 0);
        }
      }
    }
  }
  probes.push_back({{NAN, 1, 0}, 1});
  probes.push_back({{0, 1e30f, 0}, 1});
  expected.insert(expected.end(), {0, 0});
  Layouts layouts(probes);
  for (const int kind : {1, 2, 3, 4, 5}) {
    std::vector<int> values(expected.size(), -1);
    EXPECT_EQ(
        vx_get_proximity_list(layouts.of_kind(kind), layouts.count(), &grid, kind, values.data()),
        1);
    EXPECT_EQ(values, expected) << kind;
  }
  EXPECT_EQ(grid.inverse_spacing, 2.0f);
}

TEST(Proximity, bad_input_is_answered_and_leaves_the_record) {
  std::vector<float> points = {0, 0, 0, 1, 1, 1};
  std::vector<float> far = {0, 0, 0, 1e6f, 1e6f, 1e6f};
  Record grid(2, 2, 2, 0.0f);
  std::vector<int> list = {7};
  const auto make = [&](void* items, int count, GridStruct* g, float spacing, int kind) {
    return vx_make_proximity_grid(0, items, nullptr, count, 1, g, spacing, 1, kind, list);
  };
  const auto make_boxed = [&](GridStruct* g) {
    return vx_make_masked_and_boxed_proximity_grid(points.data(), nullptr, 2, 1, nullptr, nullptr,
                                                   3, 1, g, list);
  };
  {
    const MessageCapture messages;
    EXPECT_EQ(make(points.data(), 2, &grid, 0, 2), 1);
    EXPECT_EQ(make_boxed(&grid), 1);
    EXPECT_EQ(messages.messages.size(), 2u);
    EXPECT_TRUE(messages.has(VXErrorLevel::Info, "Cant have a grid of zero spacing!"));
  }
  EXPECT_EQ(make(points.data(), 2, &grid, -1, 2), 0);
  EXPECT_EQ(make(points.data(), 2, &grid, NAN, 2), 0);
  EXPECT_EQ(make(points.data(), 2, &grid, 1, 5), 0);
  EXPECT_EQ(make(points.data(), 2, &grid, 1, 0), 0);
  EXPECT_EQ(make(points.data(), 0, &grid, 1, 2), 0);
  EXPECT_EQ(make(nullptr, 2, &grid, 1, 2), 0);
  EXPECT_EQ(make(points.data(), 2, nullptr, 1, 2), 0);
  EXPECT_EQ(make(far.data(), 2, &grid, 0.1f, 2), 0);
  EXPECT_EQ(make(points.data(), 2, &grid, 1e-9f, 2), 0);
  EXPECT_EQ(make_boxed(nullptr), 0);
  EXPECT_EQ(list, std::vector<int>{7});
  EXPECT_EQ(grid.integers, nullptr);
  EXPECT_EQ(grid.spacing, 0.0f);

  int values[2] = {1, 1};
  EXPECT_EQ(vx_get_proximity_list(points.data(), 2, &grid, 2, values), 0);
  EXPECT_EQ(values[1], 0);
  EXPECT_EQ(vx_get_proximity_list(points.data(), 2, &grid, 2, nullptr), 0);

  for (const auto& [dim, spacing] : {std::pair{0, 1.0f}, {-3, 1.0f}, {65536, 1.0f}, {2, -1.0f}}) {
    Record odd(dim, dim, 1, spacing);
    EXPECT_EQ(make_boxed(&odd), 0);
    EXPECT_EQ(odd.integers, nullptr);
  }
  // A single point has index 0 on every axis, and so nothing covers it.
  Record one(1, 1, 1, 1.0f);
  EXPECT_EQ(make_boxed(&one), 0);
  EXPECT_EQ(one.integers[0], 0);
}

}  // namespace
