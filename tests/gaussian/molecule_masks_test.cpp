// Masks by the Gaussians of a molecule, and of coordinates with radii.
#include "vxgrid/gaussian/molecule_masks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "support/messages.h"
#include "support/models.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::MessageCapture;
using vxgrid_test::ModelAtom;

VXScalarGrid grid_of_ones() {
  const std::vector<float> ones(11 * 9 * 7, 1.0f);
  VXScalarGrid grid(11, 9, 7, 0.5f, 0, -0.5f, 0.8f, "ones", const_cast<float*>(ones.data()));
  grid.SetType(3);
  return grid;
}

VXGraphMol two_atoms() {
  return make_model(std::array<ModelAtom, 2>{{{6, 0.4f, 0.1f, 0}, {8, 1.9f, -0.7f, 0.3f}}});
}

TEST(MoleculeMasks, every_type_does_to_the_values_what_the_density_says) {
  const VXGraphMol mol = two_atoms();
  VXBrioGrid density = grid_of_ones();
  std::fill_n(density.GetValues(), density.GetSize(), 0.0f);
  ASSERT_TRUE(VXMakeMolecularGaussianGrid(density, mol));
  for (const float t : {0.5f, 1.3f}) {
    for (unsigned int type = 4; type <= 7; ++type) {
      const char* const names[] = {"gaussian", "gaussian-", "gaussian_smooth", "gaussian_smooth-"};
      VXScalarGrid scalar = grid_of_ones();
      VXBrioGrid brio = grid_of_ones(), by_name = grid_of_ones();
      brio.SetFloatsMultiple(2);
      std::fill_n(brio.GetFloats().GetValues(1), brio.GetSize(), 2.0f);
      if (t == 0.5f) {
        EXPECT_TRUE(VXMaskGridByMolecule(scalar, mol, type));
        EXPECT_TRUE(VXMaskGridByMolecule(brio, mol, type));
      } else {
        EXPECT_TRUE(VXMaskGridByMolecule(scalar, mol, type, t));
        EXPECT_TRUE(VXMaskGridByMolecule(brio, mol, type, t));
      }
      EXPECT_EQ(vx_mask_grid(by_name, mol, t, names[type - 4]), 1);
      EXPECT_EQ(scalar.GetType(), 3u);
      for (unsigned int e = 0; e < scalar.GetSize(); ++e) {
        const double m = density.GetValues()[e];
        const double smooth = std::exp(-m * double{t});
        const double expected[] = {m > t ? 0.0 : 1.0, m < t ? 0.0 : 1.0, smooth, 1 - smooth};
        ASSERT_NEAR(scalar[e], expected[type - 4], 1e-6) << type;
        ASSERT_EQ(scalar[e], brio.GetValues()[e]);
        ASSERT_EQ(scalar[e], by_name.GetValues()[e]);
        ASSERT_EQ(2 * scalar[e], brio.GetFloats().GetValues(1)[e]);
      }
    }
  }
}

TEST(MoleculeMasks, wrong_types_and_molecules_without_atoms_or_places_are_refused) {
  const VXGraphMol mol = two_atoms(), empty;
  VXGraphMol flat;
  flat.NewAtom(6);
  VXScalarGrid grid = grid_of_ones();
  VXBrioGrid brio = grid_of_ones();
  for (const unsigned int type : {0u, 3u, 8u}) {
    EXPECT_FALSE(VXMaskGridByMolecule(grid, mol, type));
    EXPECT_FALSE(VXMaskGridByMolecule(brio, mol, type, 0.5f));
  }
  for (const char* type : {"Gaussian", "gaussian+", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(vx_mask_grid(brio, mol, 0.5f, type), 0);
  MessageCapture messages;
  EXPECT_FALSE(VXMaskGridByMolecule(grid, empty, 4));
  EXPECT_FALSE(VXMaskGridByMolecule(grid, flat, 4));
  EXPECT_FALSE(VXMaskGridByMolecule(grid, empty, 4, 0.5f));
  EXPECT_FALSE(VXMaskGridByMolecule(grid, flat, 4, 0.5f));
  ASSERT_EQ(messages.messages.size(), 4u);
  EXPECT_EQ(messages.messages[0].second, "VXMaskGridByMolecule() : empty molecule!");
  EXPECT_EQ(messages.messages[1].second,
            "VXMaskGridByMolecule() : 3D molecule coordinates required!");
  EXPECT_EQ(messages.messages[2].second, messages.messages[0].second);
  EXPECT_EQ(messages.messages[3].second, "VXMaskGridByMolecule() : 3D coordinates required!");
  for (unsigned int e = 0; e < grid.GetSize(); ++e) {
    ASSERT_EQ(grid[e], 1.0f);
    ASSERT_EQ(brio.GetValues()[e], 1.0f);
  }
  // Without a molecule nothing is inside.
  EXPECT_EQ(vx_mask_grid(brio, empty, 0.5f, "gaussian-"), 1);
  EXPECT_EQ(brio.GetValues()[0], 0.0f);
  VXBrioGrid nothing;
  EXPECT_EQ(vx_mask_grid(nothing, mol, 0.5f, "gaussian"), 0);
}

TEST(MoleculeMasks, spheres_end_at_their_radius) {
  const float coords[] = {0.5f, 0.0f, -0.5f}, radii[] = {1.7f};
  VXScalarGrid grid = grid_of_ones();
  EXPECT_TRUE(VXMaskGridByCoordsAndRadii(grid, coords, radii, 1, 4));
  for (unsigned int e = 0; e < grid.GetSize(); ++e) {
    float x = 0, y = 0, z = 0;
    grid.ElementToSpatialCoord(e, x, y, z);
    const double d2 = (x - 0.5) * (x - 0.5) + y * y + (z + 0.5) * (z + 0.5);
    const bool inside = 2.7 * std::exp(-2.344229 / (1.7 * 1.7) * d2) > 0.5 && d2 <= 1.7 * 1.7;
    ASSERT_EQ(grid[e], inside ? 0.0f : 1.0f);
  }
  EXPECT_FALSE(VXMaskGridByCoordsAndRadii(grid, coords, radii, 1, 3));
  VXScalarGrid point(1, 1, 1, 0, 0, 0, 1.0f, "");
  EXPECT_FALSE(VXMaskGridByCoordsAndRadii(point, coords, radii, 1, 4));
}

}  // namespace
