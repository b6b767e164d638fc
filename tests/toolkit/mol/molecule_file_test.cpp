// Molecule files: what is read, held against gemmi; round trips; damaged and hostile files.
#include "vxgrid/toolkit/mol/molecule_file.h"

#include <gtest/gtest.h>

#include <chrono>  // for steady_clock
#include <gemmi/cif.hpp>
#include <gemmi/mmcif.hpp>
#include <gemmi/pdb.hpp>
#include <random>   // for mt19937
#include <string>   // for string
#include <utility>  // for pair
#include <vector>   // for vector

#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/mol/elements.h"
#include "vxgrid/toolkit/mol/geometry.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/pdb_data.h"

namespace {

using namespace VXMol;
using namespace vxgrid_test;

// Two residues of a peptide with two alternate locations, a zinc ion and a water; a second model.
const char* const small_pdb =
    "HEADER    PEPTIDE                                 28-MAR-07   1ABC\n"
    "REMARK   2 RESOLUTION.    2.10 ANGSTROMS.\n"
    "CRYST1   50.347    4.777   14.746  90.00 101.73  90.00 C 1 2 1       4\n"
    "MODEL        1\n"
    "ATOM      1  N   GLY A   1A      0.000   0.000   0.000  1.00 10.00           N\n"
    "ATOM      2  CA AGLY A   1A      1.450   0.000   0.000  0.60 11.00           C\n"
    "ATOM      3  CA BGLY A   1A      1.400   0.400   0.000  0.40 12.50           C\n"
    "ATOM      4  C   GLY A   1A      2.000   1.420   0.000  1.00 13.00           C\n"
    "ATOM      5  N   SER A   2       3.320   1.530   0.000                       N\n"
    "HETATM    6 ZN    ZN A 301       9.000   9.000   9.000  1.00 20.00          ZN2+\n"
    "HETATM    7  O   HOH A 401      -5.000  -5.000  -5.000  1.00 30.00           O1-\n"
    "HETATM    8  H1  HOH A 401      -4.100  -5.000  -5.000  1.00 30.00           H\n"
    "ENDMDL\n"
    "MODEL        2\n"
    "ATOM      1  N   GLY A   1A      0.000   0.000   0.000  1.00 10.00           N\n"
    "ENDMDL\n"
    "END\n";

const char* const small_cif =
    "# a comment\n"
    "data_1ABC\n"
    "_entry.id 1ABC\n"
    "_cell.length_a 29.45(3)\n_cell.length_b 10.5\n_cell.length_c 29.7\n"
    "_cell.angle_alpha 90\n_cell.angle_beta 111.975\n_cell.angle_gamma 90\n"
    "_symmetry.space_group_name_H-M 'P 1 21 1'\n"
    "_refine.ls_d_res_high ?\n_reflns.d_resolution_high 1.65\n"
    "loop_\n_atom_site.group_PDB\n_atom_site.type_symbol\n_atom_site.label_atom_id\n"
    "_atom_site.label_alt_id\n_atom_site.label_comp_id\n_atom_site.label_asym_id\n"
    "_atom_site.auth_seq_id\n_atom_site.pdbx_PDB_ins_code\n_atom_site.Cartn_x\n"
    "_atom_site.Cartn_y\n_atom_site.Cartn_z\n_atom_site.occupancy\n_atom_site.B_iso_or_equiv\n"
    "_atom_site.pdbx_formal_charge\n_atom_site.pdbx_PDB_model_num\n"
    "ATOM N N . GLY LONGNAME 7 ? 1.5 2.5 -3.5 0.5 22.5 ? 1\n"
    "HETATM Zn \"ZN'\" B ZN B 301 C 4 5 6 ? . 2 1\n"
    "ATOM N N . GLY A 7 ? 0 0 0 1 1 ? 2\n";

// One line of everything that a file says about each atom.
const char* const atom_line = "%s %d %d %s %s %d %c%c %d %.3f %.3f %.3f %.2f %.2f";

std::vector<std::string> describe(const VXMolBase& mol) {
  std::vector<std::string> lines;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    const VXResidue& r = VXAtomGetResidue(atom);
    float p[3];
    mol.GetCoords(atom, p);
    lines.push_back(VXCore::format_text(
        atom_line, atom->GetName().c_str(), static_cast<int>(atom->GetAtomicNum()),
        atom->GetFormalCharge(), r.GetName().c_str(), r.GetChainID().c_str(), r.GetResidueNumber(),
        r.GetInsertCode(), r.GetAlternateLocation(), r.GetHetAtom(), double{p[0]}, double{p[1]},
        double{p[2]}, double{r.GetOccupancy()}, double{r.GetBFactor()}));
  }
  return lines;
}

std::vector<std::string> describe(const gemmi::Structure& structure) {
  std::vector<std::string> lines;
  for (const gemmi::Chain& chain : structure.models.front().chains) {
    for (const gemmi::Residue& residue : chain.residues) {
      for (const gemmi::Atom& atom : residue.atoms) {
        lines.push_back(VXCore::format_text(
            atom_line, atom.name.c_str(), atom.element.atomic_number(), atom.charge,
            residue.name.c_str(), chain.name.c_str(), *residue.seqid.num, residue.seqid.icode,
            atom.altloc ? atom.altloc : ' ', residue.het_flag == 'H', atom.pos.x, atom.pos.y,
            atom.pos.z, double{atom.occ}, double{atom.b_iso}));
      }
    }
  }
  return lines;
}

bool reads(const std::string& text, VXMolBase& mol) {
  const MessageCapture messages;
  const bool ok = VXReadMoleculeText(text, mol, "small");
  EXPECT_EQ(messages.messages.size(), ok ? 0U : 1U);
  EXPECT_EQ(static_cast<bool>(mol), ok);
  return ok;
}

}  // namespace

TEST(MoleculeFile, ReadsTheFirstModelOfAPdbFileWithAllItsFields) {
  VXGraphMol mol;
  ASSERT_TRUE(reads(small_pdb, mol));
  EXPECT_EQ(mol.GetTitle(), "1ABC");
  EXPECT_EQ(describe(mol),
            (std::vector<std::string>{"N 7 0 GLY A 1 A  0 0.000 0.000 0.000 1.00 10.00",
                                      "CA 6 0 GLY A 1 AA 0 1.450 0.000 0.000 0.60 11.00",
                                      "CA 6 0 GLY A 1 AB 0 1.400 0.400 0.000 0.40 12.50",
                                      "C 6 0 GLY A 1 A  0 2.000 1.420 0.000 1.00 13.00",
                                      "N 7 0 SER A 2    0 3.320 1.530 0.000 1.00 0.00",
                                      "ZN 30 2 ZN A 301    1 9.000 9.000 9.000 1.00 20.00",
                                      "O 8 -1 HOH A 401    1 -5.000 -5.000 -5.000 1.00 30.00",
                                      "H1 1 0 HOH A 401    1 -4.100 -5.000 -5.000 1.00 30.00"}));
  EXPECT_EQ(VXGetPDBData(mol, "CRYST1"),
            "   50.347    4.777   14.746  90.00 101.73  90.00 C 1 2 1       4");
  EXPECT_EQ(VXGetPDBData(mol, "REMARK"), "   2 RESOLUTION.    2.10 ANGSTROMS.");
  EXPECT_EQ(VXGetPDBDataPairs(mol).size(), 3U);
  EXPECT_FALSE(VXHasMMCIFData(mol));
}

TEST(MoleculeFile, BondsFollowDistancesAndAlternateLocations) {
  VXGraphMol mol;
  ASSERT_TRUE(reads(small_pdb, mol));
  // N to both places of CA, those to C, C to the next N, O to H; zinc to none.
  for (const auto& [a, b] : {std::pair{0U, 1U}, {0U, 2U}, {1U, 3U}, {2U, 3U}, {3U, 4U}, {6U, 7U}})
    EXPECT_NE(mol.GetBond(mol.GetAtom(a), mol.GetAtom(b)), nullptr) << a << " " << b;
  EXPECT_EQ(mol.NumBonds(), 6U);
}

TEST(MoleculeFile, ReadsTheFirstModelOfAnMmcifFileWithAllItsFields) {
  VXGraphMol mol;
  ASSERT_TRUE(reads(small_cif, mol));
  EXPECT_EQ(mol.GetTitle(), "1ABC");
  EXPECT_EQ(describe(mol),
            (std::vector<std::string>{"N 7 0 GLY LONGNAME 7    0 1.500 2.500 -3.500 0.50 22.50",
                                      "ZN' 30 2 ZN B 301 CB 1 4.000 5.000 6.000 1.00 0.00"}));
  float cell[6] = {};
  std::string name;
  ASSERT_TRUE(VXParseSymmetryCif(mol, cell, name));
  EXPECT_EQ(std::vector<float>(cell, cell + 6),
            (std::vector<float>{29.45F, 10.5F, 29.7F, 90, 111.975F, 90}));
  EXPECT_EQ(name, "P 1 21 1");
  double resolution = 0;
  EXPECT_TRUE(VXGetResolutionCIF(resolution, mol));
  EXPECT_EQ(resolution, 1.65);
}

TEST(MoleculeFile, RealFilesReadAsGemmiReadsThem) {
  if (!has_shared_data("5wkd.pdb")) GTEST_SKIP() << missing_data("5wkd.pdb");
  VXGraphMol pdb;
  ASSERT_TRUE(VXReadMolecule(shared_data("5wkd.pdb"), pdb));
  EXPECT_EQ(describe(pdb), describe(gemmi::read_pdb_file(shared_data("5wkd.pdb"))));
  EXPECT_EQ(pdb.GetTitle(), "5WKD");

  VXGraphMol cif;
  ASSERT_TRUE(VXReadMolecule(shared_data("5i55.cif"), cif));
  gemmi::cif::Document document = gemmi::cif::read_file(shared_data("5i55.cif"));
  EXPECT_EQ(describe(cif), describe(gemmi::make_structure(document)));
}

TEST(MoleculeFile, WritingAndReadingAgainKeepsAtomsAndCell) {
  const TempDir dir;
  for (const char* source : {small_pdb, small_cif}) {
    VXGraphMol mol;
    ASSERT_TRUE(reads(source, mol));
    // The chain's name is too long for PDB columns; everything else fits.
    for (VXAtomBase* atom : mol.GetAtoms()) {
      VXResidue residue = VXAtomGetResidue(atom);
      residue.SetChainID(residue.GetChainID().substr(0, 1));
      VXAtomSetResidue(atom, residue);
    }
    for (const char* name : {"m.pdb", "m.cif", "m.pdb.gz", "m.cif.gz"}) {
      VXGraphMol back;
      ASSERT_TRUE(VXWriteMolecule(dir.file(name), mol)) << name;
      ASSERT_TRUE(VXReadMolecule(dir.file(name), back)) << name;
      EXPECT_EQ(describe(back), describe(mol)) << name;
      EXPECT_EQ(back.NumBonds(), mol.NumBonds()) << name;
    }
    EXPECT_EQ(read_file(dir.file("m.pdb.gz")).substr(0, 2), "\x1f\x8b");
  }
  // From the mmCIF molecule: cell, group and resolution crossed into PDB records.
  VXGraphMol crossed;
  ASSERT_TRUE(VXReadMolecule(dir.file("m.pdb"), crossed));
  EXPECT_EQ(VXGetPDBData(crossed, "CRYST1"),
            "   29.450   10.500   29.700  90.00 111.97  90.00 P 1 21 1       ");
  EXPECT_EQ(VXGetPDBData(crossed, "REMARK"), "   2 RESOLUTION.    1.65 ANGSTROMS.");
}

TEST(MoleculeFile, PdbColumnsThatAValueDoesNotFitRefuseTheFile) {
  const TempDir dir;
  VXGraphMol mol;
  VXAtomBase* atom = mol.NewAtom(6);
  const float far[3] = {0, -12345.678F, 0};
  const float near[3] = {0, -999.125F, 0};
  mol.SetCoords(atom, far);
  const MessageCapture messages;
  EXPECT_FALSE(VXWriteMolecule(dir.file("far.pdb"), mol));
  EXPECT_TRUE(VXWriteMolecule(dir.file("far.cif"), mol));
  mol.SetCoords(atom, near);
  EXPECT_TRUE(VXWriteMolecule(dir.file("near.pdb"), mol));
  VXResidue residue;
  residue.SetChainID("LONG");
  VXAtomSetResidue(atom, residue);
  EXPECT_FALSE(VXWriteMolecule(dir.file("long.pdb"), mol));
  EXPECT_FALSE(VXWriteMolecule(dir.file("missing/x.pdb"), mol));
  EXPECT_EQ(messages.messages.size(), 3U);
}

TEST(MoleculeFile, SerialsAndResidueNumbersGoOnInBase36) {
  VXGraphMol mol;
  VXResidue residue;
  residue.SetName("HOH");
  residue.SetChainID("W");
  for (int i = 0; i < 100001; ++i) {
    residue.SetResidueNumber(9998 + i % 5);
    VXAtomSetResidue(mol.NewAtom(8), residue);
  }
  std::vector<float> coords(300003);
  for (std::size_t i = 0; i < coords.size(); i += 3) {
    coords[i] = 3.0F * static_cast<float>(i / 3 % 100);
    coords[i + 1] = 3.0F * static_cast<float>(i / 300 % 100);
    coords[i + 2] = 3.0F * static_cast<float>(i / 30000);
  }
  mol.SetCoords(coords.data());
  const TempDir dir;
  ASSERT_TRUE(VXWriteMolecule(dir.file("big.pdb"), mol));
  const gemmi::Structure structure = gemmi::read_pdb_file(dir.file("big.pdb"));
  const auto& residues = structure.models.front().chains.front().residues;
  ASSERT_EQ(residues.size(), 5U);
  EXPECT_EQ(*residues.back().seqid.num, 10002);
  EXPECT_EQ(residues.front().atoms.back().serial, 100001);

  VXGraphMol back;
  ASSERT_TRUE(VXReadMolecule(dir.file("big.pdb"), back));
  EXPECT_EQ(back.NumAtoms(), 100001U);
  EXPECT_EQ(back.NumBonds(), 0U);
}

TEST(MoleculeFile, FilesCutAnywhereGiveWholeAtomsOrNone) {
  for (const std::string text : {small_pdb, small_cif}) {
    VXGraphMol whole;
    ASSERT_TRUE(reads(text, whole));
    for (std::size_t length = 0; length < text.size(); ++length) {
      VXGraphMol mol;
      if (!reads(text.substr(0, length), mol)) continue;
      EXPECT_LE(mol.NumAtoms(), whole.NumAtoms());
      EXPECT_EQ(mol.GetDimension(), 3U);
    }
  }
}

TEST(MoleculeFile, DamagedFilesAreRefusedWithAMessageThatSaysWhy) {
  // What follows column 38 of the sixth line, and why it is refused.
  const std::string rest = "   0.000   0.000  0.60 11.00           C";
  const std::pair<std::string, std::string> cases[] = {
      {"   1.4x0" + rest, "line 6 has \"   1.4x0\" for a coordinate"},
      {"     nan" + rest, "line 6 has \"     nan\" for a coordinate"},
      {"        " + rest, "line 6 has \"        \" for a coordinate"},
      {"   1.450   0.000", "line 6 is too short for an atom"}};
  for (const auto& [line, reason] : cases) {
    std::string text = small_pdb;
    text.replace(text.find("   1.450" + rest), 8 + rest.size(), line);
    const MessageCapture messages;
    VXGraphMol mol;
    mol.NewAtom(6);
    EXPECT_FALSE(VXReadMoleculeText(text, mol, "x.pdb"));
    EXPECT_FALSE(static_cast<bool>(mol));
    EXPECT_TRUE(messages.warned("VXReadMolecule: x.pdb: " + reason)) << reason;
  }
  const MessageCapture messages;
  VXGraphMol mol;
  EXPECT_FALSE(VXReadMolecule("/nowhere/x.pdb", mol));
  EXPECT_TRUE(messages.warned("VXReadMolecule: /nowhere/x.pdb: cannot be opened"));
  EXPECT_FALSE(VXReadMoleculeText("data_x\n_a 1\n", mol));
  EXPECT_FALSE(VXReadMoleculeText("", mol));
  EXPECT_EQ(messages.messages.size(), 3U);
}

TEST(MoleculeFile, SizesAndBytesThatNoFileShouldHaveAreTakenInStride) {
  const std::string atom = "ATOM      1  N   GLY A   1       0.000   0.000   0.000  1.00 10.00";
  std::string alternating, same_place;
  for (int i = 0; i < 60000; ++i) {
    std::string line = atom + '\n';
    same_place += line;
    line[21] = i % 2 == 0 ? 'A' : static_cast<char>('B' + i % 20);
    line.replace(22, 4, VXCore::format_text("%4d", i % 10000));
    alternating += line;
  }
  VXGraphMol mol;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(reads(alternating, mol) && reads(same_place, mol));
  EXPECT_TRUE(std::chrono::steady_clock::now() - start < std::chrono::minutes(1));

  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::string text = round % 2 == 0 ? small_pdb : small_cif;
    for (int k = 0; k < 1 + round % 8; ++k)
      text[random() % text.size()] = static_cast<char>(random() % 256);
    reads(text, mol);
  }
}
