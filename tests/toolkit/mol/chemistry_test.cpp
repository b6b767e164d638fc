// What is known of elements and bonds: radii, hydrogens, charges; and the geometry of molecules.
#include <gtest/gtest.h>

#include <array>     // for array
#include <iterator>  // for size
#include <tuple>     // for tuple
#include <vector>    // for vector

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
  constexpr unsigned int numbers[] = {1, 6, 7, 8, 9, 15, 16, 17, 35, 53, 92, 0, 26, 118, 4000};
  constexpr float radii[] = {1.2F,  1.7F,  1.55F, 1.52F, 1.47F, 1.8F, 1.8F, 1.75F,
                             1.85F, 1.98F, 1.86F, 1.7F,  1.7F,  1.7F, 1.7F};
  for (std::size_t i = 0; i < std::size(numbers); ++i)
    EXPECT_EQ(VXGetBondiVdWRadius(numbers[i]), radii[i]) << numbers[i];
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
  const std::tuple<unsigned int, std::vector<unsigned int>, int, int> cases[] = {
      {7, {6, 1, 1, 1}, 0, 1},  {7, {6, 6, 6}, 0, 0},     {7, {6, 6, 6, 26}, 0, 0},
      {8, {1, 1, 1}, 0, 1},     {8, {1, 1, 12}, 0, 0},    {8, {6}, 0, 0},
      {5, {9, 9, 9, 9}, 0, -1}, {15, {8, 8, 8, 8}, 0, 0}, {16, {8, 8, 8, 8}, 0, 0},
      {7, {6, 1, 1, 1}, 2, 2},  {6, {1, 1, 1}, 0, 0}};
  for (const auto& [center, neighbours, before, after] : cases) {
    VXGraphMol mol = make_star(center, neighbours);
    mol.GetAtom(0)->SetFormalCharge(before);
    EXPECT_EQ(VXAssignFormalCharges(mol), before != after);
    EXPECT_EQ(mol.GetAtom(0)->GetFormalCharge(), after) << center << " " << neighbours.size();
  }
}

TEST(AtomKinds, FollowElementAndNeighbours) {
  VXGraphMol mol = make_star(8, {1, 6, 17, 30});
  mol.NewBond(mol.GetAtom(2), mol.NewAtom(1), 1);
  EXPECT_TRUE(mol.GetAtom(0)->IsPolar() && !mol.GetAtom(2)->IsPolar());
  EXPECT_TRUE(mol.GetAtom(1)->IsPolarHydrogen() && !mol.GetAtom(5)->IsPolarHydrogen());
  EXPECT_TRUE(mol.GetAtom(3)->IsHalogen() && mol.GetAtom(4)->IsMetal());
}

TEST(Geometry, BoxCentreAndMotionsSkipHolesOfTheIndices) {
  VXGraphMol mol = make_star(6, {6, 6, 6});
  const std::vector<float> coords = {0, 0, 0, 100, 100, 100, 4, 1, -2, 2, 5, 2};
  mol.SetCoords(coords.data());
  mol.DeleteAtom(mol.GetAtom(1));
  using Triple = std::array<float, 3>;
  Triple center, extents, xyz;
  VXGetCenterAndExtents(mol, center.data(), extents.data());
  EXPECT_EQ(center, (Triple{2, 2.5F, 0}));
  EXPECT_EQ(extents, (Triple{4, 5, 4}));
  EXPECT_TRUE(VXGetCenterOfMass(mol, center.data()));
  EXPECT_EQ(center, (Triple{2, 2, 0}));
  const float weights[4] = {0, 7, 1, 0};
  EXPECT_TRUE(VXGetCenterOfMass(mol, center.data(), weights));
  EXPECT_EQ(center, (Triple{4, 1, -2}));

  // x -> y -> z -> x, so that a transposed matrix would show.
  const double turn[9] = {0, 0, 1, 1, 0, 0, 0, 1, 0};
  const float shift[3] = {1, 2, 3};
  EXPECT_TRUE(VXRotate(mol, turn));
  EXPECT_TRUE(VXTranslate(mol, shift));
  mol.GetCoords(mol.GetAtom(2), xyz.data());
  EXPECT_EQ(xyz, (Triple{-1, 6, 4}));

  VXGraphMol empty;
  EXPECT_FALSE(VXGetCenterOfMass(empty, center.data()) || VXTranslate(empty, shift));
  VXGetCenterAndExtents(empty, center.data(), extents.data());
  EXPECT_EQ(extents, Triple{});
}
