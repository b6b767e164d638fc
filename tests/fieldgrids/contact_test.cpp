// Contact grids against direct sums over the atoms.
#include "vxgrid/fieldgrids/contact.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

#include "support/messages.h"
#include "support/models.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::MessageCapture;
using vxgrid_test::ModelAtom;
using Point = std::array<float, 3>;

// A bonded zigzag of heavy atoms with a hydrogen, whose far end comes back near its start.
VXGraphMol folded_chain() {
  VXGraphMol mol = make_model(std::vector<ModelAtom>{{6, 0, 0, 0},
                                                     {6, 1.5f, 0, 0.2f},
                                                     {7, 2.4f, 1.2f, 0},
                                                     {6, 2.0f, 2.6f, 0.3f},
                                                     {8, 0.7f, 3.1f, 0},
                                                     {6, -0.3f, 2.2f, 0.1f},
                                                     {1, -1.0f, -0.2f, 0}});
  for (unsigned int i = 0; i < 5; ++i)
    mol.NewBond(mol.GetAtom(i), mol.GetAtom(i + 1), 1);
  mol.NewBond(mol.GetAtom(0), mol.GetAtom(6), 1);
  return mol;
}

VXGraphMol ligand() {
  VXGraphMol mol = make_model(
      std::vector<ModelAtom>{{6, 1, 1, 1.9f}, {8, 2.1f, 1.5f, 2.3f}, {17, -0.4f, 0.2f, 2.4f}});
  VXAssignBondiVdWRadii(mol);
  return mol;
}

Point position_of(const VXMolBase& mol, unsigned int atom) {
  Point p{};
  mol.GetCoords(mol.GetAtom(atom), p.data());
  return p;
}

double distance(const Point& a, const Point& b) {
  return std::hypot(double{a[0]} - b[0], double{a[1]} - b[1], double{a[2]} - b[2]);
}

// 2.7 and the radius, as published: the volume of the Gaussian is a fixed multiple of the sphere's.
double potential(double radius, double d) {
  const double k = 2.7 / (radius * radius);
  const double height = std::sqrt(2.7 / M_PI) * 4.0 / 3.0 * 2.7;
  return d * std::sqrt(k) <= 2.0 ? height * std::exp(-k * d * d) : 0.0;
}

double potential_of(const VXMolBase& mol, unsigned int atom, const Point& p) {
  const double radius = double{VXGetBondiVdWRadius(mol.GetAtom(atom)->GetAtomicNum())};
  return potential(radius, distance(position_of(mol, atom), p));
}

double contact(double t, double g) {
  return t + g > 0 ? 2 * t * std::min(t, g) / (t + g) : 0.0;
}

// Holds a grid against `expected(point)`. A point that lies on the rim of a ball may fall either
// way by rounding; `on_rim(point)` says which to leave out. Gives how many were above 0.
int expect_values(const VXScalarGrid& grid, const std::function<double(const Point&)>& expected,
                  const std::function<bool(const Point&)>& on_rim, double tolerance) {
  int filled = 0;
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    Point p{};
    grid.ElementToSpatialCoord(i, p[0], p[1], p[2]);
    if (on_rim(p)) continue;
    const double value = expected(p);
    filled += value > 0;
    EXPECT_NEAR(double{grid[i]}, value, tolerance) << p[0] << " " << p[1] << " " << p[2];
  }
  return filled;
}

bool near_rim(const VXMolBase& mol, const Point& p) {
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    const double rim = 2.0 / std::sqrt(2.7) * double{VXGetBondiVdWRadius(atom->GetAtomicNum())};
    if (std::fabs(distance(position_of(mol, atom->GetIdx()), p) - rim) < 1e-5) return true;
  }
  return false;
}

TEST(Contact, a_potential_has_the_volume_and_range_of_its_radius_and_refuses_negative_ones) {
  GaussPot pot(2.7f, 1.7f);
  EXPECT_NEAR(pot.MaxRad(), 2.069, 1e-3);
  EXPECT_NEAR(pot(0), 3.337, 1e-3);
  EXPECT_NEAR(pot(1.0), potential(1.7, 1.0), 1e-6);
  double volume = 0;
  for (double r = 0.005; r < 12; r += 0.01)
    volume += 4 * M_PI * r * r * pot(r) * 0.01;
  EXPECT_NEAR(volume, 4.0 / 3.0 * M_PI * 1.7 * 1.7 * 1.7, 1e-3);

  const MessageCapture messages;
  EXPECT_FALSE(pot.Set(-1, 2));
  EXPECT_FALSE(pot.Set(1, -2));
  EXPECT_TRUE(messages.has(VXErrorLevel::Error,
                           "VolPot.Set : Illegal parameters, kappa  -1.00, rad   2.00"));
  EXPECT_EQ(messages.messages.size(), 2u);
  EXPECT_NEAR(pot(1.0), potential(1.7, 1.0), 1e-6);
  EXPECT_TRUE(pot.Set(2.7f, 0));
  EXPECT_EQ(pot.MaxRad(), 0.0);
  EXPECT_EQ(GaussPot(-1, 1)(0), 0.0);
}

TEST(Contact, the_target_is_the_sum_of_the_atoms_over_the_box_that_was_asked_for) {
  const VXGraphMol mol = folded_chain();
  const std::array<float, 3> center = {1, 1, 0.5f};
  const std::array<float, 3> extents = {6, 7, 5};
  for (const bool suppress : {false, true}) {
    const VXContactGridImpl impl(center.data(), extents.data(), mol, suppress, 0.4f);
    const VXScalarGrid& grid = impl.GetTargetGrid();
    EXPECT_EQ(grid.GetXDim(), 16u);
    EXPECT_EQ(grid.GetYDim(), 18u);
    EXPECT_EQ(grid.GetZMid(), 0.5f);
    const auto sum = [&](const Point& p) {
      double t = 0;
      for (unsigned int a = 0; a < (suppress ? 6u : 7u); ++a)
        t += potential_of(mol, a, p);
      return t;
    };
    EXPECT_GT(expect_values(
                  grid, sum, [&](const Point& p) { return near_rim(mol, p); }, 2e-6),
              1000);
    EXPECT_FALSE(VXGridHasNonZeroValue(impl.GetContactGrid()));
  }
  // Without a box it is that of the atom centres, hydrogens included.
  const VXContactGridImpl boxed(mol, true, 0.5f);
  EXPECT_FLOAT_EQ(boxed.GetTargetGrid().GetXMid(), 0.7f);
  EXPECT_EQ(boxed.GetTargetGrid().GetXDim(), 7u);
}

TEST(Contact, a_point_has_the_largest_contact_with_an_atom_of_the_probe) {
  const VXGraphMol mol = folded_chain();
  const VXGraphMol probe = ligand();
  const std::array<float, 3> center = {1, 1, 1};
  const std::array<float, 3> extents = {5, 6, 7};
  VXContactGridImpl impl(center.data(), extents.data(), mol, false, 0.4f);
  const auto expected = [&](const Point& p) {
    double t = 0;
    double best = 0;
    for (unsigned int a = 0; a < 7; ++a)
      t += potential_of(mol, a, p);
    for (unsigned int a = 0; a < 3; ++a)
      best = std::max(best, contact(t, potential_of(probe, a, p)));
    EXPECT_LE(best, 2 * t);
    return best;
  };
  const auto on_rim = [&](const Point& p) { return near_rim(mol, p) || near_rim(probe, p); };
  // The second time finds a grid that is filled, and a copy one that it does not share.
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(impl.MakeContactGrid(probe));
    EXPECT_GT(expect_values(impl.GetContactGrid(), expected, on_rim, 2e-6), 200);
  }
  VXContactGridImpl copy(impl);
  VXGraphMol far = probe;
  const float shift[3] = {0, 0, 100};
  VXTranslate(far, shift);
  EXPECT_TRUE(copy.MakeContactGrid(far));
  EXPECT_FALSE(VXGridHasNonZeroValue(copy.GetContactGrid()));
  EXPECT_TRUE(VXGridHasNonZeroValue(impl.GetContactGrid()));

  // The whole call covers half an Angstrom around the centres.
  VXScalarGrid grid;
  EXPECT_TRUE(VXMakeContactGrid(grid, mol, probe, false, 0.4f, 1));
  EXPECT_EQ(grid.GetZDim(), 4u);
  EXPECT_GT(expect_values(grid, expected, on_rim, 2e-6), 50);
}

TEST(Contact, a_probe_counts_with_the_radius_of_its_element_in_the_target) {
  const VXGraphMol target = make_model(std::vector<ModelAtom>{{6, 0, 0, 0}});
  VXGraphMol probe = make_model(std::vector<ModelAtom>{{6, 2, 0, 0}});
  VXScalarGrid without_radii;
  EXPECT_TRUE(VXMakeContactGrid(without_radii, target, probe, false, 0.25f, 1));
  EXPECT_TRUE(VXGridHasNonZeroValue(without_radii));
  probe.GetAtom(0)->SetAtomicNum(17);
  EXPECT_TRUE(VXMakeContactGrid(without_radii, target, probe, false, 0.25f, 1));
  EXPECT_FALSE(VXGridHasNonZeroValue(without_radii));
  VXAssignBondiVdWRadii(probe);
  EXPECT_TRUE(VXMakeContactGrid(without_radii, target, probe, false, 0.25f, 1));
  EXPECT_TRUE(VXGridHasNonZeroValue(without_radii));
}

TEST(Contact, within_a_molecule_atoms_see_what_is_more_bonds_away) {
  const VXGraphMol mol = folded_chain();
  // Bonds between any two of the atoms: the chain 6-0-1-2-3-4-5.
  const auto bonds = [](unsigned int a, unsigned int b) {
    const int place_a = a == 6 ? -1 : static_cast<int>(a);
    const int place_b = b == 6 ? -1 : static_cast<int>(b);
    return static_cast<unsigned int>(std::abs(place_a - place_b));
  };
  const std::array<float, 3> center = {0.7f, 1.4f, 0.1f};
  const std::array<float, 3> extents = {5, 6, 4};
  for (const unsigned int depth : {0u, 1u, 4u, 6u, 4000000000u}) {
    VXContactGridImpl impl(center.data(), extents.data(), mol, false, 0.4f);
    const VXScalarGrid before = impl.GetTargetGrid();
    impl.MakeContactGrid(depth);
    const auto expected = [&](const Point& p) {
      double best = 0;
      for (unsigned int a = 0; a < 7; ++a) {
        double t = 0;
        for (unsigned int b = 0; b < 7; ++b)
          t += bonds(a, b) > depth ? potential_of(mol, b, p) : 0.0;
        if (t > 1e-4) best = std::max(best, contact(t, potential_of(mol, a, p)));
      }
      return best;
    };
    const int filled = expect_values(
        impl.GetContactGrid(), expected, [&](const Point& p) { return near_rim(mol, p); }, 1e-5);
    EXPECT_EQ(filled > 0, depth < 6) << depth;
    for (unsigned int i = 0; i < before.GetSize(); ++i)
      EXPECT_NEAR(impl.GetTargetGrid()[i], before[i], 2e-5f);
    if (depth != 4) continue;
    VXScalarGrid whole;
    EXPECT_TRUE(VXMakeContactGrid(whole, mol, false, 0.4f));
    EXPECT_EQ(whole.GetXDim(), 9u);
    EXPECT_GT(expect_values(
                  whole, expected, [&](const Point& p) { return near_rim(mol, p); }, 1e-5),
              0);
  }
}

TEST(Contact, of_two_densities_the_value_is_the_target_where_they_are_equal) {
  const VXGraphMol mol = folded_chain();
  VXGraphMol bare;
  bare = mol;
  VXAssignBondiVdWRadii(bare);
  VXSuppressHydrogens(bare, false, false, true);
  VXBrioGrid density;
  ASSERT_TRUE(VXMakeMolecularGaussianGrid(density, bare, 0.5f));
  VXScalarGrid grid;
  EXPECT_TRUE(VXMakeContactGrid(grid, mol, mol, true, 0.5f, 0));
  ASSERT_EQ(grid.GetSize(), density.GetSize());
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    EXPECT_NEAR(grid[i], density.GetValues()[i], 1e-4f);
}

TEST(Contact, of_two_densities_each_is_made_on_its_own_lattice) {
  // Whole spacings apart, so that the lattices meet and nothing is left to interpolation.
  const VXGraphMol a = make_model(std::vector<ModelAtom>{{6, 0, 0, 0}});
  const VXGraphMol b = make_model(std::vector<ModelAtom>{{8, 2, 0.5f, -1}});
  const auto density = [](double radius, double d) {
    return 2.7 * std::exp(-2.344251 / (radius * radius) * d * d);
  };
  const auto expected = [&](const Point& p) {
    return contact(density(1.7, distance(p, {0, 0, 0})), density(1.52, distance(p, {2, 0.5f, -1})));
  };
  const auto none = [](const Point&) { return false; };
  VXScalarGrid grid;
  EXPECT_TRUE(VXMakeContactGrid(grid, a, b, false, 0.5f, 0));
  EXPECT_EQ(grid.GetXDim(), 19u);
  // What lies beyond a reach of 0.001 is missing.
  EXPECT_GT(expect_values(grid, expected, none, 2.5e-3), 1000);

  // A grid with points keeps them, and the target comes on top of what it held.
  VXScalarGrid given(5, 4, 3, 1, 0.25f, 0, 0.5f, "kept");
  std::fill_n(given.GetValues(), given.GetSize(), 0.25f);
  given.SetType(Ux);
  EXPECT_TRUE(VXMakeContactGrid(given, a, b, false, 0.5f, 0));
  EXPECT_EQ(given.GetSize(), 60u);
  EXPECT_EQ(given.GetTitle(), "kept");
  EXPECT_EQ(given.GetType(), Ux);
  const auto on_top = [&](const Point& p) {
    return contact(0.25 + density(1.7, distance(p, {0, 0, 0})),
                   density(1.52, distance(p, {2, 0.5f, -1})));
  };
  EXPECT_EQ(expect_values(given, on_top, none, 2.5e-3), 60);
}

TEST(Contact, what_makes_no_grid_gives_false_and_leaves_the_grid) {
  const MessageCapture messages;
  const VXGraphMol mol = folded_chain();
  const VXGraphMol empty;
  const VXScalarGrid untouched(2, 2, 2, 0, 0, 0, 1, "untouched");
  VXScalarGrid grid = untouched;
  for (const float spacing : {0.0f, -0.5f, NAN, 1e-30f}) {
    EXPECT_FALSE(VXMakeContactGrid(grid, mol, false, spacing));
    EXPECT_FALSE(VXMakeContactGrid(grid, mol, mol, false, spacing, 1));
    VXScalarGrid unsized;
    EXPECT_FALSE(VXMakeContactGrid(unsized, mol, mol, false, spacing, 0));
  }
  EXPECT_FALSE(VXMakeContactGrid(grid, mol, empty, false, 0.5f, 0));
  EXPECT_FALSE(VXMakeContactGrid(grid, empty, mol, false, 0.5f, 0));
  EXPECT_EQ(grid.GetTitle(), "untouched");

  VXContactGridImpl none(nullptr, nullptr, mol, false, 0.5f);
  none.MakeContactGrid(4);
  EXPECT_FALSE(none.MakeContactGrid(mol));
  EXPECT_EQ(none.GetTargetGrid().GetSize(), 0u);

  // The box of no atoms is a point, which nothing touches; nor does a molecule without atoms.
  EXPECT_TRUE(VXMakeContactGrid(grid, empty, false, 0.5f));
  EXPECT_EQ(grid.GetSize(), 1u);
  EXPECT_EQ(grid[0], 0.0f);
  EXPECT_TRUE(VXMakeContactGrid(grid, mol, empty, false, 0.5f, 1));
  EXPECT_FALSE(VXGridHasNonZeroValue(grid));
  VXGraphMol odd = make_model(std::vector<ModelAtom>{{4000000000u, 0, 0, 0}, {6, NAN, 0, 0}});
  EXPECT_TRUE(VXMakeContactGrid(grid, mol, odd, false, 0.5f, 1));
}

}  // namespace
