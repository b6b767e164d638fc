// Crystals made of random atoms and their symmetry mates, with structure factors by direct sums.
#ifndef VXGRID_TESTS_REFLECTION_MADE_CRYSTAL_H
#define VXGRID_TESTS_REFLECTION_MADE_CRYSTAL_H

#include <array>               // for array
#include <cmath>               // for atan2
#include <complex>             // for complex
#include <gemmi/symmetry.hpp>  // for GroupOps, ReciprocalAsu, SpaceGroup
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <ostream>             // for ostream
#include <random>              // for mt19937
#include <vector>              // for vector

#include "vxgrid/reflection/reflection.h"

namespace vxgrid_test {

using Hkl = std::array<int, 3>;
constexpr double two_pi = 6.283185307179586;

struct CrystalCase {
  const char* gemmi_name;
  unsigned int number;
  std::array<double, 6> cell;
};
inline void PrintTo(const CrystalCase& crystal, std::ostream* os) {
  *os << crystal.gemmi_name;
}

/// A group or two of every crystal system: centred and not, with screws, glides and a centre.
inline const std::vector<CrystalCase>& crystal_cases() {
  static const std::vector<CrystalCase> cases = {
      {"P -1", 2, {7, 8.5, 10, 75, 82, 101}},      {"C 1 2 1", 5, {13, 6, 9, 90, 104, 90}},
      {"P 1 21/c 1", 14, {7, 9, 8, 90, 97, 90}},   {"F d d 2", 43, {14, 16, 11, 90, 90, 90}},
      {"P 21 21 21", 19, {7, 9, 11, 90, 90, 90}},  {"P 43 21 2", 96, {9, 9, 13, 90, 90, 90}},
      {"P 31", 144, {8, 8, 12, 90, 90, 120}},      {"R 3:H", 146, {12, 12, 9, 90, 90, 120}},
      {"P 61 2 2", 178, {8, 8, 15, 90, 90, 120}},  {"P 21 3", 198, {9, 9, 9, 90, 90, 90}},
      {"F 41 3 2", 210, {15, 15, 15, 90, 90, 90}},
  };
  return cases;
}

class MadeCrystal {
 public:
  MadeCrystal(const CrystalCase& crystal, double resolution)
      : group(*gemmi::find_spacegroup_by_name(crystal.gemmi_name)),
        ops(group.operations()),
        cell(crystal.cell[0], crystal.cell[1], crystal.cell[2], crystal.cell[3], crystal.cell[4],
             crystal.cell[5]),
        number(crystal.number) {
    std::mt19937 random(20260727);
    std::uniform_real_distribution<double> place(0, 1);
    for (int atom = 0; atom < 4; ++atom) {
      const gemmi::Fractional home(place(random), place(random), place(random));
      const double weight = 4 + 5 * place(random);
      for (const gemmi::Op op : ops) {
        const auto moved = op.apply_to_xyz({home.x, home.y, home.z});
        atoms.push_back({{moved[0], moved[1], moved[2]}, weight});
      }
    }
    const int reach = static_cast<int>(17 / resolution) + 1;
    for (int h = -reach; h <= reach; ++h)
      for (int k = -reach; k <= reach; ++k)
        for (int l = -reach; l <= reach; ++l) {
          const double d2 = cell.calculate_1_d2({{h, k, l}});
          if (d2 > 0 && d2 * resolution * resolution < 1 &&
              !ops.is_systematically_absent({{h, k, l}}))
            sphere.push_back({h, k, l});
        }
    const gemmi::ReciprocalAsu asu(&group);
    for (const Hkl& hkl : sphere) {
      if (!asu.is_in({{hkl[0], hkl[1], hkl[2]}})) continue;
      const bool is_upper = std::array{hkl[2], hkl[0], hkl[1]} > std::array{0, 0, 0};
      unique.push_back(is_upper ? hkl : Hkl{-hkl[0], -hkl[1], -hkl[2]});
    }
  }

  std::complex<double> structure_factor(const Hkl& hkl) const {
    std::complex<double> sum = 0;
    for (const Atom& atom : atoms)
      sum += std::polar(atom.weight, two_pi * (hkl[0] * atom.place[0] + hkl[1] * atom.place[1] +
                                               hkl[2] * atom.place[2]));
    return sum;
  }

  /// The electron density at a fractional point, over the whole sphere.
  double density(double x, double y, double z) const {
    if (factors_.empty())
      for (const Hkl& hkl : sphere)
        factors_.push_back(structure_factor(hkl));
    double sum = 0;
    for (std::size_t i = 0; i < sphere.size(); ++i)
      sum += (factors_[i] *
              std::polar(1.0, -two_pi * (sphere[i][0] * x + sphere[i][1] * y + sphere[i][2] * z)))
                 .real();
    return sum / cell.volume;
  }

  /// Indices and calculated columns of these reflections, with cell and group.
  VXCore::VXReflection reflections(const std::vector<Hkl>& list) const {
    std::vector<int> h, k, l;
    std::vector<float> amplitude, phase;
    for (const Hkl& hkl : list) {
      h.push_back(hkl[0]);
      k.push_back(hkl[1]);
      l.push_back(hkl[2]);
      const std::complex<double> factor = structure_factor(hkl);
      amplitude.push_back(static_cast<float>(std::abs(factor)));
      phase.push_back(static_cast<float>(std::arg(factor) * 360 / two_pi));
    }
    const auto n = static_cast<unsigned int>(list.size());
    VXCore::VXReflection set;
    set.SetCount(n);
    set.SetHKL(h.data(), k.data(), l.data(), n);
    set.SetFcalc(amplitude.data(), n);
    set.SetPhaseCalc(phase.data(), n);
    const auto f = [](double value) { return static_cast<float>(value); };
    set.SetSymmetry(VXCore::VXXtal::VXSymmetry(
        number, VXCore::VXXtal::VXUnitCell(f(cell.a), f(cell.b), f(cell.c), f(cell.alpha),
                                           f(cell.beta), f(cell.gamma))));
    return set;
  }

  const gemmi::SpaceGroup& group;
  gemmi::GroupOps ops;
  gemmi::UnitCell cell;
  unsigned int number;
  std::vector<Hkl> sphere;  ///< All reflections to the resolution, absent ones left out.
  std::vector<Hkl> unique;  ///< Those of the asymmetric unit, in the upper half.

 private:
  struct Atom {
    std::array<double, 3> place;
    double weight;
  };
  std::vector<Atom> atoms;
  mutable std::vector<std::complex<double>> factors_;
};

}  // namespace vxgrid_test

#endif
