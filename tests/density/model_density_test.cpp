// Model density against the closed form of its Gaussians, on orthogonal and skewed lattices.
#include "vxgrid/density/model_density.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <gemmi/it92.hpp>
#include <gemmi/unitcell.hpp>
#include <numbers>
#include <vector>

#include "support/messages.h"
#include "support/models.h"
#include "vxgrid/crystal/crystal_images.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;
constexpr double pi = std::numbers::pi;

/// Density of one atom at a squared distance, from gemmi's own table of the same coefficients.
double closed_form(gemmi::El element, double b_factor, double occupancy, double r2) {
  const auto& f = gemmi::IT92<double>::get(element);
  double rho = 0;
  for (int i = 0; i < 5; ++i) {
    const double a = i < 4 ? f.a(i) : f.c(), b = (i < 4 ? f.b(i) : 0.0) + b_factor;
    rho += occupancy * a * std::pow(4 * pi / b, 1.5) * std::exp(-4 * pi * pi / b * r2);
  }
  return rho;
}

/// Where the widest of the five Gaussians is at 1/e.
double reach(gemmi::El element, double b_factor) {
  double widest = 0;
  for (int i = 0; i < 4; ++i)
    widest = std::max(widest, gemmi::IT92<double>::get(element).b(i));
  return std::sqrt((b_factor + widest) / (4 * pi * pi));
}

VXSkewGrid crystal_grid(const std::array<float, 6>& cell, const std::array<unsigned int, 3>& n) {
  VXSkewGrid grid;
  grid.SetDim(n[0] + 1, n[1] + 1, n[2] + 1);
  grid.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5], n[0], n[1], n[2]);
  const gemmi::UnitCell frame(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  const gemmi::Position mid = frame.orthogonalize(gemmi::Fractional(0.5, 0.5, 0.5));
  grid.SetMid(static_cast<float>(mid.x), static_cast<float>(mid.y), static_cast<float>(mid.z));
  return grid;
}

TEST(ModelDensity, is_the_closed_form_within_the_reach_and_zero_beyond) {
  const ModelAtom atoms[] = {{8, 5.13f, 4.71f, 5.02f, 15, 1, 0.5f}};
  const struct {
    const char* what;
    std::array<float, 6> cell;
    std::array<unsigned int, 3> n;
  } cases[] = {
      {"three different steps", {10, 11, 12, 90, 90, 90}, {40, 30, 35}},
      {"triclinic", {12, 11, 12, 80, 95, 75}, {40, 30, 45}},
  };
  for (const auto& c : cases) {
    VXSkewGrid grid = crystal_grid(c.cell, c.n);
    ASSERT_TRUE(VXScatterToGrid(grid, make_model(atoms)));
    const double limit = reach(gemmi::El::O, 15);
    unsigned int inside = 0, wrong = 0, left_out = 0;
    for (unsigned int e = 0; e < grid.GetSize(); ++e) {
      float x, y, z;
      grid.ElementToSpatialCoord(e, x, y, z);
      const gemmi::Position d(x - 5.13f, y - 4.71f, z - 5.02f);
      const double value = grid.GetValues()[e], r = d.length();
      if (r >= limit + 1e-5) {
        if (value != 0) ++wrong;
        continue;
      }
      ++inside;
      const double expected = closed_form(gemmi::El::O, 15, 0.5, r * r);
      if (value == 0)
        ++left_out;
      else if (std::fabs(value - expected) > 2e-5 * expected)
        ++wrong;
    }
    EXPECT_EQ(wrong, 0u) << c.what;
    EXPECT_GT(inside, 100u) << c.what;
    // The box of lattice steps may cut the sphere where the axes are not at right angles.
    EXPECT_LE(left_out, c.cell[5] == 90 ? 0u : inside / 5) << c.what;
  }
}

TEST(ModelDensity, adds_symmetry_mates_with_the_home_copy_listed_once_more) {
  const std::array<float, 6> cell = {14, 15, 16, 90, 100, 90};
  const ModelAtom atoms[] = {{6, 4.1f, 3.2f, 5.3f, 12}};
  VXGraphMol mol = make_model(atoms);
  const VXXtal::VXSymmetry symmetry(
      "P 1 21 1", VXXtal::VXUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]));
  ASSERT_TRUE(VXXtal::VXXtalSymmetry::SetSymmetry(mol, symmetry, false));
  VXSkewGrid grid = crystal_grid(cell, {42, 45, 48});
  ASSERT_TRUE(VXScatterToGrid(grid, mol));

  const gemmi::UnitCell frame(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  const gemmi::Fractional home = frame.fractionalize(gemmi::Position(4.1, 3.2, 5.3));
  const gemmi::Fractional mate(1 - home.x, home.y + 0.5, 1 - home.z);  // -x, y+1/2, -z
  const auto value_near = [&](const gemmi::Fractional& f) {
    const auto index = [](double at, unsigned int n) {
      return static_cast<unsigned int>(std::lround(at * n));
    };
    return (index(f.z, 48) * 46 + index(f.y, 45)) * 43 + index(f.x, 42);
  };
  for (const auto& [where, copies] : {std::pair(home, 2.0), std::pair(mate, 1.0)}) {
    const unsigned int e = value_near(where);
    float x, y, z;
    grid.ElementToSpatialCoord(e, x, y, z);
    const double r2 = frame.orthogonalize(where).dist_sq(gemmi::Position(x, y, z));
    const double expected = copies * closed_form(gemmi::El::C, 12, 1, r2);
    EXPECT_NEAR(grid.GetValues()[e], expected, 1e-3 * expected) << copies;
  }
}

TEST(ModelDensity, leaves_out_dummies_and_points_off_the_grid) {
  const ModelAtom atoms[] = {{0, 0, 0, 0}, {6, 500, 0, 0}, {6, 0, -1e30f, 0}};
  VXScalarGrid grid(9, 9, 9, 0, 0, 0, 0.5f, "");
  std::vector<float> old(grid.GetSize(), 3.0f);
  grid.SetValues(old.data(), grid.GetSize());
  grid.SetType(VXGridType::RegularMap);
  EXPECT_TRUE(VXScatterToGrid(grid, make_model(atoms)));
  EXPECT_EQ(grid.GetType(), VXGridType::Generic);
  for (unsigned int e = 0; e < grid.GetSize(); ++e)
    ASSERT_EQ(grid[e], 0.0f);

  VXScalarGrid point(1, 1, 1, 0, 0, 0, 0.5f, "");
  EXPECT_FALSE(VXScatterToGrid(point, make_model(atoms)));
  VXSkewGrid empty;
  EXPECT_FALSE(VXScatterToGrid(empty, make_model(atoms)));
}

TEST(ModelDensity, on_a_made_grid_needs_residues_and_covers_the_atoms) {
  VXGraphMol bare;
  bare.NewAtom(6);
  VXSkewGrid grid;
  {
    const vxgrid_test::MessageCapture messages;
    EXPECT_FALSE(VXMakeGaussianScatterGrid(grid, bare, 0.5));
    EXPECT_TRUE(messages.warned(
        "Input molecule does not have residues, cannot retrieve BFactors or Occupancies"));
  }
  const ModelAtom atoms[] = {{6, 1, 2, 3}, {7, 4, 2, 3}};
  ASSERT_TRUE(VXMakeGaussianScatterGrid(grid, make_model(atoms), 0.5));
  EXPECT_EQ(grid.GetXDim(), 15u);  // (3 + 4)/0.5 + 1
  EXPECT_EQ(grid.GetYDim(), 9u);
  EXPECT_EQ(grid.GetXMid(), 2.5f);
  EXPECT_GT(grid.GetValues()[(4 * 9 + 4) * 15 + 4], 1.0f);  // on the carbon
}

TEST(ModelDensity, defaults_replace_or_keep_as_the_flags_say) {
  const ModelAtom atoms[] = {{6, 0, 0, 0, 12, 1, 0.5f}, {6, 0, 0, 0, 0, 1, 0}};
  const struct {
    unsigned int flags;
    std::array<float, 2> b, q;
  } cases[] = {{0, {20, 20}, {1, 1}},
               {scatter_keep_bfactor, {12, 20}, {1, 1}},
               {scatter_keep_occupancy, {20, 20}, {0.5f, 1}},
               {scatter_keep_bfactor | scatter_keep_occupancy, {12, 20}, {0.5f, 1}}};
  for (const auto& c : cases) {
    VXGraphMol mol = make_model(atoms);
    VXSetScatterDefaults(mol, 20.0, 1.0, c.flags);
    for (unsigned int i = 0; i < 2; ++i) {
      const VXResidue& residue = VXAtomGetResidue(mol.GetAtom(i));
      EXPECT_EQ(residue.GetBFactor(), c.b[i]) << c.flags << ' ' << i;
      EXPECT_EQ(residue.GetOccupancy(), c.q[i]) << c.flags << ' ' << i;
      EXPECT_EQ(residue.GetName(), "ALA");
    }
  }
}

}  // namespace
}  // namespace VXCore
