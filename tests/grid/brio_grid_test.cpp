#include "vxgrid/grid/brio_grid.h"

#include <gtest/gtest.h>
#include <unistd.h>  // for sysconf

#include <array>               // for array
#include <cmath>               // for sqrt
#include <fstream>             // for ifstream
#include <gemmi/math.hpp>      // for Vec3
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <limits>              // for numeric_limits
#include <numeric>             // for iota
#include <utility>             // for move, pair
#include <vector>              // for vector

#include "support/grid_probes.h"
#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {
namespace {

using vxgrid_test::cell_of;
using vxgrid_test::place_of;

struct Cell {
  float a, b, c, alpha, beta, gamma;
  unsigned int nx, ny, nz;
};

/// A triclinic cell with three edges, angles and samplings, and relatives of it.
const Cell cells[] = {{31.5f, 42.25f, 57.75f, 78.5f, 97.25f, 112.0f, 30, 48, 50},
                      {40, 50, 60, 90, 90, 90, 40, 100, 60},
                      {63, 63, 110, 90, 90, 120, 60, 60, 90},
                      {44, 51, 38, 90, 103.5f, 90, 50, 50, 36}};

VXBrioGrid crystal_grid(const Cell& cell) {
  VXBrioGrid grid;
  grid.SetDim(5, 4, 3);
  grid.SetMid(11.0f, -7.0f, 3.5f);
  grid.SetUnitCell(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma, cell.nx, cell.ny,
                   cell.nz);
  return grid;
}

VXScalarGrid scalar_sample() {
  const float values[6] = {1, 2, 3, 4, 5, 6};
  VXScalarGrid grid(3, 2, 1, 10.0f, 20.0f, 30.0f, 0.5f, "scalar", values);
  grid.SetType(VXGridType::RegularMap);
  grid.SetIntData("of scalar", 1);
  return grid;
}

TEST(BrioGrid, CountsASinglePointAsNoValues) {
  VXBrioGrid grid;
  EXPECT_FALSE(grid);
  EXPECT_EQ(grid.GetValues(), nullptr);
  const float values[2] = {3, 4};
  ASSERT_TRUE(grid.SetDim(2, 1, 1));
  ASSERT_TRUE(grid.SetValues(values, 2));
  EXPECT_TRUE(grid);
  EXPECT_EQ(grid.GetValues()[1], 4.0f);
  grid.SetDim(1, 1, 1);
  ASSERT_TRUE(grid.SetValues(values, 1));
  EXPECT_FALSE(grid);
  EXPECT_EQ(grid.GetValues(), nullptr);
  EXPECT_EQ(grid.GetFloats()[0][0], 3.0f);
}

TEST(BrioGrid, CopiesEverythingAndClearsEverything) {
  VXBrioGrid grid = crystal_grid(cells[0]);
  grid.SetTitle("crystal");
  grid.SetFloatsMultiple(2);
  grid.GetFloats()[1][7] = 5.0f;
  grid.GetIntegers()[0][3] = -2;
  grid.SetYReentrant();
  grid.SetSpaceGroup(19);
  grid.SetType(VXGridType::Ux);
  grid.SetFloatData("SIGMA", 0.25f);

  VXBrioGrid copy;
  copy = grid;
  copy = static_cast<const VXBrioGrid&>(copy);
  EXPECT_EQ(copy.GetTitle(), "crystal");
  EXPECT_EQ(copy.GetFloats()[1][7], 5.0f);
  EXPECT_EQ(copy.GetIntegers()[0][3], -2);
  EXPECT_EQ((std::array{copy.GetReentrant(), copy.GetSpaceGroup(), copy.GetType()}),
            (std::array{2u, 19u, grid.GetType()}));
  EXPECT_EQ(copy.GetFloatData("SIGMA"), 0.25f);
  EXPECT_EQ(place_of(copy, 59), place_of(grid, 59));

  const float* values = copy.GetValues();
  const VXBrioGrid moved(std::move(copy));
  EXPECT_EQ(moved.GetValues(), values);
  EXPECT_EQ(moved.GetSpaceGroup(), 19u);
  grid.Clear();
  for (VXBrioGrid* empty : {&grid, &copy}) {
    EXPECT_FALSE(*empty);
    EXPECT_FALSE(empty->GetOrientationSet() || empty->HasUnitCell() || empty->HasSpaceGroup() ||
                 empty->HasData("SIGMA") || empty->IsTitleSet());
    EXPECT_EQ(empty->GetFloatsMultiple(), 1);
    // It is a grid like any other, with its one field.
    ASSERT_TRUE(empty->SetDim(2, 2, 2));
    EXPECT_NE(empty->GetValues(), nullptr);
  }
}

TEST(BrioGrid, TakesFromAScalarGridWhatItHasAndKeepsTheRest) {
  VXBrioGrid grid = crystal_grid(cells[0]);
  grid.SetReentrant(true);
  grid.SetSpaceGroup(4);
  grid.SetIntData("of brio", 2);
  grid.SetFloatsMultiple(2);
  grid = scalar_sample();
  EXPECT_EQ(grid.GetTitle(), "scalar");
  EXPECT_EQ(grid.GetType(), VXGridType::RegularMap);
  EXPECT_EQ(grid.GetReentrant(), 7u);
  EXPECT_EQ(grid.GetSpaceGroup(), 4u);
  EXPECT_TRUE(grid.HasData("of scalar") && grid.HasData("of brio"));
  EXPECT_EQ(grid.GetFloatsMultiple(), 2);
  ASSERT_EQ(grid.GetSize(), 6u);
  EXPECT_EQ(grid.GetValues()[4], 5.0f);
  EXPECT_EQ(grid.GetIntegers().GetSize(), 6u);
  EXPECT_EQ(grid.GetIntegers().GetYMid(), 20.0f);
  EXPECT_EQ(grid.GetIntegers().GetSpacing(), 0.5f);

  unsigned int nx = 0, ny = 0, nz = 0;
  EXPECT_TRUE(grid.GetUnitSpacing(nx, ny, nz));
  EXPECT_EQ(cell_of(grid), (std::array{1.5f, 1.0f, 0.5f, 90.0f, 90.0f, 90.0f}));
  EXPECT_EQ((std::array{nx, ny, nz}), (std::array{3u, 2u, 1u}));
  EXPECT_TRUE(grid.GetOrientationSet() && grid.IsRegular());

  grid.SetType(VXGridType::Dorn);
  grid = static_cast<const VXFixedGrid<float>&>(scalar_sample());
  EXPECT_EQ(grid.GetType(), VXGridType::Dorn);
}

TEST(BrioGrid, TakesStoresWithAllTheirFields) {
  VXMultiGrid<float> floats;
  floats.SetNumGrids(3);
  floats.SetDim(2, 2, 2);
  floats.SetSpacing(0.75f);
  floats[2][7] = 9.0f;
  VXMultiGrid<int> integers;
  integers.SetDim(2, 2, 2);
  integers[0][1] = 6;
  VXBrioGrid both(floats, integers);
  EXPECT_EQ(both.GetIntegers()[0][1], 6);
  both = floats;
  EXPECT_EQ(both.GetFloatsMultiple(), 3);
  EXPECT_EQ(both.GetFloats()[2][7], 9.0f);
  EXPECT_EQ(both.GetIntegers().GetSpacing(), 0.75f);
  // One of its own fields too.
  both = both.GetFloats()[2];
  EXPECT_EQ(both.GetValues()[7], 9.0f);
}

TEST(BrioGrid, NeverDropsFieldsWhenTheirCountShrinks) {
  VXBrioGrid grid;
  grid.SetDim(2, 2, 2);
  EXPECT_TRUE(grid.SetFloatsMultiple(3));
  EXPECT_TRUE(grid.SetFloatsMultiple(2));
  EXPECT_EQ(grid.GetFloats().GetNumGrids(), 3u);
  EXPECT_EQ(grid.GetFloatsMultiple(), 2);
  EXPECT_FALSE(grid.SetIntegersMultiple(4000000000u));
  EXPECT_EQ(grid.GetIntegersMultiple(), 1);
}

double resident_megabytes() {
  std::ifstream statm("/proc/self/statm");
  double total = 0, resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

TEST(BrioGrid, SpendsNoMemoryOnAnIntegerFieldThatNobodyTouches) {
  if (!std::ifstream("/proc/self/statm")) GTEST_SKIP() << "resident memory is read from /proc";
  const double before = resident_megabytes();
  VXBrioGrid grid;
  grid.SetDim(256, 256, 256);  // 64 MiB of floats and as many of integers
  const VXBrioGrid copy(grid);
  EXPECT_LT(resident_megabytes() - before, 16.0);
  VXBrioGrid assigned;
  assigned = static_cast<const VXFixedGrid<float>&>(copy.GetFloats()[0]);
  EXPECT_EQ(assigned.GetIntegers().GetSize(), 256u * 256u * 256u);
  EXPECT_LT(resident_megabytes() - before, 64.0 + 16.0);  // the floats were written
}

// One lattice step has to be the crystal's fractional step 1/n, orthogonalised by somebody else.
TEST(BrioGrid, StepsAlongTheCellEdgesAsGemmiOrthogonalisesThem) {
  for (const Cell& cell : cells) {
    const VXBrioGrid grid = crystal_grid(cell);
    const gemmi::UnitCell other(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma);
    const auto first = place_of(grid, 0), last = place_of(grid, grid.GetSize() - 1);
    for (unsigned int e = 0; e < grid.GetSize(); ++e) {
      unsigned int i = 0, j = 0, k = 0;
      ASSERT_TRUE(grid.ElementToGridIdx(e, i, j, k));
      EXPECT_EQ(i + 5 * (j + 4 * k), e);
      const gemmi::Position want = other.orthogonalize(gemmi::Fractional(
          double{1} * i / cell.nx, double{1} * j / cell.ny, double{1} * k / cell.nz));
      for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(place_of(grid, e)[axis] - first[axis], want.at(static_cast<int>(axis)), 3e-6);
    }
    // The mid is the centre of the lattice whatever its orientation.
    const float mid[3] = {11.0f, -7.0f, 3.5f};
    for (std::size_t axis = 0; axis < 3; ++axis)
      EXPECT_NEAR((first[axis] + last[axis]) / 2, mid[axis], 2e-6);
    unsigned int none = 0;
    EXPECT_FALSE(grid.ElementToGridIdx(60, none, none, none));
    EXPECT_EQ(place_of(grid, 60)[0], 1e30f);
  }
}

TEST(BrioGrid, TakesTheSmallestStepAsSpacingAndTheOthersIntoTheDiagonal) {
  VXBrioGrid grid;
  std::array<float, 9> m{};
  grid.SetUnitCell(40, 50, 60, 90, 90, 90, 40, 100, 60);
  ASSERT_TRUE(grid.GetOrientation(m.data()));
  EXPECT_EQ(grid.GetSpacing(), 0.5f);
  EXPECT_EQ((std::array{m[0], m[4], m[8]}), (std::array{2.0f, 1.0f, 2.0f}));
  EXPECT_FALSE(grid.IsRegular());
  grid.SetUnitCell(40, 50, 60, 90, 90, 90, 40, 50, 60);
  EXPECT_TRUE(grid.IsRegular());
  EXPECT_TRUE(grid.SetUnitCell(10, 10, 10, 90, 90, 90, 0, 20, 40));
  EXPECT_EQ(grid.GetSpacing(), 0.25f);
}

TEST(BrioGrid, CallsALatticeRegularByItsDiagonalAlone) {
  VXBrioGrid grid;
  grid.SetUnitCell(31, 42, 57, 78, 97, 112, 30, 48, 50);
  EXPECT_FALSE(grid.IsRegular());
  grid.SetOrientationSet(false);
  EXPECT_TRUE(grid.IsRegular());
  const float sheared[9] = {1, 0.5f, 0, 0, 1, 0.25f, 0, 0, 1};
  EXPECT_TRUE(grid.SetOrientation(sheared));
  EXPECT_TRUE(grid.GetOrientationSet() && grid.IsRegular());
  EXPECT_FALSE(grid.SetOrientation(nullptr));
  float unset[9] = {7};
  grid.SetOrientationSet(false);
  EXPECT_FALSE(grid.GetOrientation(unset));
  EXPECT_EQ(unset[0], 7.0f);
}

TEST(BrioGrid, GivesAllPlacesAtOnceAsItGivesThemSingly) {
  for (const bool oriented : {true, false}) {
    VXBrioGrid grid = crystal_grid(cells[0]);
    grid.SetOrientationSet(oriented);
    std::vector<float> coords(5, 99.0f);
    ASSERT_TRUE(grid.SpatialCoords(coords));
    ASSERT_EQ(coords.size(), 3u * 60u);
    for (unsigned int e = 0; e < 60; ++e)
      EXPECT_EQ(place_of(grid, e),
                (std::array{coords[3 * e], coords[3 * e + 1], coords[3 * e + 2]}));
  }
}

TEST(BrioGrid, ShiftsByWholeGridsAlongItsLattice) {
  for (const Cell& cell : cells) {
    VXBrioGrid grid = crystal_grid(cell);
    grid.SetDim(cell.nx, cell.ny, cell.nz);  // one whole cell
    const gemmi::UnitCell other(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma);
    for (const std::array<int, 3>& n : {std::array{1, 0, 0}, {0, -2, 0}, {2, 1, 3}}) {
      float dx = 0, dy = 0, dz = 0;
      ASSERT_TRUE(grid.PackingTransform(n[0], n[1], n[2], dx, dy, dz));
      const gemmi::Position want = other.orthogonalize(gemmi::Fractional(n[0], n[1], n[2]));
      EXPECT_LT(want.dist({dx, dy, dz}), 1e-4);
    }
    float dx = 1, dy = 1, dz = 1;
    EXPECT_TRUE(grid.PackingTransform(0, 0, 0, dx, dy, dz));
    EXPECT_EQ((std::array{dx, dy, dz}), (std::array{0.0f, 0.0f, 0.0f}));
  }
  VXBrioGrid unset;
  unset.SetDim(2, 2, 2);
  float d = 0;
  int n = 0;
  EXPECT_FALSE(unset.PackingTransform(1, 1, 1, d, d, d));
  EXPECT_FALSE(unset.SpatialCoordToPacking(1, 1, 1, n, n, n));
}

// 5 points on x, first point at -2, so that t = (x + 2)/5 whatever the spacing.
TEST(BrioGrid, NumbersImagesByPointsRoundingDownAndWholeNumbersOneLower) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::pair<float, int> images[] = {{-2, -1},    {-1.9f, 0},   {5.5f, 1}, {8, 2},
                                          {-2.1f, -1}, {-7, -2},     {-12, -3}, {-8, -2},
                                          {1e30f, 0},  {-1e30f, -1}, {nan, -1}};
  VXBrioGrid grid;
  grid.SetDim(5, 4, 4);
  grid.SetSpacing(1.0f);
  int i = 9, j = 9, k = 9;
  for (const auto& [x, image] : images) {
    ASSERT_TRUE(grid.SpatialCoordToPacking(x, 0, 0, i, j, k));
    EXPECT_EQ(i, image) << x;
  }
  grid.SetSpacing(2.0f);  // the first point moves to -4, the unit of t stays
  ASSERT_TRUE(grid.SpatialCoordToPacking(3.5f, 0, 0, i, j, k));
  EXPECT_EQ(i, 1);
  // A row of the orientation is a direction: its length cancels to the first power only.
  const float stretched[9] = {2, 0, 0, 0, 1, 0, 0, 0, 1};
  grid.SetOrientation(stretched);  // the first point moves to -8
  ASSERT_TRUE(grid.SpatialCoordToPacking(-0.5f, 0, 0, i, j, k));
  EXPECT_EQ(i, 1);
}

}  // namespace
}  // namespace VXCore
