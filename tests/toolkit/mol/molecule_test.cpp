// Molecules as containers: indices, holes, copies, parts and conformers.
#include "vxgrid/toolkit/mol/molecule.h"

#include <gtest/gtest.h>

#include <array>   // for array
#include <memory>  // for unique_ptr
#include <vector>  // for vector

#include "vxgrid/toolkit/mol/conformers.h"
#include "vxgrid/toolkit/mol/subset.h"

namespace {

using namespace VXMol;

// A chain of n carbons along x, one Angstrom apart, numbered residues of chain A.
VXGraphMol make_chain(unsigned int n) {
  VXGraphMol mol;
  std::vector<float> coords;
  VXAtomBase* last = nullptr;
  for (unsigned int i = 0; i < n; ++i) {
    VXAtomBase* atom = mol.NewAtom(6);
    atom->SetName("C" + std::to_string(i));
    VXResidue residue;
    residue.SetName("ALA");
    residue.SetChainID("A");
    residue.SetResidueNumber(static_cast<int>(i / 2));
    VXAtomSetResidue(atom, residue);
    if (last) mol.NewBond(last, atom, 1);
    last = atom;
    coords.insert(coords.end(), {static_cast<float>(i), 0, 0});
  }
  mol.SetCoords(coords.data());
  return mol;
}

std::vector<float> x_of(const VXMolBase& mol) {
  std::vector<float> xs;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    float xyz[3];
    mol.GetCoords(atom, xyz);
    xs.push_back(xyz[0]);
  }
  return xs;
}

std::vector<unsigned int> indices(const VXMolBase& mol) {
  std::vector<unsigned int> result;
  for (const VXAtomBase* atom : mol.GetAtoms())
    result.push_back(atom->GetIdx());
  return result;
}

}  // namespace

TEST(Molecule, DeletingLeavesHolesThatASweepCloses) {
  VXGraphMol mol = make_chain(5);
  VXAtomBase* last = mol.GetAtom(4);
  ASSERT_TRUE(mol.DeleteAtom(mol.GetAtom(0)));
  ASSERT_TRUE(mol.DeleteAtom(mol.GetAtom(2)));
  EXPECT_EQ((std::array{mol.NumAtoms(), mol.NumBonds(), mol.GetMaxAtomIdx()}),
            (std::array{3U, 1U, 5U}));
  EXPECT_EQ(indices(mol), (std::vector<unsigned int>{1, 3, 4}));
  EXPECT_EQ(last->GetIdx(), 4U);
  EXPECT_EQ(mol.GetAtom(2), nullptr);

  mol.Sweep();
  EXPECT_EQ(indices(mol), (std::vector<unsigned int>{0, 1, 2}));
  EXPECT_EQ((std::array{mol.GetMaxAtomIdx(), mol.GetMaxBondIdx()}), (std::array{3U, 1U}));
  EXPECT_EQ(last, mol.GetAtom(2));
  EXPECT_EQ(x_of(mol), (std::vector<float>{1, 3, 4}));
  EXPECT_NE(mol.GetBond(mol.GetAtom(1), last), nullptr);
  EXPECT_EQ(mol.GetBond(mol.GetAtom(0), last), nullptr);

  mol.NewAtom(8);
  EXPECT_EQ(x_of(mol), (std::vector<float>{1, 3, 4, 0}));
}

TEST(Molecule, RefusesAtomsAndBondsOfOthers) {
  VXGraphMol mol = make_chain(2);
  VXGraphMol other = make_chain(2);
  const float xyz[3] = {1, 2, 3};
  EXPECT_FALSE(mol.DeleteAtom(nullptr) || mol.DeleteAtom(other.GetAtom(0)));
  EXPECT_FALSE(mol.NewBond(mol.GetAtom(0), other.GetAtom(1), 1));
  EXPECT_FALSE(mol.NewBond(mol.GetAtom(0), mol.GetAtom(0), 1));
  EXPECT_FALSE(mol.DeleteBond(*other.GetBonds().begin()));
  EXPECT_FALSE(mol.SetCoords(other.GetAtom(0), xyz) || VXGraphMol().SetCoords(xyz));
}

TEST(Molecule, CopiesAreWholeAndIndependent) {
  VXGraphMol mol = make_chain(4);
  mol.SetTitle("chain");
  mol.SetFloatData("score", 0.5F);
  mol.GetAtom(3)->SetFloatData("rscc", 0.25F);
  mol.GetAtom(3)->SetFormalCharge(-1);
  VXSetPDBData(mol, "CRYST1", "cell");
  VXSetMMCIFData(mol, "_entry.id", "X");
  mol.DeleteAtom(mol.GetAtom(1));

  const std::unique_ptr<VXCore::VXBase> base(mol.CreateCopy());
  ASSERT_TRUE(base->IsDataType(VXCore::type_ids::graph_mol));
  VXMCMol several;
  several = mol;
  VXGraphMol assigned = make_chain(9);
  assigned.SetFloatData("old", 1);
  assigned = static_cast<const VXMolBase&>(several);
  VXGraphMol moved(std::move(assigned));
  for (VXMolBase* copy :
       std::initializer_list<VXMolBase*>{static_cast<VXGraphMol*>(base.get()), &several, &moved}) {
    EXPECT_EQ(copy->GetTitle(), "chain");
    EXPECT_FALSE(copy->HasData("old"));
    EXPECT_EQ(copy->GetFloatData("score"), 0.5F);
    EXPECT_EQ(indices(*copy), (std::vector<unsigned int>{0, 2, 3}));
    EXPECT_EQ(copy->NumBonds(), 1U);
    const VXAtomBase& last = *copy->GetAtom(3);
    EXPECT_TRUE(last.GetFloatData("rscc") == 0.25F && last.GetFormalCharge() == -1);
    EXPECT_EQ(VXAtomGetResidue(&last).GetResidueNumber(), 1);
    EXPECT_EQ(VXGetPDBData(*copy, "CRYST1"), "cell");
    EXPECT_TRUE(VXHasMMCIFData(*copy));
    EXPECT_EQ(x_of(*copy), (std::vector<float>{0, 2, 3}));
    copy->GetAtom(0)->SetName("changed");
  }
  EXPECT_EQ(mol.GetAtom(0)->GetName(), "C0");
  mol.Clear();
  EXPECT_FALSE(mol || mol.HasData("score") || !VXGetPDBData(mol, "CRYST1").empty());
}

TEST(Molecule, AppendingAMoleculeToItselfDoublesIt) {
  VXGraphMol mol = make_chain(3);
  mol.SetTitle("kept");
  mol.DeleteAtom(mol.GetAtom(0));
  mol += mol;
  EXPECT_EQ(indices(mol), (std::vector<unsigned int>{1, 2, 3, 4}));
  EXPECT_EQ(x_of(mol), (std::vector<float>{1, 2, 1, 2}));
  EXPECT_EQ(mol.NumBonds(), 2U);
  EXPECT_NE(mol.GetBond(mol.GetAtom(3), mol.GetAtom(4)), nullptr);
  EXPECT_EQ(mol.GetTitle(), "kept");
}

TEST(Molecule, AppendingPairsConformers) {
  VXMCMol target(make_chain(1));
  const float second[3] = {10, 0, 0};
  target.NewConf(second);
  VXGraphMol addition = make_chain(2);
  target += addition;
  ASSERT_EQ(target.NumConfs(), 2U);
  EXPECT_EQ(target.GetConf(0)->coords(), (std::vector<float>{0, 0, 0, 0, 0, 0, 1, 0, 0}));
  EXPECT_EQ(target.GetConf(1)->coords(), (std::vector<float>{10, 0, 0, 0, 0, 0, 1, 0, 0}));

  VXGraphMol single;
  single += target;
  EXPECT_EQ(single.NumConfs(), 1U);
  EXPECT_EQ(x_of(single), (std::vector<float>{0, 0, 1}));
  VXMCMol several;
  several += target;
  EXPECT_EQ(several.NumConfs(), 2U);

  EXPECT_TRUE(target.DeleteConf(target.GetConf(0)));
  EXPECT_EQ(x_of(target), (std::vector<float>{10, 0, 1}));
  EXPECT_EQ(target.GetConf(0)->GetIdx(), 0U);
  EXPECT_FALSE(target.DeleteConf(several.GetConf(0)));
}

TEST(Molecule, SubsetsByResidueKeepCoordinatesAndInnerBonds) {
  VXGraphMol mol = make_chain(6);
  mol.SetFloatData("score", 2);
  const std::vector<VXResidue> residues = VXGetResiduesImpl(mol);
  ASSERT_EQ(residues.size(), 3U);
  for (std::size_t i = 0; i < residues.size(); ++i) {
    VXGraphMol part = make_chain(1);
    ASSERT_TRUE(VXSubsetMol(part, mol, VXAtomIsInResidue(residues[i])));
    const auto x = static_cast<float>(2 * i);
    EXPECT_EQ(x_of(part), (std::vector<float>{x, x + 1}));
    EXPECT_EQ(indices(part), (std::vector<unsigned int>{0, 1}));
    EXPECT_TRUE(part.NumBonds() == 1 && part.GetFloatData("score") == 2);
  }
  EXPECT_TRUE(VXSubsetMol(mol, mol, [](const VXAtomBase* atom) { return atom->GetIdx() > 2; }));
  EXPECT_EQ(x_of(mol), (std::vector<float>{3, 4, 5}));
  EXPECT_FALSE(VXSubsetMol(mol, mol, [](const VXAtomBase&) { return false; }));
  EXPECT_FALSE(static_cast<bool>(mol));
}

TEST(Molecule, ResiduesComeInOrderOfFirstAppearanceAndAreKnownByAllTheirParts) {
  VXGraphMol mol = make_chain(4);
  for (const unsigned int i : {0U, 2U}) {
    VXAtomBase* atom = mol.NewAtom(8);
    VXResidue residue = VXAtomGetResidue(mol.GetAtom(i));
    if (i == 2) residue.SetModelNumber(2);
    residue.SetAlternateLocation('B');
    VXAtomSetResidue(atom, residue);
  }
  VXAtomBase* bare = mol.NewAtom(8);
  EXPECT_FALSE(VXHasResidue(bare));
  const std::vector<VXResidue> residues = VXGetResiduesImpl(mol);
  ASSERT_EQ(residues.size(), 3U);
  EXPECT_EQ(VXGetResidueAtomsImpl(mol, residues[0], 15).size(), 3U);
  EXPECT_EQ(VXGetResidueAtomsImpl(mol, residues[1], 15).size(), 2U);
  EXPECT_EQ(VXGetResidueAtomsImpl(mol, residues[1], 7).size(), 3U);
  EXPECT_EQ(residues[2].GetModelNumber(), 2);
  EXPECT_FALSE(VXHasResidues(VXGraphMol()));
  EXPECT_EQ(VXAtomGetResidue(bare).GetBFactor(), 0);
  EXPECT_EQ(VXAtomGetResidue(nullptr).GetOccupancy(), 0);
}
