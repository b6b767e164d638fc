// Molecules as Gaussians on grids: sizes, radii, sums and products.
#include "vxgrid/gaussian/molecule_grid.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "support/models.h"
#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;

double integral(const VXBrioGrid& grid) {
  const double h = grid.GetSpacing();
  return std::accumulate(grid.GetValues(), grid.GetValues() + grid.GetSize(), 0.0) * h * h * h;
}

VXGraphMol one_atom(unsigned int element, float radius = 0) {
  VXGraphMol mol = make_model(std::array<ModelAtom, 1>{{{element, 1, 2, 3}}});
  for (VXAtomBase* atom : mol.GetAtoms())
    atom->SetRadius(radius);
  return mol;
}

TEST(MoleculeGrid, a_grid_without_size_is_made_with_four_angstrom_around_the_centres) {
  const VXGraphMol mol = one_atom(6, 1.7f);
  VXBrioGrid grid;
  EXPECT_EQ(vx_make_molecular_gaussian_grid(mol, 0.5f, grid), 1);
  EXPECT_EQ(grid.GetXDim(), 19u);
  EXPECT_EQ(grid.GetZMid(), 3.0f);
  EXPECT_NEAR(grid.GetValues()[9 + 19 * (9 + 19 * 9)], 2.7f, 1e-6);
  // The integral of a Gaussian is the volume of its sphere, but for what is cut off.
  EXPECT_NEAR(integral(grid), 4.0 / 3.0 * M_PI * std::pow(1.7, 3), 0.03 * 20.6);
}

TEST(MoleculeGrid, a_grid_with_size_keeps_it_and_sums_add_up_while_products_start_anew) {
  const VXGraphMol mol = one_atom(6, 1.7f);
  VXBrioGrid grid;
  grid.SetSpacing(0.7f);
  grid.SetMid(1, 2, 3);
  grid.SetDim(5, 5, 5);
  EXPECT_EQ(vx_make_molecular_gaussian_grid(mol, 9.0f, grid), 1);
  EXPECT_EQ(vx_make_molecular_gaussian_grid(mol, 9.0f, grid), 1);
  EXPECT_EQ(grid.GetXDim(), 5u);
  EXPECT_NEAR(grid.GetValues()[62], 5.4f, 1e-5);
  EXPECT_EQ(vx_make_molecular_product_gaussian_grid(mol, 9.0f, grid), 1);
  EXPECT_NEAR(grid.GetValues()[62], 2.7f, 1e-5);
  EXPECT_EQ(grid.GetSpacing(), 0.7f);
}

TEST(MoleculeGrid, elements_lend_radii_to_a_molecule_that_has_none) {
  // The height half an Angstrom from the atom tells its radius.
  const std::pair<unsigned int, float> radii[] = {
      {1, 1.0f},  {2, 1.9f},  {3, 1.1f},   {4, 1.1f},   {5, 1.7f},  {6, 1.7f},  {7, 1.65f},
      {8, 1.6f},  {9, 1.2f},  {10, 1.9f},  {11, 1.2f},  {12, 1.2f}, {13, 1.3f}, {14, 1.6f},
      {15, 1.9f}, {25, 1.2f}, {29, 1.25f}, {30, 1.34f}, {35, 1.9f}, {36, 1.9f}, {92, 1.9f}};
  for (const auto& [element, radius] : radii) {
    const VXGraphMol mol = one_atom(element);
    VXBrioGrid grid;
    ASSERT_TRUE(VXMakeMolecularGaussianGrid(grid, mol, 0.5f));
    const double expected = 2.7 * std::exp(-VXGetWidth(VXGetKappa(2.7), radius) * 0.25);
    EXPECT_NEAR(grid.GetValues()[10 + 19 * (9 + 19 * 9)], expected, 1e-5) << element;
    EXPECT_EQ(mol.GetAtom(0)->GetRadius(), 0.0f);
  }
  // What has no radius, by itself or beside others that have one, counts at its nearest point
  // alone.
  VXBrioGrid grid;
  ASSERT_TRUE(VXMakeMolecularGaussianGrid(grid, one_atom(0), 0.5f));
  EXPECT_EQ(integral(grid), 2.7f * 0.125);
  VXGraphMol two = make_model(std::array<ModelAtom, 2>{{{6, 0, 0, 0}, {6, 30, 0, 0}}});
  two.GetAtom(0)->SetRadius(1.7f);
  VXBrioGrid both;
  ASSERT_TRUE(VXMakeMolecularGaussianGrid(both, two, 0.5f));
  std::size_t touched = 0;
  for (unsigned int e = 0; e < both.GetSize(); ++e) {
    float x = 0, y = 0, z = 0;
    both.ElementToSpatialCoord(e, x, y, z);
    if (x > 15 && both.GetValues()[e] != 0.0f) ++touched;
  }
  EXPECT_EQ(touched, 1u);
}

TEST(MoleculeGrid, without_a_spacing_or_atoms_there_is_no_grid) {
  const VXGraphMol mol = one_atom(6), none;
  VXBrioGrid grid;
  EXPECT_EQ(vx_make_molecular_gaussian_grid(none, 0.5f, grid), 0);
  EXPECT_FALSE(VXMakeMolecularGaussianGrid(grid, mol));
  for (const float spacing : {0.0f, -0.5f, 1e-7f, std::nanf(""), HUGE_VALF})
    EXPECT_EQ(vx_make_molecular_gaussian_grid(mol, spacing, grid), 0);
  EXPECT_EQ(grid.GetSize(), 0u);
  grid.SetSpacing(0.5f);
  EXPECT_TRUE(VXMakeMolecularGaussianGrid(grid, mol));
  EXPECT_EQ(grid.GetXDim(), 19u);
}

}  // namespace
