// Structure factors of a protein of 1,200 atoms in P 21 21 21 to 1.5 A, beside gemmi's direct
// summation, StructureFactorCalculator<IT92<double>>, over a part of the reflections.
//
// The figure to compare is terms per second ("items_per_second"): a term is one atom under one
// operator for one reflection.

#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdlib>
#include <gemmi/it92.hpp>
#include <gemmi/sfcalc.hpp>
#include <gemmi/symmetry.hpp>
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

constexpr float edge = 38;
constexpr double resolution = 1.5;
constexpr std::size_t operators = 4;

/// Elements and B-factors as in a protein, anywhere in the asymmetric unit.
const std::vector<Atom>& protein_like() {
  static const std::vector<Atom> atoms = [] {
    std::mt19937 random(7);
    const auto uniform = [&](double low, double high) {
      return static_cast<float>(low +
                                (high - low) * (static_cast<double>(random()) / 4294967296.0));
    };
    std::vector<Atom> made(1200);
    for (Atom& atom : made)
      atom = {protein_elements[random() % 10],
              {uniform(0, edge / 2), uniform(0, edge / 2), uniform(0, edge)},
              uniform(10, 40)};
    return made;
  }();
  return atoms;
}

gemmi::UnitCell gemmi_cell() {
  gemmi::UnitCell cell(edge, edge, edge, 90, 90, 90);
  cell.set_cell_images_from_spacegroup(gemmi::find_spacegroup_by_number(19));
  return cell;
}

/// The asymmetric unit of the reflections.
std::vector<gemmi::Miller> reflection_list() {
  const gemmi::UnitCell cell = gemmi_cell();
  constexpr int reach = static_cast<int>(edge / resolution) + 1;
  std::vector<gemmi::Miller> list;
  for (int h = 0; h <= reach; ++h)
    for (int k = 0; k <= reach; ++k)
      for (int l = 0; l <= reach; ++l)
        if (h + k + l > 0 && cell.calculate_d({{h, k, l}}) > resolution)
          list.push_back({{h, k, l}});
  return list;
}

VXReflection our_reflections(const std::vector<gemmi::Miller>& list) {
  std::vector<int> h, k, l;
  for (const gemmi::Miller& hkl : list) {
    h.push_back(hkl[0]);
    k.push_back(hkl[1]);
    l.push_back(hkl[2]);
  }
  const auto n = static_cast<unsigned int>(list.size());
  VXReflection set;
  set.SetCount(n);
  set.SetHKL(h.data(), k.data(), l.data(), n);
  set.SetSymmetry(VXXtal::VXSymmetry(19, VXXtal::VXUnitCell(edge, edge, edge, 90, 90, 90)));
  return set;
}

std::int64_t term_count(std::size_t reflections) {
  return static_cast<std::int64_t>(protein_like().size() * operators * reflections);
}

void vxgrid_structure_factors(benchmark::State& state) {
  const VXGraphMol model = our_model(protein_like());
  const std::vector<gemmi::Miller> list = reflection_list();
  VXReflection set = our_reflections(list);
  for (auto _ : state) {
    if (!set.SFCalc(model)) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * term_count(list.size()));
}
BENCHMARK(vxgrid_structure_factors)->Unit(benchmark::kMillisecond);

void gemmi_structure_factors(benchmark::State& state) {
  const gemmi::UnitCell cell = gemmi_cell();
  const gemmi::Model model = gemmi_model(protein_like(), 0.0);
  std::vector<gemmi::Miller> list;
  const std::vector<gemmi::Miller> all = reflection_list();
  for (std::size_t i = 0; i < all.size(); i += 50)
    list.push_back(all[i]);
  gemmi::StructureFactorCalculator<gemmi::IT92<double>> calculator(cell);
  std::vector<std::complex<double>> factors(list.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < list.size(); ++i)
      factors[i] = calculator.calculate_sf_from_model(model, list[i]);
    benchmark::DoNotOptimize(factors.data());
  }
  state.SetItemsProcessed(state.iterations() * term_count(list.size()));

  VXReflection set = our_reflections(list);
  std::vector<float> amplitudes(list.size());
  if (!set.SFCalc(our_model(protein_like())) || !set.GetFcalc(amplitudes.data())) std::abort();
  double sum = 0, difference = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    sum += std::abs(factors[i]);
    difference += std::fabs(std::abs(factors[i]) - static_cast<double>(amplitudes[i]));
  }
  if (!(difference < 0.02 * sum)) std::abort();
}
BENCHMARK(gemmi_structure_factors)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
