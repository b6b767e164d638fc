// What is known of elements and bonds: radii, hydrogens, charges; and the geometry of molecules.
#include <gtest/gtest.h>

#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/mol/elements.h"
#include "vxgrid/toolkit/mol/formal_charges.h"
#include "vxgrid/toolkit/mol/geometry.h"
#include "vxgrid/toolkit/mol/hydrogens.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/radii.h"

namespace {

using namespace VXMol;

// A centre with neighbours, all joined by single bonds.
VXGraphMol make_star(unsigned int center, const std::vector<unsigned int>& neighbours) {
  VXGraphMol mol;
  VXAtomBase* middle = mol.NewAtom(center);
  for (const unsigned int z : neighbours)
    mol.NewBond(middle, mol.NewAtom(z), 1);
  return mol;
}

}  // namespace

TEST(Radii, AreBondisOrTheDefault) {
  struct Case {
    unsigned int z;
    float radius;
  };
  for (const auto& [z, radius] :
       {Case{1, 1.2F}, Case{6, 1.7F}, Case{7, 1.55F}, Case{8, 1.52F}, Case{9, 1.47F},
        Case{15, 1.8F}, Case{16, 1.8F}, Case{17, 1.75F}, Case{35, 1.85F}, Case{53, 1.98F},
        Case{92, 1.86F}, Case{0, 1.7F}, Case{26, 1.7F}, Case{118, 1.7F}, Case{4000, 1.7F}}) {
    EXPECT_EQ(VXGetBondiVdWRadius(z), radius) << z;
  }
  VXGraphMol mol = make_star(7, {1, 26});
  EXPECT_FALSE(VXAssignBondiVdWRadii(mol));
  EXPECT_EQ(mol.GetAtom(1)->GetRadius(), 1.2F);
  EXPECT_EQ(mol.GetAtom(2)->GetRadius(), 1.7F);
}

TEST(Elements, SymbolsAreReadInAnyCase) {
  for (unsigned int z = 1; z <= 118; ++z)
    EXPECT_EQ(VXGetAtomicNum(VXGetAtomicSymbol(z)), z);
  EXPECT_EQ(VXGetAtomicNum("FE"), 26U);
  EXPECT_EQ(VXGetAtomicNum("D"), 1U);
  EXPECT_EQ(VXGetAtomicNum("Qq"), 0U);
  EXPECT_EQ(VXGetAtomicNum("Carbon"), 0U);
  EXPECT_STREQ(VXGetAtomicSymbol(999), "X");
}

TEST(Hydrogens, AreRemovedAsTheFlagsSay) {
  // Ammonium, an alkane carbon with three heavy neighbours, a lone proton, H2.
  VXGraphMol mol = make_star(7, {1, 1, 1, 1});
  mol += make_star(6, {1, 6, 6, 8});
  mol.NewAtom(1);
  mol += make_star(1, {1});
  ASSERT_EQ(mol.NumAtoms(), 13U);
  struct Case {
    bool polar, stereo, unattached;
    unsigned int left;
  };
  for (const Case& c : {Case{false, false, true, 5}, Case{false, false, false, 8},
                        Case{true, false, true, 9}, Case{false, true, true, 6}}) {
    VXGraphMol copy(mol);
    VXSuppressHydrogens(copy, c.polar, c.stereo, c.unattached);
    EXPECT_EQ(copy.NumAtoms(), c.left) << c.polar << c.stereo;
    EXPECT_EQ(copy.GetMaxAtomIdx(), 13U);
  }
}

TEST(FormalCharges, FollowExplicitValencesAndNothingElse) {
  struct Case {
    unsigned int center;
    std::vector<unsigned int> neighbours;
    int before, after;
  };
  const std::vector<Case> cases = {
      {7, {6, 1, 1, 1}, 0, 1},  {7, {6, 6, 6}, 0, 0},     {7, {6, 6, 6, 26}, 0, 0},
      {8, {1, 1, 1}, 0, 1},     {8, {1, 1, 12}, 0, 0},    {8, {6}, 0, 0},
      {5, {9, 9, 9, 9}, 0, -1}, {15, {8, 8, 8, 8}, 0, 0}, {16, {8, 8, 8, 8}, 0, 0},
      {7, {6, 1, 1, 1}, 2, 2},  {6, {1, 1, 1}, 0, 0}};
  for (const Case& c : cases) {
    VXGraphMol mol = make_star(c.center, c.neighbours);
    mol.GetAtom(0)->SetFormalCharge(c.before);
    EXPECT_EQ(VXAssignFormalCharges(mol), c.before != c.after);
    EXPECT_EQ(mol.GetAtom(0)->GetFormalCharge(), c.after) << c.center << " " << c.neighbours.size();
  }
}

TEST(AtomKinds, FollowElementAndNeighbours) {
  VXGraphMol mol = make_star(8, {1, 6, 17, 30});
  mol.NewBond(mol.GetAtom(2), mol.NewAtom(1), 1);
  EXPECT_TRUE(mol.GetAtom(0)->IsPolar());
  EXPECT_TRUE(mol.GetAtom(1)->IsPolarHydrogen());
  EXPECT_FALSE(mol.GetAtom(5)->IsPolarHydrogen());
  EXPECT_TRUE(mol.GetAtom(3)->IsHalogen());
  EXPECT_TRUE(mol.GetAtom(4)->IsMetal());
  EXPECT_FALSE(mol.GetAtom(2)->IsPolar());
}

TEST(Geometry, BoxCentreAndMotionsSkipHolesOfTheIndices) {
  VXGraphMol mol = make_star(6, {6, 6, 6});
  const std::vector<float> coords = {0, 0, 0, 100, 100, 100, 4, 1, -2, 2, 5, 2};
  mol.SetCoords(coords.data());
  mol.DeleteAtom(mol.GetAtom(1));
  float center[3], extents[3];
  VXGetCenterAndExtents(mol, center, extents);
  EXPECT_EQ(std::vector<float>(center, center + 3), (std::vector<float>{2, 2.5F, 0}));
  EXPECT_EQ(std::vector<float>(extents, extents + 3), (std::vector<float>{4, 5, 4}));
  EXPECT_TRUE(VXGetCenterOfMass(mol, center));
  EXPECT_EQ(std::vector<float>(center, center + 3), (std::vector<float>{2, 2, 0}));
  const float weights[4] = {0, 7, 1, 0};
  EXPECT_TRUE(VXGetCenterOfMass(mol, center, weights));
  EXPECT_EQ(std::vector<float>(center, center + 3), (std::vector<float>{4, 1, -2}));

  // x -> y -> z -> x, so that a transposed matrix would show.
  const double turn[9] = {0, 0, 1, 1, 0, 0, 0, 1, 0};
  const float shift[3] = {1, 2, 3};
  EXPECT_TRUE(VXRotate(mol, turn));
  EXPECT_TRUE(VXTranslate(mol, shift));
  float xyz[3];
  mol.GetCoords(mol.GetAtom(2), xyz);
  EXPECT_EQ(std::vector<float>(xyz, xyz + 3), (std::vector<float>{-1, 6, 4}));

  VXGraphMol empty;
  EXPECT_FALSE(VXGetCenterOfMass(empty, center));
  EXPECT_FALSE(VXTranslate(empty, shift));
  VXGetCenterAndExtents(empty, center, extents);
  EXPECT_EQ(extents[0], 0);
}
