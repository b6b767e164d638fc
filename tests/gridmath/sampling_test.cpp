// Sampling against fields whose interpolated values are known in closed form.
#include "vxgrid/gridmath/sampling.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

#include "gridmath/test_record.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

constexpr float untouched = -77.0f;
constexpr std::array<int, 3> dims = {7, 6, 9};
constexpr std::array<float, 3> mid = {1.5f, -2.0f, 0.25f};
constexpr float spacing = 0.5f;

// Linear along every axis, so that trilinear blending is exact.
double trilinear_field(double x, double y, double z) {
  return 2 + x - 3 * y + 0.5 * z + x * y - 2 * y * z + x * z + 0.25 * x * y * z;
}

double quadratic_field(double x, double y, double z) {
  return 1 + x - 2 * y + z + 0.5 * x * x - y * y + 2 * z * z + x * y;
}

std::vector<float> random_points(std::size_t count, double margin) {
  std::mt19937 generator(11);
  std::vector<float> points;
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double half = (dims[axis] - 1) * 0.5 * spacing - margin;
      std::uniform_real_distribution<double> uniform(mid[axis] - half, mid[axis] + half);
      points.push_back(static_cast<float>(uniform(generator)));
    }
  }
  return points;
}

// The same points by the layout that a mode asks for.
std::vector<float> sampled(const GridStruct& grid, std::vector<float> points, int mode) {
  std::vector<PdbStruct> atoms(points.size() / 3);
  for (std::size_t i = 0; i < atoms.size(); ++i)
    std::tie(atoms[i].x, atoms[i].y, atoms[i].z) =
        std::tie(points[3 * i], points[3 * i + 1], points[3 * i + 2]);
  std::vector<double> doubles(points.begin(), points.end());
  std::vector<float> out(atoms.size(), untouched);
  const int count = static_cast<int>(out.size());
  void* items = points.data();
  if (mode == 0 || mode == 1 || mode == 6) items = atoms.data();
  if (mode == 4 || mode == 5 || mode == 8) items = doubles.data();
  vi_map_to_atoms_from_grid(items, count, out.data(), grid, mode);
  return out;
}

TEST(Sampling, trilinear_modes_reproduce_a_trilinear_field_in_every_layout) {
  TestRecord record(dims, mid, spacing);
  record.fill(trilinear_field);
  // More than one internal block of points.
  const std::vector<float> points = random_points(700, 0.001);
  for (const int mode : {0, 2, 4}) {
    const std::vector<float> out = sampled(record.grid, points, mode);
    for (std::size_t i = 0; i < out.size(); ++i)
      EXPECT_NEAR(out[i], trilinear_field(points[3 * i], points[3 * i + 1], points[3 * i + 2]),
                  2e-5)
          << "mode " << mode << " point " << i;
  }
}

TEST(Sampling, nearest_modes_take_the_value_of_the_closest_lattice_point) {
  TestRecord record(dims, mid, spacing);
  record.fill_random(3);
  const std::vector<float> points = random_points(300, 0.001);
  for (const int mode : {6, 7, 8}) {
    const std::vector<float> out = sampled(record.grid, points, mode);
    for (std::size_t i = 0; i < out.size(); ++i) {
      std::array<int, 3> nearest{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        nearest[axis] = static_cast<int>(
            std::lround((points[3 * i + axis] - mid[axis]) / spacing + (dims[axis] - 1) / 2.0));
      }
      EXPECT_EQ(out[i], record.floats[record.element(nearest[0], nearest[1], nearest[2])]);
    }
  }
}

// The weights have second moment t^2 + 1/4, so that x^2 comes back as x^2 + h^2/4.
TEST(Sampling, quadratic_modes_shift_a_square_by_a_quarter_and_keep_what_is_linear) {
  TestRecord record(dims, mid, spacing);
  record.fill(quadratic_field);
  const std::vector<float> points = random_points(200, spacing / 2 + 0.001);
  const double shift = (0.5 - 1 + 2) * spacing * spacing / 4;
  std::vector<float> values(200);
  std::vector<float> gradients(600);
  vi_quadratic_interpolation_and_derivativates(points.data(), 200, values.data(), gradients.data(),
                                               record.grid, 0);
  for (const int mode : {1, 3, 5}) {
    const std::vector<float> out = sampled(record.grid, points, mode);
    for (std::size_t i = 0; i < out.size(); ++i) {
      const double x = points[3 * i], y = points[3 * i + 1], z = points[3 * i + 2];
      EXPECT_NEAR(out[i], quadratic_field(x, y, z) + shift, 3e-5);
      EXPECT_EQ(out[i], values[i]);
      EXPECT_NEAR(gradients[3 * i], 1 + x + y, 1e-4);
      EXPECT_NEAR(gradients[3 * i + 1], -2 - 2 * y + x, 1e-4);
      EXPECT_NEAR(gradients[3 * i + 2], 1 + 4 * z, 1e-4);
    }
  }
}

TEST(Sampling, only_points_strictly_inside_are_written) {
  TestRecord record(dims, {0, 0, 0}, 1.0f);
  record.fill([](double, double, double) { return 5.0; });
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  const struct {
    std::array<float, 3> point;
    bool linear, quadratic;
  } cases[] = {{{-3, 0, 0}, false, false},
               {{3, 0, 0}, false, false},
               {{-2.999f, 0, 0}, true, false},
               {{2.999f, 0, 0}, true, false},
               {{0, 2.5f, 0}, false, false},
               {{0, -2.5f, 0}, false, false},
               {{0, 0, 4}, false, false},
               {{0, 0, 3.999f}, true, false},
               {{-2.5f, 0, 0}, true, false},
               {{-2.499f, 0, 0}, true, true},
               {{2.499f, 1.999f, 3.499f}, true, true},
               {{0, 2.0f, 0}, true, false},
               {{nan, 0, 0}, false, false},
               {{0, nan, 0}, false, false},
               {{0, 0, inf}, false, false},
               {{-inf, 0, 0}, false, false},
               {{3e38f, -3e38f, 0}, false, false}};
  for (const auto& c : cases) {
    const std::vector<float> point(c.point.begin(), c.point.end());
    for (int mode = 0; mode < 9; ++mode) {
      const bool is_quadratic = mode == 1 || mode == 3 || mode == 5;
      EXPECT_EQ(sampled(record.grid, point, mode)[0],
                (is_quadratic ? c.quadratic : c.linear) ? 5.0f : untouched)
          << point[0] << ' ' << point[1] << ' ' << point[2] << " mode " << mode;
    }
  }
}

// Where rounding leaves the extent just short of a whole number of spacings, nearly half an
// Angstrom goes from the upper side.
TEST(Sampling, upper_side_is_lowered_by_half_the_fraction_of_the_extent) {
  int found = 0;
  for (int n = 3; n < 80; ++n) {
    const float h = 0.1f;
    const float centre = 17.3f;
    const float half = static_cast<float>(n - 1) * h / 2.0f;
    const float e = ((centre + half) - (centre - half)) / h;
    const float high = centre + half - 0.5f * (e - std::trunc(e));
    // A fraction close to 1 is what shows, on a grid that has more than it takes away.
    if (high > centre + half - 0.25f || high < centre) continue;
    ++found;
    TestRecord record({n, 3, 3}, {centre, 0, 0}, h);
    record.fill([](double, double, double) { return 1.0; });
    EXPECT_EQ(sampled(record.grid, {high, 0, 0}, 2)[0], untouched);
    EXPECT_EQ(sampled(record.grid, {std::nextafter(high, -1.0f), 0, 0}, 2)[0], 1.0f);
  }
  EXPECT_GT(found, 0);
}

TEST(Sampling, records_without_an_inside_write_nothing) {
  float point[3] = {0, 0, 0};
  float out = untouched;
  for (const float h : {0.0f, -1.0f, 3e38f, std::numeric_limits<float>::infinity(),
                        std::numeric_limits<float>::quiet_NaN()}) {
    TestRecord record({4, 4, 4}, {0, 0, 0}, h);
    for (const int mode : {2, 3, 7})
      vi_map_to_atoms_from_grid(point, 1, &out, record.grid, mode);
  }
  for (const auto& d : {std::array{1, 4, 4}, std::array{4, 0, 4}, std::array{4, 4, -2},
                        std::array{65536, 65536, 2}}) {
    TestRecord record({2, 2, 2}, {0, 0, 0}, 1.0f);
    std::tie(record.grid.xdim, record.grid.ydim, record.grid.zdim) = std::tuple(d[0], d[1], d[2]);
    for (const int mode : {2, 3, 7})
      vi_map_to_atoms_from_grid(point, 1, &out, record.grid, mode);
  }
  TestRecord record({4, 4, 4}, {0, 0, 0}, 1.0f);
  for (const int mode : {-1, 9, 100})
    vi_map_to_atoms_from_grid(point, 1, &out, record.grid, mode);
  vi_map_to_atoms_from_grid(point, -1, &out, record.grid, 2);
  vi_map_to_atoms_from_grid_and_vals(point, 1, &out, record.grid, nullptr, 2);
  vi_map_to_atoms_from_grid(nullptr, 1, &out, record.grid, 2);
  // Two points along an axis leave a quadratic no room.
  TestRecord thin({2, 5, 5}, {0, 0, 0}, 1.0f);
  vi_map_to_atoms_from_grid(point, 1, &out, thin.grid, 3);
  EXPECT_EQ(out, untouched);
}

TEST(Sampling, quadratic_on_a_molecule_runs_by_atom_index) {
  TestRecord record(dims, mid, spacing);
  record.fill(quadratic_field);
  const VXScalarGrid grid(dims[0], dims[1], dims[2], mid[0], mid[1], mid[2], spacing, "",
                          record.floats.data());
  VXMol::VXGraphMol mol;
  std::vector<float> coords = random_points(5, spacing);
  coords[3] = 1000.0f;
  for (int i = 0; i < 5; ++i)
    mol.NewAtom(6);
  ASSERT_TRUE(mol.SetCoords(coords.data()));
  std::vector<float> values, gradients;
  ASSERT_TRUE(VXQuadraticInterpolationAndDerivatives(grid, mol, values, gradients));
  ASSERT_TRUE(values.size() == 5 && gradients.size() == 15);
  EXPECT_EQ(values[1], 0.0f);
  EXPECT_EQ(gradients[4], 0.0f);
  for (const std::size_t i : {0u, 2u, 3u, 4u})
    EXPECT_NEAR(gradients[3 * i + 2], 1 + 4 * coords[3 * i + 2], 1e-4);
  EXPECT_FALSE(VXQuadraticInterpolationAndDerivatives(VXScalarGrid(), mol, values, gradients));
  // Of the flat form a flag decides what is left outside.
  for (const int flag : {0, 1, 7}) {
    std::array<float, 4> found = {untouched, untouched, untouched, untouched}, expected = found;
    if (flag == 0) expected = {};
    vi_quadratic_interpolation_and_derivativates(&coords[3], 1, found.data(), &found[1],
                                                 record.grid, flag);
    EXPECT_EQ(found, expected);
  }
}

}  // namespace
