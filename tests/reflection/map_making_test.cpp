#include <gtest/gtest.h>

#include <cmath>   // for cos, sin, sqrt
#include <limits>  // for numeric_limits
#include <random>  // for mt19937

#include "reflection/made_crystal.h"
#include "support/messages.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_making.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
using vxgrid_test::CrystalCase;
using vxgrid_test::Hkl;
using vxgrid_test::MadeCrystal;
using vxgrid_test::two_pi;

struct Coefficient {
  Hkl hkl;
  float amplitude;
  float phase;
};

const VXXtal::VXUnitCell& triclinic_cell() {
  static const VXXtal::VXUnitCell cell(11, 13, 17, 80, 95, 104);
  return cell;
}

VXReflection reflections_of(const std::vector<Coefficient>& list,
                            const VXXtal::VXUnitCell& cell = triclinic_cell()) {
  VXReflection set;
  const auto n = static_cast<unsigned int>(list.size());
  std::vector<int> h, k, l;
  std::vector<float> amplitude, phase;
  for (const Coefficient& coefficient : list) {
    h.push_back(coefficient.hkl[0]);
    k.push_back(coefficient.hkl[1]);
    l.push_back(coefficient.hkl[2]);
    amplitude.push_back(coefficient.amplitude);
    phase.push_back(coefficient.phase);
  }
  set.SetCount(n);
  set.SetHKL(h.data(), k.data(), l.data(), n);
  set.SetFobs(amplitude.data(), n);
  set.SetPhase(phase.data(), n);
  set.SetSymmetry(VXXtal::VXSymmetry(1, cell));
  return set;
}

float value_at(const VXSkewGrid& grid, unsigned int x, unsigned int y, unsigned int z) {
  return grid.GetValues()[x + grid.GetXDim() * (y + grid.GetYDim() * z)];
}

// The Fourier sum at a fractional point, Friedel mates included.
double fourier_sum(const std::vector<Coefficient>& list, double x, double y, double z) {
  double sum = 0;
  for (const Coefficient& c : list) {
    const double turn = two_pi * (c.hkl[0] * x + c.hkl[1] * y + c.hkl[2] * z);
    sum += 2 * c.amplitude * std::cos(c.phase * two_pi / 360 - turn);
  }
  return sum / triclinic_cell().GetVolume();
}

void expect_map_of(const std::vector<Coefficient>& given, const std::vector<Coefficient>& summed) {
  VXSkewGrid grid;
  ASSERT_TRUE(reflections_of(given).MakeMap(grid, VXMTZMapType::Fo));
  const unsigned int nx = grid.GetXDim() - 1, ny = grid.GetYDim() - 1, nz = grid.GetZDim() - 1;
  const double scale = 1 / triclinic_cell().GetVolume();
  for (unsigned int z = 0; z <= nz; ++z)
    for (unsigned int y = 0; y <= ny; ++y)
      for (unsigned int x = 0; x <= nx; ++x)
        ASSERT_NEAR(value_at(grid, x, y, z),
                    fourier_sum(summed, 1.0 * x / nx, 1.0 * y / ny, 1.0 * z / nz), 2e-5 * scale)
            << x << " " << y << " " << z;
}

TEST(MakeMap, is_the_fourier_sum_with_friedel_mates) {
  expect_map_of({{{1, 0, 0}, 10, 0}}, {{{1, 0, 0}, 10, 0}});    // 2F/V cos(2 pi x)
  expect_map_of({{{1, 0, 0}, 10, 90}}, {{{1, 0, 0}, 10, 90}});  // 2F/V sin(2 pi x)
  expect_map_of({{{2, -3, 1}, 3, 40}}, {{{2, -3, 1}, 3, 40}});
  expect_map_of({{{0, 2, -3}, 3, 40}}, {{{0, 2, -3}, 3, 40}});  // the plane h = 0
  expect_map_of({{{0, -2, 0}, 3, 40}}, {{{0, -2, 0}, 3, 40}});  // with l = 0 both halves are there
  expect_map_of({{{3, 2, 0}, 3, 40}}, {{{3, 2, 0}, 3, 40}});
  expect_map_of({{{-1, 2, 3}, 3, 40}}, {{{1, -2, -3}, 3, -40}});
  expect_map_of({{{1, 2, 3}, 3, 40}, {{-1, -2, -3}, 3, -40}}, {{{1, 2, 3}, 3, 40}});
  expect_map_of({{{1, 2, 3}, 5, 10}, {{1, 2, 3}, 3, 40}}, {{{1, 2, 3}, 3, 40}});  // the later wins
  // F(000) has no mate: half of the sum above.
  expect_map_of({{{0, 0, 0}, 4, 0}, {{1, 1, 1}, 3, 70}}, {{{0, 0, 0}, 2, 0}, {{1, 1, 1}, 3, 70}});
}

TEST(MakeMap, leaves_out_reflections_without_amplitude_or_phase) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  expect_map_of({{{1, 2, 3}, 3, 40}, {{2, 0, 1}, nan, 40}, {{0, 1, 1}, 3, nan}},
                {{{1, 2, 3}, 3, 40}});
}

TEST(MakeMap, sizes_the_map_from_the_largest_indices) {
  vxgrid_test::MessageCapture messages(VXErrorLevel::Verbose);
  VXSkewGrid grid;
  ASSERT_TRUE(reflections_of({{{10, 0, 0}, 1, 0}, {{0, -12, 0}, 1, 0}, {{0, 0, 15}, 1, 0}})
                  .MakeMap(grid, VXMTZMapType::Fo));
  EXPECT_EQ(grid.GetXDim(), 29U);
  EXPECT_EQ(grid.GetYDim(), 33U);
  EXPECT_EQ(grid.GetZDim(), 41U);
  using Level = VXErrorLevel;
  ASSERT_EQ(messages.messages.size(), 5U);
  EXPECT_TRUE(messages.has(Level::Verbose, "Hmax 11, kmax 13, lmax 16"));
  EXPECT_TRUE(messages.has(Level::Verbose, "Dimensions 27 32 40"));
  EXPECT_TRUE(messages.has(Level::Debug, "Using FFTW"));
  EXPECT_TRUE(messages.has(Level::Debug, "Final Dimensions 28 32 40"));
  EXPECT_EQ(messages.messages[4].second.rfind("Time elapsed for fft ", 0), 0U);
}

TEST(MakeMap, closes_the_map_with_copies_of_the_first_planes) {
  VXSkewGrid grid;
  ASSERT_TRUE(
      reflections_of({{{3, -2, 4}, 7, 20}, {{1, 5, 2}, 3, 130}}).MakeMap(grid, VXMTZMapType::Fo));
  const unsigned int nx = grid.GetXDim() - 1, ny = grid.GetYDim() - 1, nz = grid.GetZDim() - 1;
  for (unsigned int z = 0; z <= nz; ++z)
    for (unsigned int y = 0; y <= ny; ++y)
      for (unsigned int x = 0; x <= nx; ++x)
        ASSERT_EQ(value_at(grid, x, y, z), value_at(grid, x % nx, y % ny, z % nz));
}

TEST(MakeMap, overwrites_the_grid_and_puts_its_first_point_at_the_origin_of_the_cell) {
  VXSkewGrid grid;
  grid.SetDim(3, 3, 3);
  grid.SetMid(5, 6, 7);
  grid.SetFloatData("stale", 1);
  VXReflection set = reflections_of({{{3, -2, 4}, 7, 20}});
  set.SetRESO(0.01, 0.25);
  ASSERT_TRUE(set.MakeMap(grid, VXMTZMapType::Fo));

  EXPECT_FALSE(grid.HasData("stale"));
  EXPECT_EQ(grid.GetTitle(), "FT: grid");
  EXPECT_EQ(grid.GetReentrant(), 7U);
  EXPECT_EQ(grid.GetSpaceGroup(), 1U);
  unsigned int maptype = 99;
  EXPECT_TRUE(grid.GetData("MapType", maptype));
  EXPECT_EQ(maptype, VXMTZMapType::Fo);
  EXPECT_EQ(grid.GetDoubleData("resolution"), 2.0);
  VXXtal::VXSymmetry symmetry;
  ASSERT_TRUE(grid.GetData("vx_symm", symmetry));
  EXPECT_TRUE(symmetry.cell().equalsCell(triclinic_cell(), 0));
  unsigned int nx = 0, ny = 0, nz = 0;
  grid.GetImpl().GetImpl().GetUnitSpacing(nx, ny, nz);
  EXPECT_EQ(nx + 1, grid.GetXDim());
  EXPECT_EQ(ny + 1, grid.GetYDim());
  EXPECT_EQ(nz + 1, grid.GetZDim());

  float x = 0, y = 0, z = 0;
  ASSERT_TRUE(grid.ElementToSpatialCoord(0, x, y, z));
  EXPECT_NEAR(x, 0, 1e-5);
  EXPECT_NEAR(y, 0, 1e-5);
  EXPECT_NEAR(z, 0, 1e-5);
  // The last point is the far corner of the cell.
  ASSERT_TRUE(grid.ElementToSpatialCoord(grid.GetSize() - 1, x, y, z));
  const gemmi::Position corner =
      gemmi::UnitCell(11, 13, 17, 80, 95, 104).orthogonalize(gemmi::Fractional(1, 1, 1));
  EXPECT_NEAR(x, corner.x, 2e-5);
  EXPECT_NEAR(y, corner.y, 2e-5);
  EXPECT_NEAR(z, corner.z, 2e-5);

  set.SetTitle("lysozyme");
  ASSERT_TRUE(set.MakeMap(grid, VXMTZMapType::Fo));
  EXPECT_EQ(grid.GetTitle(), "FT: lysozyme");
}

TEST(MakeMap, refuses_in_silence_and_leaves_the_grid_alone) {
  vxgrid_test::MessageCapture messages;
  VXSkewGrid grid;
  grid.SetTitle("untouched");
  const std::vector<Coefficient> one = {{{1, 0, 0}, 1, 0}};
  EXPECT_FALSE(VXReflection().MakeMap(grid, VXMTZMapType::Fo));
  EXPECT_FALSE(reflections_of(one, VXXtal::VXUnitCell()).MakeMap(grid, VXMTZMapType::Fo));
  const VXXtal::VXUnitCell tiny(0.02F, 0.02F, 0.02F, 90, 90, 90);
  EXPECT_FALSE(reflections_of(one, tiny).MakeMap(grid, VXMTZMapType::Fo));
  const VXXtal::VXUnitCell impossible(10, 10, 10, 30, 30, 120);  // has no volume
  EXPECT_FALSE(reflections_of(one, impossible).MakeMap(grid, VXMTZMapType::Fo));
  EXPECT_FALSE(reflections_of(one).MakeMap(grid, VXMTZMapType::Fwt));
  EXPECT_FALSE(reflections_of(one).MakeMap(grid, VXMTZMapType::None));
  // 2.5 (h + 1) points on each axis: more than 2^31 - 1 in all, or on one.
  EXPECT_FALSE(reflections_of({{{800, 800, 800}, 1, 0}}).MakeMap(grid, VXMTZMapType::Fo));
  const int huge = std::numeric_limits<int>::min();
  EXPECT_FALSE(reflections_of({{{huge, 0, huge}, 1, 0}}).MakeMap(grid, VXMTZMapType::Fo));
  EXPECT_TRUE(messages.messages.empty());
  EXPECT_EQ(grid.GetTitle(), "untouched");
}

class MapOf : public testing::TestWithParam<CrystalCase> {};

INSTANTIATE_TEST_SUITE_P(EverySystem, MapOf, testing::ValuesIn(vxgrid_test::crystal_cases()));

TEST_P(MapOf, an_expanded_asymmetric_unit_is_the_density_of_all_atoms_and_has_their_symmetry) {
  const MadeCrystal crystal(GetParam(), 2.0);
  VXReflection set = crystal.reflections(crystal.unique);
  ASSERT_TRUE(set.Expand());
  VXSkewGrid grid;
  ASSERT_TRUE(set.MakeMap(grid, VXMTZMapType::Fc));
  const unsigned int nx = grid.GetXDim() - 1, ny = grid.GetYDim() - 1, nz = grid.GetZDim() - 1;

  double sum_of_squares = 0;
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    sum_of_squares += double{grid.GetValues()[i]} * grid.GetValues()[i];
  const double rms = std::sqrt(sum_of_squares / grid.GetSize());

  std::mt19937 random(7);
  for (int sample = 0; sample < 40; ++sample) {
    const auto below = [&random](unsigned int n) {
      return static_cast<unsigned int>(random() % n);
    };
    const unsigned int x = below(nx), y = below(ny), z = below(nz);
    const float value = value_at(grid, x, y, z);
    for (const gemmi::Op mate : crystal.ops) {
      const auto at = mate.apply_to_xyz({1.0 * x / nx, 1.0 * y / ny, 1.0 * z / nz});
      ASSERT_NEAR(value, crystal.density(at[0], at[1], at[2]), 2e-3 * rms) << mate.triplet();
    }
  }
}

// Opens the placement that derived classes may use.
class Placement : public VXReflectionImpl {
 public:
  using VXReflectionImpl::FillGrid;
};

TEST(FillGrid, puts_the_half_with_positive_h_into_two_planes_with_x_fastest) {
  Placement set;
  static_cast<VXReflectionImpl&>(set) =
      *reflections_of(
           {{{1, -2, 3}, 2, 90}, {{-2, 1, 0}, 3, 0}, {{0, 1, -1}, 4, 90}, {{9, 0, 0}, 5, 0}})
           .GetImpl();
  const int nx = 4, ny = 5, nz = 7;
  std::vector<float> a(nx * ny * nz), b(a.size());
  set.FillGrid(a.data(), b.data(), nx, ny, nz, VXMTZMapType::Fo);
  const auto at = [&](int h, int k, int l) {
    return static_cast<std::size_t>(h + nx * (k + ny * l));
  };
  EXPECT_NEAR(b[at(1, 3, 3)], 2, 1e-6);
  EXPECT_NEAR(a[at(2, 4, 0)], 3, 1e-6);
  EXPECT_NEAR(b[at(0, 1, 6)], 4, 1e-6);
  EXPECT_NEAR(b[at(0, 4, 1)], -4, 1e-6);
  EXPECT_NEAR(a[at(1, 2, 0)], 5, 1e-6);  // h = 9 runs into the next rows, as offsets do
}

}  // namespace
