// Real-space correlation and residual of a model against a map.
#include "vxgrid/density/real_space_scores.h"

#include <algorithm>  // for fill_n, max, min
#include <array>      // for array
#include <cmath>      // for fabs, sqrt
#include <cstddef>    // for size_t
#include <vector>     // for vector

#include "grid/lattice.h"
#include "vxgrid/density/model_density.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridmath/regularize.h"

namespace VXCore {

namespace {

constexpr double failed = -1.0;
/// How much wider than the model's box the compared region is, Angstrom.
constexpr float border = 4.0f;
/// Spacing of density that is calculated for a comparison, Angstrom.
constexpr double calculated_spacing = 0.5;

enum class Score { correlation, residual };

VXGraphMol without_hydrogens(const VXMolBase& mol) {
  VXGraphMol heavy(mol);
  VXSuppressHydrogens(heavy, false, false, true);
  heavy.Sweep();
  return heavy;
}

struct Box {
  std::array<float, 3> center{};
  std::array<float, 3> extents{};
};

Box box_around(const VXMolBase& mol) {
  Box box;
  VXGetCenterAndExtents(mol, box.center.data(), box.extents.data());
  for (float& extent : box.extents)
    extent += border;
  return box;
}

/// Sets the mask to 2 at the points within `radius` of one atom.
void mask_sphere(VXScalarGrid& mask, const float* xyz, double radius) {
  const std::array<unsigned int, 3> dim = {mask.GetXDim(), mask.GetYDim(), mask.GetZDim()};
  const std::array<float, 3> mid = {mask.GetXMid(), mask.GetYMid(), mask.GetZMid()};
  const float spacing = mask.GetSpacing();

  // Squared distances along each axis, for the indices that the radius covers.
  std::array<std::size_t, 3> first{};
  std::array<std::vector<double>, 3> squares;
  for (std::size_t k = 0; k < 3; ++k) {
    for (unsigned int i = 0; i < dim[k]; ++i) {
      const float at = detail::regular_coordinate(static_cast<float>(i), dim[k], mid[k], spacing);
      const double d = static_cast<double>(at) - xyz[k];
      if (!(std::fabs(d) <= radius)) continue;
      if (squares[k].empty()) first[k] = i;
      squares[k].push_back(d * d);
    }
  }
  const double limit = radius * radius;
  float* values = mask.GetValues();
  for (std::size_t z = 0; z < squares[2].size(); ++z) {
    for (std::size_t y = 0; y < squares[1].size(); ++y) {
      const double rest = squares[2][z] + squares[1][y];
      float* row = values + ((first[2] + z) * dim[1] + first[1] + y) * dim[0] + first[0];
      for (std::size_t x = 0; x < squares[0].size(); ++x)
        if (rest + squares[0][x] <= limit) row[x] = std::max(row[x], 2.0f);
    }
  }
}

/// The sums that both scores are made of.
struct Sums {
  std::size_t n = 0;
  double o = 0, c = 0, oo = 0, cc = 0, oc = 0;
  double difference = 0, total = 0;

  void add(double observed, double calculated) {
    ++n;
    o += observed;
    c += calculated;
    oo += observed * observed;
    cc += calculated * calculated;
    oc += observed * calculated;
    difference += std::fabs(calculated - observed);
    total += std::fabs(observed + calculated);
  }
};

double finish(const Sums& sums, Score score) {
  if (sums.n < 2) {
    VXThrow.Warning("Masking the molecule failed (only one element set)");
    return failed;
  }
  if (score == Score::residual) return sums.difference / sums.total;
  const double n = static_cast<double>(sums.n);
  const double root = std::sqrt((n * sums.cc - sums.c * sums.c) * (n * sums.oo - sums.o * sums.o));
  if (root == 0.0) {
    VXThrow.Warning("RSCC: Empty grid (perhaps missing symmetry information for molecule");
    return failed;
  }
  return (n * sums.oc - sums.o * sums.c) / root;
}

/// The comparison itself, of two regular grids of one shape around the atoms of `masking`.
/// `annotated` may be null.
double compare(const VXScalarGrid& observed, VXScalarGrid& calculated, VXGraphMol& masking,
               VXMolBase* annotated, double radius, Score score) {
  const std::size_t size = observed.GetSize();
  if (calculated.GetSize() != size) return failed;
  VXScalarGrid mask(observed);
  if (size != 0) std::fill_n(mask.GetValues(), size, 0.0f);
  VXAssignBondiVdWRadii(masking);
  for (const VXAtomBase* atom : masking.GetAtoms()) {
    std::array<float, 3> xyz{};
    masking.GetCoords(atom, xyz.data());
    mask_sphere(mask, xyz.data(), radius);
  }

  Sums sums;
  const float* marks = mask.GetValues();
  const float* o = observed.GetValues();
  float* c = calculated.GetValues();
  for (std::size_t i = 0; i < size; ++i) {
    if (marks[i] > 0.0f)
      sums.add(o[i], c[i]);
    else
      c[i] = 0.0f;
  }
  if (annotated != nullptr) {
    annotated->SetData("scatter", calculated);
    annotated->SetData("mask", mask);
    annotated->SetData("ed", observed);
  }
  return finish(sums, score);
}

/// The shortest of the three steps from the first lattice point to its neighbours, Angstrom.
float shortest_step(const VXSkewGrid& grid) {
  const detail::OrientedLattice lattice(grid.GetImpl().GetImpl());
  const detail::Vector3 origin = lattice.place(0, 0, 0);
  const auto distance = [&](const detail::Vector3& to) {
    double squares = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      const double d = static_cast<double>(to[k]) - origin[k];
      squares += d * d;
    }
    return std::sqrt(squares);
  };
  return static_cast<float>(
      std::min({distance(lattice.place(1, 0, 0)), distance(lattice.place(0, 1, 0)),
                distance(lattice.place(0, 0, 1))}));
}

/// Cuts both maps to the region around the model and compares them there. `calculated_wraps` says
/// whether the calculated map is periodic.
double compare_maps(const VXSkewGrid& observed, const VXSkewGrid& calculated, bool calculated_wraps,
                    const VXMolBase& mol, VXGraphMol& masking, VXMolBase* annotated, double radius,
                    Score score) {
  const Box box = box_around(mol);
  const float spacing = shortest_step(observed);
  VXScalarGrid observed_part, calculated_part;
  if (!VXMakeRegularSubGrid(observed_part, observed, box.center.data(), box.extents.data(), spacing,
                            observed.GetReentrant() != 0) ||
      !VXMakeRegularSubGrid(calculated_part, calculated, box.center.data(), box.extents.data(),
                            spacing, calculated_wraps))
    return failed;
  return compare(observed_part, calculated_part, masking, annotated, radius, score);
}

double score_map(const VXSkewGrid& grid, const VXMolBase& mol, VXMolBase* annotated, double radius,
                 Score score) {
  VXGraphMol heavy = without_hydrogens(mol);
  VXSkewGrid calculated(grid);
  VXMakeGaussianScatterGrid(calculated, heavy, calculated_spacing);
  return compare_maps(grid, calculated, false, mol, heavy, annotated, radius, score);
}

double score_maps(const VXSkewGrid& observed, const VXSkewGrid& calculated, const VXMolBase& mol,
                  VXMolBase* annotated, double radius, Score score) {
  VXGraphMol heavy = without_hydrogens(mol);
  return compare_maps(observed, calculated, calculated.GetReentrant() != 0, mol, heavy, annotated,
                      radius, score);
}

double score_models(const VXMolBase& mol1, const VXMolBase& mol2, VXMolBase* annotated,
                    double radius, Score score) {
  VXGraphMol heavy1 = without_hydrogens(mol1);
  const VXGraphMol heavy2 = without_hydrogens(mol2);
  VXGraphMol both(heavy1);
  both += heavy2;
  const Box box = box_around(both);
  VXScalarGrid density1, density2;
  constexpr float spacing = static_cast<float>(calculated_spacing);
  VXMakeGridFromCenterAndExtents(density1, box.center.data(), box.extents.data(), spacing);
  VXMakeGridFromCenterAndExtents(density2, box.center.data(), box.extents.data(), spacing);
  VXScatterToGrid(density1, heavy1);
  VXScatterToGrid(density2, heavy2);
  return compare(density1, density2, heavy1, annotated, radius, score);
}

void score_residues(const VXSkewGrid& observed, const VXSkewGrid& calculated, VXMolBase& mol,
                    double radius, VXTracerBase& tracer, Score score, const char* tag) {
  const std::vector<VXResidue> residues = VXGetResiduesImpl(mol);
  const auto total = static_cast<unsigned int>(residues.size());
  for (unsigned int i = 0; i < total; ++i) {
    VXGraphMol part;
    VXSubsetMol(part, mol, VXAtomIsInResidue(residues[i]));
    const double result = score_maps(observed, calculated, part, nullptr, radius, score);
    for (VXAtomBase* atom : VXGetResidueAtomsImpl(mol, residues[i], 15))
      atom->SetFloatData(tag, static_cast<float>(result));
    tracer.Report(i, total);
  }
}

/// The density of the whole molecule on the lattice of a map.
VXSkewGrid calculated_like(const VXSkewGrid& grid, const VXMolBase& mol) {
  VXSkewGrid calculated(grid);
  VXScatterToGrid(calculated, mol);
  return calculated;
}

}  // namespace

double VXRSCC(const VXSkewGrid& grid, const VXMolBase& mol, double radius) {
  return score_map(grid, mol, nullptr, radius, Score::correlation);
}

double VXRSCC(const VXScalarGrid& grid, const VXMolBase& mol, double radius) {
  return VXRSCC(VXSkewGrid(grid), mol, radius);
}

double VXRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, const VXMolBase& mol, double radius) {
  return score_maps(obs, calc, mol, nullptr, radius, Score::correlation);
}

double VXRSCC(const VXScalarGrid& obs, const VXScalarGrid& calc, const VXMolBase& mol,
              double radius) {
  return VXRSCC(VXSkewGrid(obs), VXSkewGrid(calc), mol, radius);
}

double VXRSCC(const VXMolBase& mol1, const VXMolBase& mol2, double radius) {
  return score_models(mol1, mol2, nullptr, radius, Score::correlation);
}

double VXRSR(const VXSkewGrid& grid, const VXMolBase& mol, double radius) {
  return score_map(grid, mol, nullptr, radius, Score::residual);
}

double VXRSR(const VXScalarGrid& grid, const VXMolBase& mol, double radius) {
  return VXRSR(VXSkewGrid(grid), mol, radius);
}

double VXRSR(const VXSkewGrid& obs, const VXSkewGrid& calc, const VXMolBase& mol, double radius) {
  return score_maps(obs, calc, mol, nullptr, radius, Score::residual);
}

double VXRSR(const VXScalarGrid& obs, const VXScalarGrid& calc, const VXMolBase& mol,
             double radius) {
  return VXRSR(VXSkewGrid(obs), VXSkewGrid(calc), mol, radius);
}

double VXRSR(const VXMolBase& mol1, const VXMolBase& mol2, double radius) {
  return score_models(mol1, mol2, nullptr, radius, Score::residual);
}

double VXAnnotateRSCC(const VXSkewGrid& grid, VXMolBase& mol, double radius) {
  return score_map(grid, mol, &mol, radius, Score::correlation);
}

double VXAnnotateRSCC(const VXScalarGrid& grid, VXMolBase& mol, double radius) {
  return VXAnnotateRSCC(VXSkewGrid(grid), mol, radius);
}

double VXAnnotateRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol,
                      double radius) {
  return score_maps(obs, calc, mol, &mol, radius, Score::correlation);
}

double VXAnnotateRSCC(const VXScalarGrid& obs, const VXScalarGrid& calc, VXMolBase& mol,
                      double radius) {
  return VXAnnotateRSCC(VXSkewGrid(obs), VXSkewGrid(calc), mol, radius);
}

double VXAnnotateRSCC(VXMolBase& mol1, const VXMolBase& mol2, double radius) {
  return score_models(mol1, mol2, &mol1, radius, Score::correlation);
}

void VXResidueRSCC(const VXSkewGrid& grid, VXMolBase& mol, double radius, VXTracerBase& tracer) {
  VXResidueRSCC(grid, calculated_like(grid, mol), mol, radius, tracer);
}

void VXResidueRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol, double radius,
                   VXTracerBase& tracer) {
  score_residues(obs, calc, mol, radius, tracer, Score::correlation, "rscc");
}

void VXResidueRSR(const VXSkewGrid& grid, VXMolBase& mol, double radius, VXTracerBase& tracer) {
  VXResidueRSR(grid, calculated_like(grid, mol), mol, radius, tracer);
}

void VXResidueRSR(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol, double radius,
                  VXTracerBase& tracer) {
  score_residues(obs, calc, mol, radius, tracer, Score::residual, "rsr");
}

}  // namespace VXCore
