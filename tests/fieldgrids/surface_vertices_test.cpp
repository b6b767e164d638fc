// Where surface points end up, against plain distances to all spheres.
#include "vxgrid/fieldgrids/surface_vertices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::TestRecord;

constexpr float probe = 1.4f;

std::vector<SphereStruct> random_spheres(unsigned int seed, int count) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-5, 5);
  std::uniform_real_distribution<float> size(0.5f, 1.2f);
  std::vector<SphereStruct> spheres;
  for (int i = 0; i < count; ++i)
    spheres.push_back({place(random), place(random), place(random) + 30, size(random)});
  return spheres;
}

template <class A, class B>
double distance(const A& a, const B& b) {
  return std::hypot(double{a.x} - double{b.x}, double{a.y} - double{b.y},
                    double{a.z} - double{b.z});
}

// The distance from the surface of the union, below 0 inside.
template <class Record>
double from_surface(const std::vector<SphereStruct>& spheres, const Record& p) {
  double least = 1e30;
  for (const SphereStruct& s : spheres)
    least = std::min(least, distance(p, s) - double{s.r} - double{probe});
  return least;
}

std::vector<VrtStruct> random_vertices(unsigned int seed, int count, float spread) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-spread, spread);
  std::vector<VrtStruct> vertices;
  for (int i = 0; i < count; ++i)
    vertices.push_back(
        {place(random), place(random), place(random) + 30, {9, 8, 7, 6, 5, 4, 3, 2}});
  return vertices;
}

TEST(SurfaceVertices, free_vertices_end_on_the_surface_and_outer_ones_at_its_nearest_point) {
  std::vector<SphereStruct> spheres = random_spheres(21, 60);
  int outside = 0;
  int inside = 0;
  for (const float spread : {6.0f, 9.0f, 300.0f}) {
    const std::vector<VrtStruct> before = random_vertices(4, 400, spread);
    std::vector<VrtStruct> vertices = before;
    GridStruct grid;
    grid.spacing = 0.5f;
    vi_vert_repo_Free(0, grid, vertices.data(), 400, nullptr, 0, spheres.data(), 60, nullptr, 0,
                      probe);
    for (std::size_t i = 0; i < before.size(); ++i) {
      EXPECT_NEAR(from_surface(spheres, vertices[i]), 0.0, 1e-5);
      EXPECT_EQ(vertices[i].carried[7], 2.0f);
      const double d = from_surface(spheres, before[i]);
      ++(d > 0 ? outside : inside);
      if (d <= 0) continue;
      EXPECT_NEAR(distance(before[i], vertices[i]), d, 1e-5 * std::max(1.0, d));
    }
  }
  EXPECT_GT(outside, 300);
  EXPECT_GT(inside, 300);
}

TEST(SurfaceVertices, an_inner_vertex_leaves_the_deepest_sphere_and_all_behind_it) {
  // Along x from the centre of the first: its own surface at 2, then the others' at 3 and 4.5.
  std::vector<SphereStruct> spheres = {{0, 0, 0, 2}, {2, 0, 0, 1}, {3.5f, 0, 0, 1}, {9, 0, 0, 1}};
  const struct {
    VrtStruct from, to;
  } cases[] = {{{0.1f, 0, 0, {}}, {4.5f, 0, 0, {}}},
               {{-0.1f, 0, 0, {}}, {-2, 0, 0, {}}},
               {{0, 0.25f, 0, {}}, {0, 2, 0, {}}},
               {{3.6f, 0, 0, {}}, {4.5f, 0, 0, {}}},
               {{9.5f, 0, 0, {}}, {10, 0, 0, {}}}};
  for (const auto& c : cases) {
    VrtStruct vertex = c.from;
    vi_vert_repo_Free(0, {}, &vertex, 1, nullptr, 0, spheres.data(), 4, nullptr, 0, 0);
    EXPECT_NEAR(distance(vertex, c.to), 0.0, 1e-6) << c.from.x;
  }
  const MessageCapture messages;
  VrtStruct centre{9, 0, 0, {}};
  vi_vert_repo_Free(0, {}, &centre, 1, nullptr, 0, spheres.data(), 4, nullptr, 0, 0);
  EXPECT_TRUE(messages.has(VXErrorLevel::Info, "zero dist encountered"));
  EXPECT_EQ(centre.x, 10.0f);
}

TEST(SurfaceVertices, points_on_lattice_edges_go_along_them_to_the_nearest_crossing) {
  std::vector<SphereStruct> spheres = random_spheres(33, 25);
  TestRecord record({12, 14, 13}, {0.2f, -0.1f, 30}, 1.2f);
  std::vector<PntStruct> cuts;
  std::vector<std::size_t> axes;
  record.for_each_point([&](int x, int y, int z, std::size_t) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::array<int, 3> index = {x, y, z};
      const std::array<int, 3> dim = {record.grid.xdim, record.grid.ydim, record.grid.zdim};
      if (index[axis] > dim[axis] - 2) continue;
      const auto p = record.place(x + (axis == 0 ? 0.4 : 0), y + (axis == 1 ? 0.4 : 0),
                                  z + (axis == 2 ? 0.4 : 0));
      cuts.push_back(
          {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])});
      axes.push_back(axis);
    }
  });
  const auto count = static_cast<int>(cuts.size());
  std::vector<PntStruct> moved(cuts.size());
  std::vector<PntStruct> kept = cuts;
  vi_vert_repo_grid(1, record.grid, nullptr, 0, kept.data(), count, spheres.data(), 25,
                    moved.data(), count, probe);
  int crossed = 0;
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    EXPECT_EQ(distance(kept[i], cuts[i]), 0.0);
    // Steps along the edge, and where the surface is passed between two of them.
    constexpr double step = 1.2 / 100;
    double nearest = 1e30;
    double least = 1e30;
    double before = 0;
    for (int n = 0; n <= 100; ++n) {
      std::array<double, 3> p = {double{cuts[i].x}, double{cuts[i].y}, double{cuts[i].z}};
      const double s = (n - 40) * step;
      p[axes[i]] += s;
      struct {
        double x, y, z;
      } const place{p[0], p[1], p[2]};
      const double d = from_surface(spheres, place);
      least = std::min(least, std::fabs(d));
      if (n > 0 && (d < 0) != (before < 0) && std::fabs(s) < std::fabs(nearest)) nearest = s;
      before = d;
    }
    if (nearest < 1e29) {
      const std::array<double, 3> by = {double{moved[i].x} - double{cuts[i].x},
                                        double{moved[i].y} - double{cuts[i].y},
                                        double{moved[i].z} - double{cuts[i].z}};
      EXPECT_NEAR(from_surface(spheres, moved[i]), 0.0, 1e-5);
      EXPECT_NEAR(by[axes[i]], nearest, 1.1 * step);
      EXPECT_NEAR(std::fabs(by[0]) + std::fabs(by[1]) + std::fabs(by[2]), std::fabs(by[axes[i]]),
                  1e-5);
      ++crossed;
    } else if (least > step) {
      EXPECT_EQ(distance(moved[i], cuts[i]), 0.0);
    }
  }
  EXPECT_GT(crossed, 400);

  // Vertices have to be on the surface, those whose edges miss it too.
  std::vector<VrtStruct> vertices;
  for (const PntStruct& cut : cuts)
    vertices.push_back({cut.x, cut.y, cut.z, {}});
  std::vector<PntStruct> out(50);
  vi_vert_repo_grid(0, record.grid, vertices.data(), count, cuts.data(), count, spheres.data(), 25,
                    out.data(), 50, probe);
  for (const VrtStruct& vertex : vertices)
    EXPECT_NEAR(from_surface(spheres, vertex), 0.0, 1e-5);
  for (std::size_t i = 0; i < out.size(); ++i)
    EXPECT_EQ(distance(out[i], vertices[i]), 0.0);
}

TEST(SurfaceVertices, exhaust_takes_each_vertex_to_the_nearest_point_within_reach) {
  const std::vector<VrtStruct> before = random_vertices(8, 500, 6);
  std::vector<PntStruct> points;
  for (const VrtStruct& made : random_vertices(9, 300, 5))
    points.push_back({made.x, made.y, made.z});
  points.push_back(points.front());
  for (const float reach : {0.0f, 0.6f, 1.5f, 100.0f}) {
    for (const float spacing : {1e-6f, 0.5f, 40.0f}) {
      std::vector<VrtStruct> vertices = before;
      vertices[3].x = points[0].x;
      vertices[3].y = points[0].y;
      vertices[3].z = points[0].z;
      int moved = -1;
      vi_vert_repo_exhaust(vertices.data(), 500, points.data(), 301, reach, spacing, &moved);
      int expected = 0;
      for (std::size_t i = 0; i < before.size(); ++i) {
        const VrtStruct from = i == 3 ? vertices[3] : before[i];
        const PntStruct& nearest = *std::min_element(points.begin(), points.end(),
                                                     [&](const PntStruct& a, const PntStruct& b) {
                                                       return distance(a, from) < distance(b, from);
                                                     });
        const bool found = distance(nearest, from) <= double{reach};
        expected += found ? 1 : 0;
        EXPECT_EQ(found ? distance(vertices[i], nearest) : distance(vertices[i], from), 0.0);
      }
      EXPECT_EQ(moved, expected);
      EXPECT_GE(moved, 1);
    }
  }
}

TEST(SurfaceVertices, bad_input_moves_nothing) {
  std::vector<SphereStruct> spheres = {{NAN, 0, 0, 1}, {0, 0, 0, -2}, {0, 0, INFINITY, 1}};
  const VrtStruct made{1, 2, 3, {}};
  VrtStruct vertex = made;
  TestRecord record({4, 4, 4}, {0, 0, 0}, 1);
  const auto repo = [&](const GridStruct& g, SphereStruct* s, int n) {
    vi_vert_repo_grid(0, g, &vertex, 1, nullptr, 0, s, n, nullptr, 5, probe);
    vi_vert_repo_Free(0, g, &vertex, 1, nullptr, 0, s, n, nullptr, 5, probe);
  };
  repo(record.grid, spheres.data(), 3);
  repo(record.grid, nullptr, 3);
  repo(record.grid, spheres.data(), -1);
  EXPECT_EQ(distance(vertex, made), 0.0);
  spheres.push_back({0, 0, 0, 1});
  vertex.y = NAN;
  repo(record.grid, spheres.data(), 4);
  EXPECT_EQ(vertex.x, 1.0f);
  vi_vert_repo_grid(0, record.grid, nullptr, 1, nullptr, 1, spheres.data(), 4, nullptr, 0, probe);
  vi_vert_repo_Free(0, record.grid, nullptr, 0, nullptr, 1, spheres.data(), 4, nullptr, 0, probe);
  // No edges, but a surface.
  for (const int dim : {0, -2147483647 - 1, 2147483647}) {
    for (const float spacing : {0.0f, -1.0f, NAN, INFINITY}) {
      GridStruct bad = record.grid;
      bad.xdim = dim;
      bad.spacing = spacing;
      vertex = made;
      repo(bad, spheres.data(), 4);
      EXPECT_NEAR(from_surface({spheres[3]}, vertex), 0.0, 1e-6);
    }
  }

  PntStruct point{1, 2, 3.5f};
  PntStruct lost{1, 2, INFINITY};
  const auto says_danger = [&](PntStruct* points, int count, float a, float b) {
    const MessageCapture messages;
    int moved = -1;
    vertex = made;
    vi_vert_repo_exhaust(&vertex, 1, points, count, a, b, &moved);
    EXPECT_EQ(moved, 0);
    EXPECT_EQ(distance(vertex, made), 0.0);
    return messages.has(VXErrorLevel::Info, "danger, kit marlow!");
  };
  EXPECT_TRUE(says_danger(&point, 1, -1, 1));
  EXPECT_TRUE(says_danger(&point, 1, 1, 0));
  EXPECT_TRUE(says_danger(&point, 1, NAN, 1));
  EXPECT_TRUE(says_danger(&point, 1, INFINITY, 1));
  EXPECT_TRUE(says_danger(&point, 0, 1, 1));
  EXPECT_TRUE(says_danger(nullptr, 1, 1, 1));
  EXPECT_TRUE(says_danger(&lost, 1, 1, 1));
  EXPECT_FALSE(says_danger(&point, 1, 0.25f, 1));
  const MessageCapture messages;
  vi_vert_repo_exhaust(nullptr, 1, &point, 1, 1, 1, nullptr);
  vi_vert_repo_exhaust(&vertex, 0, &point, 1, 1, 1, nullptr);
  EXPECT_TRUE(messages.messages.empty());
}

}  // namespace
