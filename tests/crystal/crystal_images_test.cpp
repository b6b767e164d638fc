// Crystal images of molecules, held against gemmi's cell and operators in double precision.
#include "vxgrid/crystal/crystal_images.h"

#include <gtest/gtest.h>

#include <algorithm>  // for sort
#include <array>      // for array
#include <cmath>      // for abs, floor
#include <gemmi/symmetry.hpp>
#include <gemmi/unitcell.hpp>
#include <memory>  // for unique_ptr
#include <set>     // for set
#include <string>  // for string
#include <vector>  // for vector

#include "support/shared_data.h"
#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/grid/skew_grid.h"

namespace {

using namespace VXCore;
using namespace VXCore::VXXtal;
using Place = std::array<double, 3>;

// A small molecule without any symmetry of its own in a monoclinic cell, C 1 2 1.
const char* const c2_pdb =
    "CRYST1   20.000    9.000   14.000  90.00 110.00  90.00 C 1 2 1       4\n"
    "ATOM      1  N   GLY A   1       1.000   2.000   3.000  1.00 10.00           N\n"
    "ATOM      2  CA  GLY A   1       2.300   2.500   3.200  1.00 10.00           C\n"
    "ATOM      3  C   GLY A   1       3.100   1.900   4.300  1.00 10.00           C\n"
    "ATOM      4  O   GLY A   1       2.700   1.000   5.100  1.00 10.00           O\n"
    "HETATM    5  O   HOH A   2      -3.000   6.000  -4.000  1.00 10.00           O\n";

VXGraphMol read_text(const std::string& text) {
  VXGraphMol mol;
  EXPECT_TRUE(VXMol::VXReadMoleculeText(text, mol));
  EXPECT_TRUE(VXSetXtalSymmetryFromPDBData(mol));
  return mol;
}

std::vector<Place> places(const VXMolBase& mol) {
  std::vector<Place> result;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    float xyz[3];
    mol.GetCoords(atom, xyz);
    result.push_back({xyz[0], xyz[1], xyz[2]});
  }
  return result;
}

Place image_of(const float* m, const Place& p) {
  Place out{};
  for (std::size_t i = 0; i < 3; ++i)
    out[i] = m[i] * p[0] + m[4 + i] * p[1] + m[8 + i] * p[2] + m[12 + i];
  return out;
}

// The crystal as gemmi sees it.
struct Crystal {
  gemmi::UnitCell cell;
  std::vector<gemmi::Op> ops;

  Crystal(const VXUnitCell& c, const std::string& group)
      : cell(c.a, c.b, c.c, c.alpha, c.beta, c.gamma) {
    for (const gemmi::Op op : gemmi::find_spacegroup_by_name(group)->operations())
      ops.push_back(op);
  }
  /// Calls `visit(image)` with the images of points in the cells up to five around.
  template <class Visit>
  void for_each_image(const std::vector<Place>& points, Visit visit) const {
    for (const gemmi::Op& op : ops) {
      for (int shift = 0; shift < 11 * 15 * 11; ++shift) {
        std::vector<Place> images;
        for (const Place& p : points)
          images.push_back(image(p, op, shift % 11 - 5, shift / 11 % 15 - 7, shift / 165 - 5));
        visit(images);
      }
    }
  }
  Place image(const Place& p, const gemmi::Op& op, int a, int b, int c) const {
    const gemmi::Fractional f = cell.fractionalize(gemmi::Position(p[0], p[1], p[2]));
    auto moved = op.apply_to_xyz({f.x, f.y, f.z});
    const gemmi::Position q =
        cell.orthogonalize(gemmi::Fractional(moved[0] + a, moved[1] + b, moved[2] + c));
    return {q.x, q.y, q.z};
  }
};

VXUnitCell cell_of(const VXMolBase& mol) {
  VXSymmetry symmetry;
  EXPECT_TRUE(VXGetXtalSymmetry(mol, symmetry));
  return symmetry.cell();
}

// Places as text in steps of 0.02 Angstrom, so that sets of them can be compared.
std::string rounded(const std::vector<Place>& points) {
  std::string text;
  for (const Place& p : points) {
    for (const double x : p)
      text += std::to_string(std::lround(x / 0.02 + 0.123)) + " ";
  }
  return text;
}

}  // namespace

TEST(CrystalImages, OperatorsBringTheCentreIntoTheCellThatWasAskedFor) {
  const VXGraphMol mol = read_text(c2_pdb);
  const Crystal crystal(cell_of(mol), "C 1 2 1");
  float center[3];
  ASSERT_TRUE(VXMol::VXGetCenterOfMass(mol, center));
  for (const std::array<int, 3> shift :
       {std::array<int, 3>{0, 0, 0}, std::array<int, 3>{1, -2, 3}}) {
    const VXXtalSymmetry images(mol, shift[0], shift[1], shift[2]);
    ASSERT_TRUE(images.IsValid());
    ASSERT_EQ(images.NumOps(), 4U);
    for (unsigned int k = 0; k < images.NumOps(); ++k) {
      const Place c = image_of(images.Matrix(k), {center[0], center[1], center[2]});
      const gemmi::Fractional f = crystal.cell.fractionalize(gemmi::Position(c[0], c[1], c[2]));
      for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(std::floor(f.at(static_cast<int>(i))), shift[i]);
      EXPECT_EQ(images.GetOpNumber(k), k);
      EXPECT_EQ(images.IsIdentity(k), k == 0 && shift[0] == 0);
      // The image is the molecule under one of gemmi's operators and a lattice shift.
      int matches = 0;
      for (const gemmi::Op& op : crystal.ops) {
        bool same = true;
        for (const Place& p : places(mol)) {
          const Place mine = image_of(images.Matrix(k), p);
          const Place other = crystal.image(p, op, 0, 0, 0);
          const gemmi::Fractional d = crystal.cell.fractionalize(
              gemmi::Position(mine[0] - other[0], mine[1] - other[1], mine[2] - other[2]));
          for (const double x : {d.x, d.y, d.z})
            same = same && std::abs(x - std::round(x)) < 1e-5;
        }
        matches += same ? 1 : 0;
      }
      EXPECT_EQ(matches, 1) << k;
    }
  }
  const VXXtalSymmetry flagged(mol, true, false);
  EXPECT_TRUE(flagged.NumOps() == 4 && flagged.IsIdentity(0));
  EXPECT_TRUE(!flagged.Matrix(4) && !flagged.IsIdentity(4) && flagged.GetOpNumber(4) == 0);
  EXPECT_FALSE(VXXtalSymmetry(VXGraphMol(), 0, 0, 0).IsValid());
}

TEST(CrystalImages, NearAPointAreThoseWhoseBoxComesWithinTheRadius) {
  const VXGraphMol mol = read_text(c2_pdb);
  const Crystal crystal(cell_of(mol), "C 1 2 1");
  float center[3], extents[3];
  VXMol::VXGetCenterAndExtents(mol, center, extents);
  const std::array<float, 3> outside = {4, -3, 7};
  const std::array<float, 3> inside = {center[0], center[1], center[2]};
  for (const auto& [point, radius] : {std::pair{inside, 0.0}, std::pair{outside, 0.0},
                                      std::pair{outside, 6.3}, std::pair{outside, 15.0}}) {
    std::set<std::string> expected;
    // The atoms with the corners of their box behind them.
    std::vector<Place> points = places(mol);
    for (int corner = 0; corner < 8; ++corner) {
      points.emplace_back();
      for (std::size_t i = 0; i < 3; ++i)
        points.back()[i] = center[i] + ((corner >> i) % 2 == 0 ? -0.5 : 0.5) * extents[i];
    }
    crystal.for_each_image(
        points, [&, &point = point, &radius = radius](std::vector<Place> images) {
          double d2 = 0;
          for (std::size_t i = 0; i < 3; ++i) {
            const auto [low, high] =
                std::minmax_element(images.end() - 8, images.end(),
                                    [i](const Place& a, const Place& b) { return a[i] < b[i]; });
            const double d = std::max({(*low)[i] - point[i], point[i] - (*high)[i], 0.0});
            d2 += d * d;
          }
          images.resize(images.size() - 8);
          if (d2 <= radius * radius) expected.insert(rounded(images));
        });
    const VXXtalSymmetry images(mol, point.data(), static_cast<float>(radius));
    std::multiset<std::string> found;
    for (unsigned int i = 0; i < images.NumOps(); ++i) {
      std::vector<Place> atoms;
      for (const Place& p : places(mol))
        atoms.push_back(image_of(images.Matrix(i), p));
      found.insert(rounded(atoms));
      const Place moved = image_of(images.Matrix(i), {1, 1, 1});
      EXPECT_EQ(images.IsIdentity(i),
                std::abs(moved[0] - 1) + std::abs(moved[1] - 1) + std::abs(moved[2] - 1) < 0.01);
    }
    EXPECT_EQ(found, std::multiset<std::string>(expected.begin(), expected.end())) << radius;
    EXPECT_EQ(expected.empty(), radius == 0 && point == outside);
  }
}

TEST(CrystalImages, RefuseWhatHasNoEnd) {
  const VXGraphMol mol = read_text(c2_pdb);
  const float point[3] = {0, 0, 0};
  EXPECT_FALSE(VXXtalSymmetry(mol, point, 1e6F).IsValid());
  EXPECT_FALSE(VXXtalSymmetry(mol, point, std::nanf("")).IsValid());
  VXGraphMol tiny = mol;
  VXSetPDBData(tiny, "CRYST1", "0.001 0.001 0.001 90 90 90                       P 1");
  EXPECT_FALSE(VXExpandCrystalSymmetryImpl(tiny, 50, point));
  EXPECT_EQ(tiny.NumAtoms(), 5U);
  // No operator enabled: an empty list that is valid, and nothing to realise.
  VXGraphMol off = mol;
  for (unsigned int op = 0; op < 4; ++op)
    VXXtalSymmetry::SetOpEnabled(off, op, false);
  VXXtalSymmetry none(off, 0, 0, 0);
  EXPECT_TRUE(none.IsValid());
  EXPECT_EQ(none.NumOps(), 0U);
  EXPECT_EQ(none.Realize(off, true, 0xFFFFFFFF), nullptr);
}

TEST(CrystalImages, AsAtomsAppendEveryEntryOfTheList) {
  VXGraphMol mol = read_text(c2_pdb);
  mol.SetTitle("gly");
  VXXtalSymmetry images(mol, 0, 0, 0);
  const std::unique_ptr<VXMolBase> copy(images.Realize(mol, true, 0xFFFFFFFF));
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(copy->IsDataType(type_ids::mc_mol));
  EXPECT_EQ(copy->GetTitle(), "Symmetry:gly");
  EXPECT_EQ(mol.NumAtoms(), 5U);
  ASSERT_EQ(copy->NumAtoms(), 25U);
  EXPECT_EQ(copy->NumBonds(), 5 * mol.NumBonds());
  const std::vector<Place> home = places(mol);
  const std::vector<Place> all = places(*copy);
  for (unsigned int i = 0; i < 25; ++i) {
    const VXAtomBase* atom = copy->GetAtom(i);
    EXPECT_EQ(VXAtomGetResidue(atom).GetModelNumber(), i < 5 ? 1 : static_cast<int>(i / 5));
    const Place want = i < 5 ? home[i] : image_of(images.Matrix(i / 5 - 1), home[i % 5]);
    for (std::size_t k = 0; k < 3; ++k)
      EXPECT_NEAR(all[i][k], want[k], 1e-4);
  }

  // One entry alone: copies before it stay at home, those behind it lie where it put them.
  VXGraphMol grown = mol;
  EXPECT_EQ(images.Realize(grown, false, 1), &grown);
  ASSERT_EQ(grown.NumAtoms(), 25U);
  EXPECT_EQ(grown.GetTitle(), "gly");
  const std::vector<Place> moved = places(grown);
  for (unsigned int i = 0; i < 25; ++i) {
    const Place want = i < 10 ? home[i % 5] : image_of(images.Matrix(1), home[i % 5]);
    for (std::size_t k = 0; k < 3; ++k)
      EXPECT_NEAR(moved[i][k], want[k], 1e-4);
  }

  // As conformers they stand one by one.
  VXMCMol conformers;
  ASSERT_TRUE(images.Realize(mol, conformers));
  ASSERT_TRUE(conformers.NumConfs() == 4 && conformers.NumAtoms() == 5);
  for (unsigned int i = 0; i < 20; ++i)
    EXPECT_NEAR(conformers.GetConf(i / 5)->coords()[3 * (i % 5)], all[i + 5][0], 1e-4);
  EXPECT_FALSE(VXXtalSymmetry().Realize(mol, conformers));
}

TEST(CrystalImages, AroundAMapAreAllAtomsOnItsGridTheHomeCopyTwice) {
  struct Case {
    std::string file, group;
    std::array<unsigned int, 3> sampling, dim;
    std::array<float, 3> mid;
  };
  const std::vector<Case> cases = {
      {"", "C 1 2 1", {20, 9, 14}, {20, 9, 14}, {2, 3, 1}},
      {"", "C 1 2 1", {40, 18, 28}, {13, 8, 9}, {2, 2, 4}},
      {"5wkd.pdb", "C 1 2 1", {60, 6, 18}, {40, 9, 20}, {15, 1, 2}},
      {"5i55.cif", "P 1 21 1", {30, 12, 30}, {31, 13, 31}, {5, 5, 5}},
  };
  for (const Case& c : cases) {
    VXGraphMol mol;
    if (!c.file.empty()) {
      if (!vxgrid_test::has_shared_data(c.file)) continue;
      ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data(c.file), mol));
      ASSERT_TRUE(VXSetXtalSymmetryFromPDBData(mol));
    } else {
      mol = read_text(c2_pdb);
    }
    const VXUnitCell cell = cell_of(mol);
    VXSkewGrid grid;
    grid.SetDim(c.dim[0], c.dim[1], c.dim[2]);
    grid.SetMid(c.mid[0], c.mid[1], c.mid[2]);
    grid.SetUnitCell(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma, c.sampling[0],
                     c.sampling[1], c.sampling[2]);

    // By fractional coordinates: an atom is on the grid if it is within half a step of its box.
    const Crystal crystal(cell, c.group);
    const gemmi::Fractional mid =
        crystal.cell.fractionalize(gemmi::Position(c.mid[0], c.mid[1], c.mid[2]));
    const auto is_on_grid = [&](const Place& p) {
      const gemmi::Fractional f = crystal.cell.fractionalize(gemmi::Position(p[0], p[1], p[2]));
      const std::array<double, 3> d = {f.x - mid.x, f.y - mid.y, f.z - mid.z};
      for (std::size_t i = 0; i < 3; ++i) {
        if (std::abs(d[i] * c.sampling[i]) > c.dim[i] / 2.0) return false;
      }
      return true;
    };
    std::vector<std::string> expected;
    for (const Place& p : places(mol)) {
      if (is_on_grid(p)) expected.push_back(rounded({p}));
    }
    crystal.for_each_image(places(mol), [&](const std::vector<Place>& images) {
      for (const Place& image : images) {
        if (is_on_grid(image)) expected.push_back(rounded({image}));
      }
    });
    ASSERT_TRUE(VXExpandCrystalSymmetry(grid, mol));
    std::vector<std::string> found;
    for (const Place& p : places(mol))
      found.push_back(rounded({p}));
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected) << c.file << " " << c.dim[0];
    EXPECT_GT(expected.size(), 4U);
  }
}

TEST(CrystalImages, AMapLendsItsSymmetryToAMoleculeWithoutAny) {
  VXSkewGrid grid;
  grid.SetDim(8, 8, 8);
  grid.SetUnitCell(8, 8, 8, 90, 90, 90, 8, 8, 8);
  grid.SetMid(3.5F, 3.5F, 3.5F);
  VXGraphMol bare;
  const float xyz[3] = {1, 2, 3};
  bare.SetCoords(bare.NewAtom(6), xyz);
  VXGraphMol mol = bare;
  EXPECT_FALSE(VXExpandCrystalSymmetry(grid, mol));
  EXPECT_EQ(mol.NumAtoms(), 1U);

  // P 2 2 2 around the origin: four atoms in the cell, and the home copy once more.
  grid.SetData("vx_symm", VXSymmetry(16, VXUnitCell(8, 8, 8, 90, 90, 90)));
  ASSERT_TRUE(VXExpandCrystalSymmetry(grid, mol));
  EXPECT_EQ(mol.NumAtoms(), 5U);
  EXPECT_TRUE(VXHasXtalSymmetry(mol));

  // Tags without a record do not suffice.
  VXGraphMol tagged = bare;
  ASSERT_TRUE(
      VXXtalSymmetry::SetSymmetry(tagged, VXSymmetry(16, VXUnitCell(8, 8, 8, 90, 90, 90)), false));
  VXSetPDBData(tagged, "CRYST1", "");
  EXPECT_TRUE(VXHasCrystalSymmetryImpl(tagged));
  EXPECT_FALSE(VXExpandCrystalSymmetryImpl(tagged, 5, nullptr));
}
