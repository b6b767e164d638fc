// The radius that goes with a resolution, and where a resolution is found.
#include "vxgrid/density/resolution.h"

#include <gtest/gtest.h>

#include "support/shared_data.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

TEST(Resolution, radius_follows_its_three_branches) {
  const struct {
    double resolution, radius;
  } cases[] = {
      {0.5999, 0.7},     {0.6, 0.7 / 3}, {1.8, 1.2 / 3 + 0.7 / 3}, {3.0, 2.4 / 3 + 0.7 / 3},
      {3.0001, 1.50005}, {4.0, 2.0}};
  for (const auto& c : cases)
    EXPECT_NEAR(VXGetEDSRadius(c.resolution), c.radius, 1e-12) << c.resolution;
}

TEST(Resolution, is_the_first_remark_that_tells_a_number) {
  VXGraphMol mol;
  mol.NewAtom(6);
  double resolution = -1;
  EXPECT_FALSE(VXGetResolution(resolution, mol));
  VXAddPDBData(mol, "REMARK", "   1 REFERENCE 1");
  VXAddPDBData(mol, "REMARK", "   2 RESOLUTION. NOT APPLICABLE.");
  EXPECT_FALSE(VXGetResolution(resolution, mol));
  EXPECT_EQ(resolution, -1);
  VXAddPDBData(mol, "REMARK", "   2 RESOLUTION.    2.10 ANGSTROMS.");
  VXAddPDBData(mol, "REMARK", "   2 RESOLUTION.    3.30 ANGSTROMS.");
  EXPECT_TRUE(VXGetResolution(resolution, mol));
  EXPECT_EQ(resolution, 2.1);
}

TEST(Resolution, of_real_models_is_that_of_their_entries) {
  const struct {
    const char* file;
    double resolution;
  } cases[] = {{"5wkd.pdb", 1.80}, {"5i55.cif", 1.45}};
  for (const auto& c : cases) {
    if (!vxgrid_test::has_shared_data(c.file)) GTEST_SKIP() << vxgrid_test::missing_data(c.file);
    VXGraphMol mol;
    ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data(c.file), mol)) << c.file;
    double resolution = 0;
    EXPECT_TRUE(VXGetResolution(resolution, mol)) << c.file;
    EXPECT_NEAR(resolution, c.resolution, 1e-6) << c.file;
  }
}

TEST(Resolution, of_a_map_is_its_tag) {
  VXSkewGrid grid;
  double resolution = -1;
  EXPECT_FALSE(VXGetResolution(resolution, grid));
  grid.SetDoubleData("resolution", 2.5);
  EXPECT_TRUE(VXGetResolution(resolution, grid));
  EXPECT_EQ(resolution, 2.5);
  grid.SetStringData("resolution", "high");  // a type that is refused
  EXPECT_TRUE(VXGetResolution(resolution, grid));
  EXPECT_EQ(resolution, 0);
}

}  // namespace
}  // namespace VXCore
