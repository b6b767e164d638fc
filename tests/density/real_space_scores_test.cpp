// Real-space scores against direct sums, invariances and a real structure.
#include "vxgrid/density/real_space_scores.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/messages.h"
#include "support/models.h"
#include "support/shared_data.h"
#include "vxgrid/density/model_density.h"
#include "vxgrid/density/resolution.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz.h"

namespace VXCore {
namespace {

using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;

const std::vector<ModelAtom> peptide = {{7, 0, 0, 0, 12, 1},         {6, 1.46f, 0, 0, 12, 1},
                                        {6, 2.0f, 1.42f, 0, 14, 1},  {8, 1.25f, 2.4f, 0, 18, 1},
                                        {7, 3.33f, 1.5f, 0, 12, 2},  {6, 4.0f, 2.8f, 0.1f, 12, 2},
                                        {1, 4.6f, 2.9f, 0.9f, 10, 2}};

/// A smooth field that has nothing to do with the model.
VXScalarGrid wavy_grid(float phase) {
  VXScalarGrid grid(33, 31, 29, 2, 1, 0, 0.4f, "");
  std::vector<float> values(grid.GetSize());
  for (unsigned int e = 0; e < grid.GetSize(); ++e) {
    float x, y, z;
    grid.ElementToSpatialCoord(e, x, y, z);
    values[e] = std::sin(x + phase) + 0.5f * std::cos(1.3f * y) + 0.2f * z + 2;
  }
  grid.SetValues(values.data(), grid.GetSize());
  return grid;
}

TEST(RealSpaceScores, between_two_maps_are_the_textbook_sums_near_heavy_atoms) {
  const VXGraphMol model = make_model(peptide);
  const VXScalarGrid observed = wavy_grid(0), calculated = wavy_grid(0.7f);
  constexpr double radius = 1.3;
  // The compared sub-grid lies at the model's centre: sums over any fine lattice of the same field
  // come close, so take the annotated grids, which are that lattice, and redo mask and sums.
  VXGraphMol annotated = model;
  const double rscc = VXAnnotateRSCC(observed, calculated, annotated, radius);
  VXScalarGrid o, c, mask;
  ASSERT_TRUE(annotated.GetData("ed", o) && annotated.GetData("scatter", c) &&
              annotated.GetData("mask", mask));
  double n = 0, so = 0, sc = 0, soo = 0, scc = 0, soc = 0, difference = 0, total = 0;
  for (unsigned int e = 0; e < o.GetSize(); ++e) {
    float x, y, z;
    o.ElementToSpatialCoord(e, x, y, z);
    double nearest = 1e9;
    for (const ModelAtom& atom : peptide)
      if (atom.element != 1)
        nearest = std::min<double>(nearest, std::hypot(x - atom.x, y - atom.y, z - atom.z));
    ASSERT_EQ(mask[e], nearest <= radius ? 2.0f : 0.0f) << e;
    if (nearest > radius) {
      ASSERT_EQ(c[e], 0.0f) << e;
      continue;
    }
    ++n, so += o[e], sc += c[e], soo += o[e] * o[e], scc += c[e] * c[e], soc += o[e] * c[e];
    difference += std::fabs(c[e] - o[e]), total += std::fabs(c[e] + o[e]);
  }
  EXPECT_GT(n, 100);
  const double expected = (soc / n - so / n * sc / n) /
                          std::sqrt((soo / n - so / n * so / n) * (scc / n - sc / n * sc / n));
  EXPECT_NEAR(rscc, expected, 1e-6);
  EXPECT_NEAR(VXRSCC(observed, calculated, model, radius), expected, 1e-6);
  EXPECT_NEAR(VXRSR(observed, calculated, model, radius), difference / total, 1e-6);
}

TEST(RealSpaceScores, of_a_model_against_its_own_density_are_perfect) {
  const VXGraphMol model = make_model(peptide);
  VXGraphMol heavy = model;
  VXSuppressHydrogens(heavy, false, false, true);
  VXScalarGrid density;
  ASSERT_TRUE(VXMakeGaussianScatterGrid(density, heavy, 0.5));
  EXPECT_NEAR(VXRSCC(density, density, model, 1.5), 1.0, 1e-12);
  EXPECT_EQ(VXRSR(density, density, model, 1.5), 0.0);
  EXPECT_NEAR(VXRSCC(model, model, 1.5), 1.0, 1e-12);
  EXPECT_EQ(VXRSR(model, model, 1.5), 0.0);

  VXGraphMol shifted = model;
  const float shift[3] = {0.4f, 0.3f, 0.2f};
  VXTranslate(shifted, shift);
  const double near = VXRSCC(model, shifted, 1.5);
  VXTranslate(shifted, shift);
  const double far = VXRSCC(model, shifted, 1.5);
  EXPECT_GT(near, far);
  EXPECT_GT(VXRSR(model, shifted, 1.5), 0.1);
  EXPECT_LT(near, 0.95);
}

TEST(RealSpaceScores, fail_with_their_warnings) {
  const ModelAtom lone[] = {{6, 0.23f, 0.19f, 0.21f}};
  const VXGraphMol model = make_model(lone);
  const VXScalarGrid map = wavy_grid(0);
  {
    const vxgrid_test::MessageCapture messages;
    EXPECT_EQ(VXRSCC(map, map, model, 1e-3), -1.0);
    EXPECT_EQ(VXRSR(map, map, model, 1e-3), -1.0);
    EXPECT_TRUE(messages.warned("Masking the molecule failed (only one element set)"));
  }
  const VXScalarGrid flat(21, 21, 21, 0, 0, 0, 0.5f, "");
  const vxgrid_test::MessageCapture messages;
  EXPECT_EQ(VXRSCC(flat, flat, model, 1.5), -1.0);
  EXPECT_TRUE(
      messages.warned("RSCC: Empty grid (perhaps missing symmetry information for molecule"));
  EXPECT_TRUE(std::isnan(VXRSR(flat, flat, model, 1.5)));
}

struct Steps : VXTracerBase {
  void Report(unsigned int current, unsigned int total) override {
    seen.push_back({current, total});
  }
  std::vector<std::pair<unsigned int, unsigned int>> seen;
};

TEST(RealSpaceScores, per_residue_tag_the_atoms_with_the_score_of_their_residue_alone) {
  VXGraphMol model = make_model(peptide);
  const VXSkewGrid observed(wavy_grid(0)), calculated(wavy_grid(0.7f));
  Steps steps;
  VXResidueRSCC(observed, calculated, model, 1.3, steps);
  VXNullTracer silent;
  VXResidueRSR(observed, calculated, model, 1.3, silent);
  const std::vector<std::pair<unsigned int, unsigned int>> expected = {{0, 2}, {1, 2}};
  EXPECT_EQ(steps.seen, expected);
  for (const int number : {1, 2}) {
    std::vector<ModelAtom> alone;
    for (const ModelAtom& atom : peptide)
      if (atom.residue == number) alone.push_back(atom);
    const double rscc = VXRSCC(observed, calculated, make_model(alone), 1.3);
    const double rsr = VXRSR(observed, calculated, make_model(alone), 1.3);
    unsigned int counted = 0;
    for (const VXAtomBase* atom : model.GetAtoms()) {
      if (VXAtomGetResidue(atom).GetResidueNumber() != number) continue;
      EXPECT_EQ(atom->GetFloatData("rscc"), static_cast<float>(rscc));
      EXPECT_EQ(atom->GetFloatData("rsr"), static_cast<float>(rsr));
      ++counted;
    }
    EXPECT_EQ(counted, alone.size());
  }
}

TEST(RealSpaceScores, of_a_real_peptide_agree_with_an_independent_calculation) {
  for (const char* file : {"5wkd.pdb", "5wkd_phases.mtz"})
    if (!vxgrid_test::has_shared_data(file)) GTEST_SKIP() << vxgrid_test::missing_data(file);
  VXGraphMol model;
  ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data("5wkd.pdb"), model));
  VXSkewGrid map;
  ASSERT_TRUE(VXReadMTZ(vxgrid_test::shared_data("5wkd_phases.mtz"), map, VXMTZMapType::Fwt));
  EXPECT_NEAR(VXRSCC(map, model, 1.5), 0.851, 0.002);
  EXPECT_NEAR(VXRSCC(map, model, VXGetEDSRadius(1.8)), 0.67, 0.01);

  VXNullTracer silent;
  VXResidueRSCC(map, model, VXGetEDSRadius(1.8), silent);
  for (const VXAtomBase* atom : model.GetAtoms()) {
    const VXResidue& residue = VXAtomGetResidue(atom);
    if (residue.GetName() != "ASN" || residue.GetResidueNumber() != 301) continue;
    EXPECT_NEAR(atom->GetFloatData("rscc"), 0.45, 0.03);  // it crosses a cell face
  }

  const float shift[3] = {0.577f, 0.577f, 0.577f};
  VXTranslate(model, shift);
  EXPECT_LT(VXRSCC(map, model, 1.5), 0.5);
}

}  // namespace
}  // namespace VXCore
