// The set-up of a finite-difference grid against plain sums over all points.
#include "vxgrid/fieldgrids/finite_difference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::TestRecord;

template <class Record>
double distance(const Record& a, const std::array<double, 3>& p) {
  return std::hypot(double{a.x} - p[0], double{a.y} - p[1], double{a.z} - p[2]);
}

PdbStruct atom_at(float x, float y, float z) {
  PdbStruct atom;
  atom.x = x;
  atom.y = y;
  atom.z = z;
  return atom;
}

TEST(FiniteDifference, bound_check_counts_the_spacings_that_are_missing) {
  // From -2 to 2, 8 to 11 and -7.5 to -2.5.
  TestRecord record({9, 7, 11}, {0, 9.5f, -5}, 0.5f);
  std::vector<PdbStruct> atoms = {atom_at(0, 9.5f, -5), atom_at(-3, 9, -4)};
  std::vector<float> radii = {1, 0.75f};
  int x = -1, y = -1, z = -1;
  const auto check = [&](float probe, float* r, int n) {
    return vi_bound_check(atoms.data(), r, record.grid, probe, n, 3, &x, &y, &z);
  };
  EXPECT_EQ(check(0, radii.data(), 1), 1);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{0, 0, 0}));
  // x: 3.75 beyond 2; y: 8.25 and 10.5 within; z: -6.0 and -3.25 within.
  EXPECT_EQ(check(0, radii.data(), 2), 1);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{3, 0, 0}));
  // With 1.4 more: 3.15 on x; 1.15 and 0.9 on the sides of y; 0.65 on the upper side of z.
  EXPECT_EQ(check(1.4f, radii.data(), 2), 1);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{6, 2, 1}));
  EXPECT_EQ(check(2.1f, nullptr, 2), 1);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{6, 2, 1}));
  atoms[0].z = 1e30f;
  atoms[0].y = NAN;
  EXPECT_EQ(check(0, radii.data(), 2), 1);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{3, 0, 2147483647}));
  EXPECT_EQ(vi_bound_check(nullptr, nullptr, record.grid, 0, 0, 0, nullptr, &y, nullptr), 1);

  EXPECT_EQ(vi_bound_check(nullptr, nullptr, record.grid, 0, 1, 0, &x, &y, &z), 0);
  EXPECT_EQ((std::array<int, 3>{x, y, z}), (std::array<int, 3>{0, 0, 0}));
  record.grid.spacing = 0;
  EXPECT_EQ(check(0, nullptr, 2), 0);
  record.grid.spacing = 1;
  record.grid.ydim = -2147483647 - 1;
  EXPECT_EQ(check(0, nullptr, 2), 0);
}

TEST(FiniteDifference, a_charge_fades_out_over_its_sphere_and_none_of_it_is_lost) {
  TestRecord record({12, 10, 11}, {1, 2, 3}, 0.5f);
  const std::vector<SphereStruct> cases = {{1.1f, 2.2f, 3.05f, 1.3f},  // inside
                                           {-1.8f, 0, 5.4f, 1.2f},     // across three faces
                                           {-3, 2, 3, 1.5f},           // centre outside
                                           {1, 2, 3, 50}};             // around the grid
  for (SphereStruct charge : cases) {
    std::fill(record.floats.begin(), record.floats.end(), 0.0f);
    float value = -0.75f;
    vi_alias_charge_grid(record.grid, &charge, 1, &value, 0);
    double weights = 0;
    const auto weight = [&](const std::array<double, 3>& p) {
      const double d = distance(charge, p);
      return std::max(0.0, 1 - d * d / (double{charge.r} * double{charge.r}));
    };
    record.for_each_point(
        [&](int x, int y, int z, std::size_t) { weights += weight(record.place(x, y, z)); });
    double sum = 0;
    record.for_each_point([&](int x, int y, int z, std::size_t e) {
      EXPECT_NEAR(record.floats[e], -0.75 * weight(record.place(x, y, z)) / weights, 1e-6);
      sum += double{record.floats[e]};
    });
    EXPECT_NEAR(sum, -0.75, 1e-5);
  }
}

TEST(FiniteDifference, point_charges_keep_charge_and_dipole_moment) {
  TestRecord record({12, 10, 11}, {1, 2, 3}, 0.5f);
  std::vector<SphereStruct> charges;
  std::vector<float> values;
  std::mt19937 random(2);
  std::uniform_real_distribution<float> uniform(-1, 1);
  double total = 0;
  std::array<double, 3> dipole{};
  for (int i = 0; i < 200; ++i) {
    charges.push_back({1 + 2.7f * uniform(random), 2 + 2.2f * uniform(random),
                       3 + 2.4f * uniform(random), i % 2 == 0 ? 1.0f : NAN});
    values.push_back(uniform(random));
    total += double{values.back()};
    dipole[0] += double{values.back()} * double{charges.back().x};
    dipole[1] += double{values.back()} * double{charges.back().y};
    dipole[2] += double{values.back()} * double{charges.back().z};
  }
  charges.push_back({20, 2, 3, 0.5f});  // beyond the grid
  charges.push_back({1, NAN, 3, 0.5f});
  values.insert(values.end(), {5, 5});
  vi_alias_charge_grid(record.grid, charges.data(), 202, values.data(), 1);
  double sum = 0;
  std::array<double, 3> moment{};
  record.for_each_point([&](int x, int y, int z, std::size_t e) {
    const auto p = record.place(x, y, z);
    sum += double{record.floats[e]};
    for (std::size_t axis = 0; axis < 3; ++axis)
      moment[axis] += p[axis] * double{record.floats[e]};
  });
  EXPECT_NEAR(sum, total, 1e-4);
  for (std::size_t axis = 0; axis < 3; ++axis)
    EXPECT_NEAR(moment[axis], dipole[axis], 1e-3);

  // A sphere between the points is a point charge, however it is asked for.
  const std::vector<float> before = record.floats;
  SphereStruct small{1.02f, 2.25f, 3.2f, 0.1f};
  float value = 1;
  vi_alias_charge_grid(record.grid, &small, 1, &value, 0);
  int touched = 0;
  for (std::size_t i = 0; i < before.size(); ++i)
    touched += record.floats[i] != before[i];
  EXPECT_GE(touched, 4);
}

TEST(FiniteDifference, both_halves_together_are_the_interior) {
  for (const std::array<int, 3>& dims : {std::array{7, 4, 5}, {6, 5, 4}, {3, 3, 3}, {4, 3, 3}}) {
    TestRecord record(dims, {0, 0, 0}, 1);
    std::iota(record.floats.begin(), record.floats.end(), 1.0f);
    std::set<float> seen;
    TestRecord rebuilt(dims, {0, 0, 0}, 1);
    for (const int odd : {1, 0}) {
      std::vector<float> expected;
      record.for_each_point([&](int x, int y, int z, std::size_t e) {
        const bool interior =
            x > 0 && y > 0 && z > 0 && x < dims[0] - 1 && y < dims[1] - 1 && z < dims[2] - 1;
        if (interior && x % 2 == odd) expected.push_back(record.floats[e]);
      });
      std::vector<float> packed(expected.size() + 1, -1.0f);
      vi_pack_half(record.grid, packed.data(), 0, odd);
      EXPECT_EQ(packed.back(), -1.0f);
      packed.pop_back();
      EXPECT_EQ(packed, expected);
      seen.insert(packed.begin(), packed.end());
      vi_pack_half(rebuilt.grid, packed.data(), 1, odd);
    }
    EXPECT_EQ(static_cast<int>(seen.size()), (dims[0] - 2) * (dims[1] - 2) * (dims[2] - 2));
    for (std::size_t e = 0; e < record.floats.size(); ++e)
      EXPECT_EQ(rebuilt.floats[e], seen.count(record.floats[e]) != 0 ? record.floats[e] : 0.0f);
  }
}

TEST(FiniteDifference, spheres_points_and_atoms_are_announced_and_marked) {
  std::vector<SphereStruct> spheres = {{-2, 0, 0, 0.8f}};
  std::vector<PntStruct> points = {{0, 1, 0}, {0.4f, 1.3f, 0}};
  std::vector<PdbStruct> atoms = {atom_at(2, 0, 0), atom_at(2, 1, 1), atom_at(-2, 0.3f, 0)};
  std::vector<float> radii = {1, 0.5f, 0.2f};
  constexpr float probe = 0.55f;
  for (const bool with_radii : {true, false}) {
    TestRecord record({14, 9, 10}, {0, 0, 0}, 0.5f);
    std::fill(record.floats.begin(), record.floats.end(), 0.25f);
    const MessageCapture messages;
    vi_sph_to_grid2(spheres.data(), points.data(), atoms.data(),
                    with_radii ? radii.data() : nullptr, record.grid, probe, 1, 2, 3, 7, -2.5f);
    ASSERT_EQ(messages.messages.size(), 3u);
    EXPECT_EQ(messages.messages[0].second,
              "mapping 1 spheres to grid with probe radius of 0.550000");
    EXPECT_EQ(messages.messages[1].second,
              "mapping 2 points to grid with probe radius of 0.550000");
    EXPECT_EQ(messages.messages[2].second, "mapping 3 atoms to grid with probe radius of 0.550000");
    int marked = 0;
    record.for_each_point([&](int x, int y, int z, std::size_t e) {
      const auto p = record.place(x, y, z);
      bool covered = distance(spheres[0], p) < 0.8 + 0.55;
      for (const PntStruct& point : points)
        covered = covered || distance(point, p) < 0.55;
      for (std::size_t i = 0; i < 3; ++i)
        covered = covered || distance(atoms[i], p) < 0.55 + (with_radii ? double{radii[i]} : 0);
      covered = covered && x > 0 && y > 0 && z > 0;
      EXPECT_EQ(record.integers[e], covered ? 7 : 0);
      EXPECT_EQ(record.floats[e], covered ? -2.5f : 0.25f);
      marked += covered ? 1 : 0;
    });
    EXPECT_GT(marked, 50);
  }
}

TEST(FiniteDifference, bad_input_touches_nothing) {
  const MessageCapture messages;
  TestRecord record({4, 4, 4}, {0, 0, 0}, 1);
  const std::vector<float> before = record.floats;
  SphereStruct sphere{0, 0, 0, 2};
  float value = 1;
  std::vector<float> out(64, 3.0f);
  const auto try_all = [&](const GridStruct& g) {
    vi_alias_charge_grid(g, &sphere, 1, &value, 0);
    vi_alias_charge_grid(g, &sphere, 1, &value, 1);
    vi_sph_to_grid2(&sphere, nullptr, nullptr, nullptr, g, 1, 1, 1, 1, 1, 1);
  };
  for (const float spacing : {0.0f, -1.0f, NAN}) {
    GridStruct bad = record.grid;
    bad.spacing = spacing;
    try_all(bad);
  }
  for (const int dim : {0, -1, -2147483647 - 1, 2147483647}) {
    GridStruct bad = record.grid;
    bad.xdim = dim;
    try_all(bad);
    vi_pack_half(bad, out.data(), 1, 1);
  }
  GridStruct bare = record.grid;
  bare.floats = nullptr;
  bare.integers = nullptr;
  try_all(bare);
  vi_pack_half(bare, out.data(), 0, 1);
  vi_pack_half(record.grid, nullptr, 1, 1);
  vi_alias_charge_grid(record.grid, nullptr, 1, &value, 0);
  vi_alias_charge_grid(record.grid, &sphere, 1, nullptr, 0);
  vi_alias_charge_grid(record.grid, &sphere, -1, &value, 0);
  EXPECT_EQ(record.floats, before);
  EXPECT_EQ(out, std::vector<float>(64, 3.0f));

  // One point takes what a sphere around it has to give.
  TestRecord one({1, 1, 1}, {0, 0, 0}, 1);
  vi_alias_charge_grid(one.grid, &sphere, 1, &value, 0);
  EXPECT_EQ(one.floats[0], 1.0f);
  vi_alias_charge_grid(one.grid, &sphere, 1, &value, 1);
  vi_pack_half(one.grid, out.data(), 0, 1);
  EXPECT_EQ(one.floats[0], 1.0f);
}

}  // namespace
