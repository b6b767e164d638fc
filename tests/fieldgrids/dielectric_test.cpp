// Dielectrics on edges against the dielectric of the spheres themselves, integrated along them.
#include "vxgrid/fieldgrids/dielectric.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "gridmath/test_record.h"
#include "vxgrid/fieldgrids/surface_vertices.h"
#include "vxgrid/gridmath/masks.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

constexpr float inner = 2.0f;
constexpr float outer = 78.5f;

// Three arrays as large as a record, with the record's own dielectrics in them.
struct Edges {
  explicit Edges(const TestRecord& record) {
    for (auto& array : values)
      array.assign(record.floats.size(), -1.0f);
    vi_grid_to_eps(record.grid, eps(), inner, outer);
  }
  Dstruct eps() { return {values[0].data(), values[1].data(), values[2].data()}; }

  std::array<std::vector<float>, 3> values;
};

const std::vector<SphereStruct> solute = {
    {0.13f, 10.21f, -5, 1.5f}, {1.62f, 9.4f, -4.3f, 1.2f}, {-1.4f, 10.9f, -5.8f, 1.0f}};
constexpr float probe = 0.3f;

bool is_in_solute(const std::array<double, 3>& p) {
  for (const SphereStruct& s : solute) {
    const double r = double{s.r} + double{probe};
    if (std::hypot(p[0] - double{s.x}, p[1] - double{s.y}, p[2] - double{s.z}) < r) return true;
  }
  return false;
}

// The mask of the solute, in the floats and, as numbers of spheres, in the integers.
void mark_solute(TestRecord& record) {
  std::vector<SphereStruct> spheres = solute;
  EXPECT_EQ(vi_map_spheres_to_grid(spheres.data(), "spheres", nullptr, record.grid, probe,
                                   static_cast<int>(spheres.size()), 1.0f),
            1);
}

// Calls visit(x, y, z, element, axis) for the edges that vi_find_cuts_f looks at, in its order.
template <class Visit>
void for_each_edge(const TestRecord& record, Visit visit) {
  record.for_each_point([&](int x, int y, int z, std::size_t e) {
    if (x > record.grid.xdim - 2 || y > record.grid.ydim - 2 || z > record.grid.zdim - 2) return;
    for (std::size_t axis = 0; axis < 3; ++axis)
      visit(x, y, z, e, axis);
  });
}

std::size_t other_end(const TestRecord& record, int x, int y, int z, std::size_t axis) {
  return record.element(x + (axis == 0), y + (axis == 1), z + (axis == 2));
}

std::array<double, 3> along(const TestRecord& record, int x, int y, int z, std::size_t axis,
                            double t) {
  return record.place(x + (axis == 0 ? t : 0), y + (axis == 1 ? t : 0), z + (axis == 2 ? t : 0));
}

TEST(Dielectric, a_mask_becomes_a_blend_of_both_dielectrics_on_all_edges) {
  TestRecord record({3, 2, 4}, {0, 0, 0}, 1);
  record.fill_random(3);
  record.floats[0] = 1;
  record.floats[1] = 0;
  record.floats[2] = 0.25f;
  Edges edges(record);
  for (const auto& array : edges.values) {
    EXPECT_EQ(array[0], inner);
    EXPECT_EQ(array[1], outer);
    EXPECT_FLOAT_EQ(array[2], 59.375f);
    for (std::size_t i = 0; i < array.size(); ++i)
      EXPECT_EQ(array[i], (inner - outer) * record.floats[i] + outer);
  }
}

TEST(Dielectric, cuts_are_the_middles_of_edges_from_one_side_to_the_other) {
  TestRecord record({6, 4, 5}, {1, -20, 3}, 0.75f);
  std::mt19937 random(5);
  for (std::size_t i = 0; i < record.floats.size(); ++i) {
    // Exactly at the level is not below it.
    constexpr std::array<float, 4> levels = {0.0f, 0.49f, 0.5f, 1.0f};
    const std::size_t level = random() % 4;
    record.floats[i] = levels[level];
    record.integers[i] = level < 2 ? -static_cast<int>(level) : static_cast<int>(level);
  }
  const auto is_below = [&](std::size_t e) { return double{record.floats[e]} < 0.5; };
  std::vector<std::array<double, 3>> expected;
  for_each_edge(record, [&](int x, int y, int z, std::size_t e, std::size_t axis) {
    if (is_below(e) != is_below(other_end(record, x, y, z, axis)))
      expected.push_back(along(record, x, y, z, axis, 0.5));
  });
  ASSERT_GT(expected.size(), 50u);
  for (const auto find : {vi_find_cuts_f, vi_find_cuts_i}) {
    std::vector<PntStruct> cuts(7);
    int count = 99;
    find(0, record.grid, cuts, &count);
    EXPECT_EQ(count, static_cast<int>(expected.size()));
    ASSERT_EQ(cuts.size(), expected.size());
    for (std::size_t i = 0; i < cuts.size(); ++i) {
      EXPECT_NEAR(cuts[i].x, expected[i][0], 1e-5);
      EXPECT_NEAR(cuts[i].y, expected[i][1], 1e-5);
      EXPECT_NEAR(cuts[i].z, expected[i][2], 1e-5);
    }
  }
}

TEST(Dielectric, corrected_edges_conduct_as_what_lies_along_them) {
  TestRecord record({17, 15, 16}, {0.1f, 10, -5}, 0.5f);
  mark_solute(record);
  for (const bool from_vertices : {true, false}) {
    for (const bool integer_mask : {true, false}) {
      GridStruct grid = record.grid;
      if (integer_mask) grid.floats = nullptr;
      std::vector<PntStruct> cuts;
      int count = 0;
      (integer_mask ? vi_find_cuts_i : vi_find_cuts_f)(0, grid, cuts, &count);
      std::vector<VrtStruct> vertices;
      for (const PntStruct& cut : cuts)
        vertices.push_back({cut.x, cut.y, cut.z, {1, 2, 3, 4, 5, 6, 7, 8}});
      std::vector<SphereStruct> spheres = solute;
      const int vertex_count = from_vertices ? count : 0;
      vi_vert_repo_grid(0, grid, vertices.data(), vertex_count, cuts.data(), count, spheres.data(),
                        3, nullptr, 0, probe);
      Edges edges(record);
      const Edges before = edges;
      vi_correct_eps_with_cuts(edges.eps(), grid, inner, outer, vertices.data(), vertex_count,
                               cuts.data(), count, 0);

      int corrected = 0;
      for_each_edge(record, [&](int x, int y, int z, std::size_t e, std::size_t axis) {
        const float value = edges.values[axis][e];
        if (record.floats[e] == record.floats[other_end(record, x, y, z, axis)]) {
          EXPECT_EQ(value, before.values[axis][e]);
          return;
        }
        // Resistances in series.
        constexpr int steps = 4000;
        double resistance = 0;
        for (int i = 0; i < steps; ++i) {
          const auto p = along(record, x, y, z, axis, (i + 0.5) / steps);
          resistance += 1.0 / (steps * double{is_in_solute(p) ? inner : outer});
        }
        EXPECT_NEAR(double{value} * resistance, 1.0, 0.02) << x << " " << y << " " << z;
        ++corrected;
      });
      EXPECT_EQ(corrected, count);
      EXPECT_GT(corrected, 200);
    }
  }
}

TEST(Dielectric, with_the_flag_an_edge_has_the_dielectric_of_its_middle) {
  TestRecord record({4, 3, 3}, {0, 0, 0}, 1);
  const std::size_t base = record.element(1, 1, 1);
  for (const bool base_inside : {true, false}) {
    for (const auto& [t, of_base] : {std::pair{0.2f, false}, {0.5f, true}, {0.8f, true}}) {
      record.floats.assign(record.floats.size(), base_inside ? 0.0f : 1.0f);
      record.floats[base] = base_inside ? 1.0f : 0.0f;
      Edges edges(record);
      PntStruct cut{-0.5f + t, 0, 0};
      vi_correct_eps_with_cuts(edges.eps(), record.grid, inner, outer, nullptr, 0, &cut, 1, 1);
      EXPECT_EQ(edges.values[0][base], base_inside == of_base ? inner : outer) << t;
      cut = {-0.5f + t, 0, 0};
      vi_correct_eps_with_cuts(edges.eps(), record.grid, inner, outer, nullptr, 0, &cut, 1, 0);
      const double solute_part = base_inside ? double{t} : 1 - double{t};
      EXPECT_NEAR(edges.values[0][base],
                  1 / (solute_part / double{inner} + (1 - solute_part) / double{outer}), 1e-4);
      EXPECT_EQ(edges.values[1][base], base_inside ? inner : outer);
    }
  }
}

TEST(Dielectric, points_that_say_nothing_about_an_edge_are_passed_over) {
  TestRecord record({3, 3, 3}, {0, 0, 0}, 1);
  record.floats[record.element(1, 1, 1)] = record.floats[record.element(1, 2, 1)] = 1;
  Edges edges(record);
  const Edges before = edges;
  std::vector<PntStruct> cuts = {{-1, -0.5f, 0}, {0.5f, -1, 1}, {1, 1, 1},      {1.4f, 0, 0},
                                 {-1.5f, 0, 0},  {0, 0, 1e30f}, {NAN, 0, 0},    {0, INFINITY, 0},
                                 {0, -1e30f, 0}, {5, 5, 5},     {0.6f, 1.4f, 0}};
  const auto correct = [&](const GridStruct& g, PntStruct* points, int count) {
    vi_correct_eps_with_cuts(edges.eps(), g, inner, outer, nullptr, 0, points, count, 0);
  };
  correct(record.grid, cuts.data(), static_cast<int>(cuts.size()));
  PntStruct cut{0.5f, 0, 0};
  correct(record.grid, &cut, 0);
  correct(record.grid, nullptr, 1);
  for (const float spacing : {0.0f, -1.0f, NAN}) {
    GridStruct bad = record.grid;
    bad.spacing = spacing;
    correct(bad, &cut, 1);
  }
  for (const int dim : {0, -1, -2147483647 - 1, 2147483647}) {
    GridStruct bad = record.grid;
    bad.ydim = dim;
    correct(bad, &cut, 1);
    vi_grid_to_eps(bad, edges.eps(), 1, 3);
    int count = 5;
    std::vector<PntStruct> found(2);
    vi_find_cuts_f(0, bad, found, &count);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(count, 0);
  }
  GridStruct bare = record.grid;
  bare.floats = nullptr;
  vi_grid_to_eps(bare, edges.eps(), 1, 3);
  bare.integers = nullptr;
  correct(bare, &cut, 1);
  EXPECT_EQ(edges.values, before.values);

  // Without an inverse spacing, and with arrays missing, the rest is done.
  GridStruct rest = record.grid;
  rest.inverse_spacing = 0;
  Dstruct some = edges.eps();
  some.y_edges = nullptr;
  std::vector<PntStruct> good = {{0.5f, 0, 0}, {0, 0.5f, 0}};
  vi_correct_eps_with_cuts(some, rest, inner, outer, nullptr, 0, good.data(), 2, 0);
  EXPECT_NE(edges.values[0], before.values[0]);
  EXPECT_EQ(edges.values[1], before.values[1]);

  std::vector<PntStruct> found(2);
  vi_find_cuts_f(0, bare, found, nullptr);
  EXPECT_TRUE(found.empty());
  TestRecord one({1, 1, 1}, {0, 0, 0}, 1);
  one.floats[0] = 1;
  Edges of_one(one);
  EXPECT_EQ(of_one.values[2][0], inner);
  vi_find_cuts_f(0, one.grid, found, nullptr);
  EXPECT_TRUE(found.empty());
}

}  // namespace
