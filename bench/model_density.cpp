// Model density of about 1,200 atoms without crystal symmetry at 0.5 A, beside gemmi's
// DensityCalculator<IT92<double>, float>::add_model_density_to_grid on a grid of the same spacing.
//
// The two cut an atom's density at different radii, so that the figure to compare is touched points
// per second ("items_per_second"). gemmi 0.5.7 compiles for coefficients in double only. The
// expansion by symmetry mates is timed by itself.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gemmi/dencalc.hpp>
#include <gemmi/it92.hpp>
#include <random>
#include <vector>

#include "model_atoms.h"
#include "vxgrid/vxgrid.h"

namespace {

using namespace VXCore;
using vxgrid_bench::Atom;
using vxgrid_bench::gemmi_model;
using vxgrid_bench::our_model;
using vxgrid_bench::protein_elements;

/// A ball of atoms at the density of a protein, elements and B-factors as in one.
const std::vector<Atom>& protein_like() {
  static const std::vector<Atom> atoms = [] {
    std::mt19937 random(7);
    const auto uniform = [&](double low, double high) {
      return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
    };
    std::vector<Atom> made;
    constexpr double radius = 17.7;
    while (made.size() < 1200) {
      const double x = uniform(-radius, radius), y = uniform(-radius, radius),
                   z = uniform(-radius, radius);
      if (x * x + y * y + z * z > radius * radius) continue;
      made.push_back({protein_elements[random() % 10],
                      {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)},
                      static_cast<float>(uniform(10, 40))});
    }
    return made;
  }();
  return atoms;
}

/// Points strictly within the reach of an atom, where its widest Gaussian is at 1/e.
std::size_t count_our_points(const VXSkewGrid& grid) {
  const double spacing = grid.GetSpacing();
  const double mid[3] = {grid.GetXMid(), grid.GetYMid(), grid.GetZMid()};
  const unsigned int dim[3] = {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()};
  std::size_t points = 0;
  for (const Atom& atom : protein_like()) {
    const scatterT& row = scatter_data[find_scatter_row(static_cast<int>(atom.element), 0)];
    const double widest = std::max({row.b1, row.b2, row.b3, row.b4}) + atom.b_factor;
    const double reach2 = widest / 39.47841760435743;
    double first[3];
    for (int k = 0; k < 3; ++k)
      first[k] = mid[k] - (dim[k] - 1.0) / 2 * spacing - atom.xyz[k];
    const auto near = [&](int k, int sign) {
      return static_cast<int>((-first[k] + sign * std::sqrt(reach2)) / spacing);
    };
    for (int z = near(2, -1); z <= near(2, 1) + 1; ++z)
      for (int y = near(1, -1); y <= near(1, 1) + 1; ++y)
        for (int x = near(0, -1); x <= near(0, 1) + 1; ++x)
          if (std::pow(first[0] + x * spacing, 2) + std::pow(first[1] + y * spacing, 2) +
                  std::pow(first[2] + z * spacing, 2) <
              reach2)
            ++points;
  }
  return points;
}

/// On an atom the two agree, as neither has cut its density there.
void check_against_gemmi() {
  VXGraphMol mol;
  VXAtomBase* carbon = mol.NewAtom(6);
  const float origin[3] = {0, 0, 0};
  mol.SetCoords(carbon, origin);
  VXResidue residue;
  residue.SetBFactor(20);
  residue.SetOccupancy(1);
  VXAtomSetResidue(carbon, residue);
  VXScalarGrid grid(3, 3, 3, 0, 0, 0, 0.5f, "");
  VXScatterToGrid(grid, mol);
  const auto precal = gemmi::IT92<double>::get(gemmi::El::C).precalculate_density_iso(20.0, 0.0);
  const double expected = precal.calculate(0.25);
  if (!(std::fabs(grid[12] - expected) < 1e-3 * expected)) std::abort();
}

void vxgrid_density(benchmark::State& state) {
  const VXGraphMol mol = our_model(protein_like());
  VXSkewGrid grid;
  for (auto _ : state) {
    VXMakeGaussianScatterGrid(grid, mol, 0.5);
    benchmark::DoNotOptimize(grid.GetValues());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count_our_points(grid)));
}
BENCHMARK(vxgrid_density)->Unit(benchmark::kMillisecond);

/// Only the deposit, the lattice and the molecule being there already.
void vxgrid_density_deposit(benchmark::State& state) {
  const VXGraphMol mol = our_model(protein_like());
  VXSkewGrid grid;
  VXMakeGaussianScatterGrid(grid, mol, 0.5);
  for (auto _ : state) {
    VXScatterToGrid(grid, mol);
    benchmark::DoNotOptimize(grid.GetValues());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count_our_points(grid)));
}
BENCHMARK(vxgrid_density_deposit)->Unit(benchmark::kMillisecond);

void gemmi_density(benchmark::State& state) {
  const gemmi::Model model = gemmi_model(protein_like(), 25.0);
  gemmi::DensityCalculator<gemmi::IT92<double>, float> calculator;
  calculator.grid.unit_cell.set(50, 50, 50, 90, 90, 90);
  calculator.grid.spacegroup = gemmi::find_spacegroup_by_name("P 1");
  calculator.grid.set_size(100, 100, 100);
  for (auto _ : state) {
    calculator.grid.fill(0.f);
    calculator.add_model_density_to_grid(model);
    benchmark::DoNotOptimize(calculator.grid.data.data());
  }
  std::int64_t points = 0;
  for (const gemmi::Atom& atom : model.chains[0].residues[0].atoms) {
    const auto precal =
        gemmi::IT92<double>::get(atom.element).precalculate_density_iso(atom.b_iso, 0.0);
    calculator.grid.use_points_around<true>(
        calculator.grid.unit_cell.fractionalize(atom.pos),
        calculator.estimate_radius(precal, atom.b_iso), [&](float&, double) { ++points; }, false);
  }
  state.SetItemsProcessed(state.iterations() * points);
  check_against_gemmi();
}
BENCHMARK(gemmi_density)->Unit(benchmark::kMillisecond);

void vxgrid_expansion(benchmark::State& state) {
  VXGraphMol mol = our_model(protein_like());
  VXXtal::VXXtalSymmetry::SetSymmetry(
      mol, VXXtal::VXSymmetry("P 21 21 21", VXXtal::VXUnitCell(50, 50, 50, 90, 90, 90)), false);
  VXSkewGrid grid;
  grid.SetDim(101, 101, 101);
  grid.SetUnitCell(50, 50, 50, 90, 90, 90, 100, 100, 100);
  grid.SetMid(25, 25, 25);
  for (auto _ : state) {
    VXGraphMol crystal(mol);
    benchmark::DoNotOptimize(VXExpandCrystalSymmetry(grid, crystal));
  }
}
BENCHMARK(vxgrid_expansion)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
