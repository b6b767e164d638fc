// Symmetry tags and CRYST1 records of molecules.
#include "vxgrid/crystal/molecule_symmetry.h"

#include <gtest/gtest.h>

#include <array>    // for array
#include <string>   // for string
#include <tuple>    // for tuple
#include <utility>  // for pair
#include <vector>   // for vector

#include "support/messages.h"
#include "support/shared_data.h"
#include "vxgrid/crystal/crystal_images.h"

namespace {

using namespace VXCore;
using namespace VXCore::VXXtal;
using vxgrid_test::MessageCapture;

const std::string c2_record = "   50.347    4.777   14.746  90.00 101.73  90.00 C 1 2 1       4";

VXGraphMol make_mol(const std::string& cryst1) {
  VXGraphMol mol;
  const float xyz[3] = {1, 2, 3};
  mol.SetCoords(mol.NewAtom(6), xyz);
  if (!cryst1.empty()) VXSetPDBData(mol, "CRYST1", cryst1);
  return mol;
}

struct Record {
  bool ok;
  std::vector<float> cell;
  std::string name;
  unsigned int z;
};

Record extract(const VXMolBase& mol) {
  Record record{false, std::vector<float>(6, -1), "old", 99};
  record.ok = VXExtractCRYST1(mol, record.cell.data(), record.name, record.z);
  return record;
}

}  // namespace

TEST(Cryst1, IsTakenApartByColumnsAndOldRecordsMayEndEarly) {
  const std::vector<float> cell = {50.347F, 4.777F, 14.746F, 90, 101.73F, 90};
  const std::tuple<std::string, bool, std::string, unsigned int> cases[] = {
      {c2_record, true, "C 1 2 1   ", 4},
      {c2_record.substr(0, 48), true, "", 0},
      {c2_record.substr(0, 49), true, "", 0},
      {c2_record.substr(0, 54), true, "C 1 2", 0},
      {c2_record.substr(0, 60), true, "C 1 2 1   ", 0},
      {c2_record.substr(0, 60) + " 12          ", true, "C 1 2 1   ", 12},
      {c2_record.substr(0, 60) + "12345", true, "C 1 2 1   ", 1234},
      {c2_record.substr(0, 60) + "    x", true, "C 1 2 1   ", 0},
      {"50.347 4.777 14.746 90 101.73 90", true, "", 0},
      {"", false, "", 0},
  };
  for (const auto& [text, ok, name, z] : cases) {
    const Record record = extract(make_mol(text));
    EXPECT_EQ(std::tie(record.ok, record.name, record.z), std::tie(ok, name, z)) << text;
    EXPECT_TRUE(!ok || record.cell == cell) << text;
  }
  const Record damaged = extract(make_mol("50 60 x70 90 90 90"));
  EXPECT_FALSE(damaged.ok);
  EXPECT_EQ(damaged.cell, (std::vector<float>{50, 60, 0, 0, 0, 0}));
}

TEST(Cryst1, OfADummyCellIsNoCrystal) {
  for (const auto& [record, is_crystal] :
       {std::pair{"1.000 1.000 1.000 90.00 90.00 90.00 P 1", false},
        {"1.000 1.000 1.001 90.00 90.00 90.00 P 1", true},
        {"", false}})
    EXPECT_EQ(VXHasCrystalSymmetryImpl(make_mol(record)), is_crystal) << record;
}

TEST(Cryst1, OfAnMmcifMoleculeIsItsItems) {
  VXGraphMol mol = make_mol(c2_record);
  VXSetMMCIFData(mol, "_entry.id", "X");
  EXPECT_FALSE(extract(mol).ok);
  for (const char* item :
       {"length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma"})
    VXSetMMCIFData(mol, std::string("_cell.") + item, "90");
  VXSetMMCIFData(mol, "_symmetry.space_group_name_H-M", "P 2 3");
  const Record record = extract(mol);
  EXPECT_EQ(record.cell, std::vector<float>(6, 90));
  EXPECT_TRUE(record.ok && record.name == "P 2 3" && record.z == 0);
}

TEST(SymmetryTags, AreWrittenFromTheRecordAndBack) {
  VXGraphMol mol = make_mol(c2_record);
  ASSERT_TRUE(VXSetXtalSymmetryFromPDBData(mol));
  std::array<float, 6> cell{};
  ASSERT_TRUE(mol.GetData("VX_unit_cell", cell));
  EXPECT_EQ(cell[4], 101.73F);
  unsigned int number = 0;
  ASSERT_TRUE(mol.GetData("VX_spacegroup", number));
  EXPECT_EQ(number, 5U);
  EXPECT_EQ(mol.GetStringData("VX_spacegroup_name"), "C 1 2 1");
  std::vector<bool> enabled;
  ASSERT_TRUE(mol.GetData("VX_symm_enabled", enabled));
  EXPECT_EQ(enabled, std::vector<bool>(4, true));
  // The record is written anew from the tags, Z kept, name padded to its columns.
  EXPECT_EQ(VXGetPDBData(mol, "CRYST1"), c2_record);

  VXSetPDBData(mol, "CRYST1", "");
  EXPECT_TRUE(VXSetPDBDataFromXtalSymmetry(mol));
  EXPECT_EQ(VXGetPDBData(mol, "CRYST1"), c2_record.substr(0, 60) + "   0");

  VXMCMol several(make_mol(c2_record));
  ASSERT_TRUE(VXSetXtalSymmetryFromPDBData(several));
  EXPECT_EQ(VXGetPDBData(*several.GetConf(0), "CRYST1"), c2_record);
}

TEST(SymmetryTags, NamesWinOverNumbersAndFlagsCountOnlyInFullNumber) {
  VXGraphMol mol = make_mol("");
  VXSymmetry symmetry;
  EXPECT_FALSE(VXGetXtalSymmetry(mol, symmetry));
  mol.SetData("VX_unit_cell", std::array<float, 6>{10, 20, 30, 90, 100, 90});
  mol.SetData("VX_symm_enabled", std::vector<bool>{true, false, true});
  EXPECT_FALSE(VXHasXtalSymmetry(mol));
  mol.SetData("VX_spacegroup", 3U);
  ASSERT_TRUE(VXGetXtalSymmetry(mol, symmetry));
  EXPECT_EQ(symmetry.GetNumber(), 3U);
  std::vector<bool> enabled;
  symmetry.GetEnabled(enabled);
  EXPECT_EQ(enabled, std::vector<bool>(2, true));

  mol.SetData("VX_spacegroup_name", std::string("Q 9"));
  MessageCapture messages;
  EXPECT_FALSE(VXGetXtalSymmetry(mol, symmetry));
  EXPECT_EQ(symmetry.GetNumber(), 0U);
  mol.SetData("VX_spacegroup_name", std::string("p1211"));
  mol.SetData("VX_symm_enabled", std::vector<bool>{true, false});
  ASSERT_TRUE(VXGetXtalSymmetry(mol, symmetry));
  EXPECT_EQ(symmetry.GetNumber(), 4U);
  EXPECT_FALSE(VXXtalSymmetry::GetOpEnabled(mol, 1));
  EXPECT_EQ(VXXtalSymmetry::NumOps(mol), 2U);
}

TEST(SymmetryTags, OperatorsAreSwitchedOneByOne) {
  VXGraphMol mol = make_mol(c2_record);
  EXPECT_FALSE(VXXtalSymmetry::SetOpEnabled(mol, 0, false));
  ASSERT_TRUE(VXSetXtalSymmetryFromPDBData(mol));
  EXPECT_TRUE(VXXtalSymmetry::SetOpEnabled(mol, 2, false));
  for (const unsigned int op : {0U, 1U, 2U, 3U, 4U, 5U})
    EXPECT_EQ(VXXtalSymmetry::GetOpEnabled(mol, op), op < 4 && op != 2) << op;
  EXPECT_FALSE(VXXtalSymmetry::SetOpEnabled(mol, 5, true));
  const VXXtalSymmetry images(mol, 0, 0, 0);
  ASSERT_EQ(images.NumOps(), 3U);
  EXPECT_EQ(images.GetOpNumber(2), 3U);
}

TEST(SymmetryTags, CentreIsStoredOnRequestOnly) {
  VXGraphMol mol = make_mol("");
  const VXSymmetry symmetry(1, VXUnitCell(9, 9, 9, 90, 90, 90));
  std::array<float, 3> center{};
  ASSERT_TRUE(VXXtalSymmetry::SetSymmetry(mol, symmetry, false));
  EXPECT_FALSE(mol.HasData("VX_symm_com"));
  ASSERT_TRUE(VXXtalSymmetry::SetSymmetry(mol, symmetry, true));
  const float shift[3] = {5, 5, 5};
  VXMol::VXTranslate(mol, shift);
  ASSERT_TRUE(VXXtalSymmetry::GetCenterOfMass(mol, center.data()));
  EXPECT_EQ(center, (std::array<float, 3>{1, 2, 3}));
  mol.DeleteData("VX_symm_com");
  ASSERT_TRUE(VXXtalSymmetry::GetCenterOfMass(mol, center.data()));
  EXPECT_EQ(center, (std::array<float, 3>{6, 7, 8}));
  EXPECT_FALSE(VXXtalSymmetry::GetCenterOfMass(VXGraphMol(), center.data()));
  // No symmetry, and none over data of another type.
  EXPECT_FALSE(VXXtalSymmetry::SetSymmetry(mol, VXSymmetry(), false));
  mol.SetIntData("VX_spacegroup", 4);
  EXPECT_FALSE(VXXtalSymmetry::SetSymmetry(mol, symmetry, false));
  EXPECT_STREQ(VXGetTag(VXXtalSymmetry::CenterOfMassTag()), "VX_symm_com");
}

TEST(SymmetryTags, OfRealFilesNameTheirGroups) {
  for (const auto& [file, number, beta] :
       {std::tuple{"5wkd.pdb", 5U, 101.73F}, {"5i55.cif", 4U, 111.98F}}) {
    if (!vxgrid_test::has_shared_data(file)) GTEST_SKIP() << vxgrid_test::missing_data(file);
    VXGraphMol mol;
    ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data(file), mol));
    EXPECT_TRUE(VXHasCrystalSymmetryImpl(mol));
    VXSymmetry symmetry;
    ASSERT_TRUE(VXSetXtalSymmetryFromPDBData(mol));
    ASSERT_TRUE(VXGetXtalSymmetry(mol, symmetry));
    EXPECT_EQ(symmetry.GetNumber(), number);
    EXPECT_EQ(symmetry.cell().beta, beta);
  }
}
