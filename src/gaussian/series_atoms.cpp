// The atomic form of a molecule, and the one with a negative term per bond.
#include <array>    // for array
#include <cmath>    // for exp, log, pow, sqrt
#include <cstddef>  // for size_t

#include "gaussian/atom_radii.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

int Gaussian::build_atomic(const VXMolBase& mol, bool with_bonds, bool no_hydrogens, Gsphere** out,
                           int* count) {
  result.clear();
  *out = nullptr;
  *count = 0;
  if (!mol) return 0;
  coords.assign(3 * std::size_t{mol.GetMaxAtomIdx()}, 0.0f);
  mol.GetCoords(coords.data());
  radii.assign(mol.GetMaxAtomIdx(), 0.0f);
  const bool own = detail::has_radii(mol);
  for (const VXAtomBase* atom : mol.GetAtoms())
    radii[atom->GetIdx()] = own ? atom->GetRadius() : detail::element_radius(atom->GetAtomicNum());
  const auto is_kept = [&](const VXAtomBase* atom) {
    return radii[atom->GetIdx()] != 0.0f && !(no_hydrogens && atom->IsHydrogen());
  };

  // kappa of the prefactor, the power taken through exp and log.
  constexpr float three_root_pi_over_four = 1.3293405f;
  constexpr float two_thirds = 0.6666667f;
  const float kappa = std::exp(std::log(prefactor * three_root_pi_over_four) * two_thirds);
  result.reserve(mol.NumAtoms() + (with_bonds ? mol.NumBonds() : 0));
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    if (!is_kept(atom)) continue;
    constexpr float sphere_volume = 4.1887903f;  // 4 pi/3
    const float* const centre = &coords[3 * std::size_t{atom->GetIdx()}];
    const float r = radii[atom->GetIdx()];
    Gsphere& term = result.emplace_back();
    term.width = kappa / (r * r);
    term.x = centre[0];
    term.y = centre[1];
    term.z = centre[2];
    term.prefactor = prefactor;
    term.volume = r * r * (r * sphere_volume);
    term.radius = r;
  }
  if (!with_bonds) return hand_out(out, count);

  for (const VXBondBase* bond : mol.GetBonds()) {
    if (!is_kept(bond->GetBgn()) || !is_kept(bond->GetEnd())) continue;
    constexpr float pi_to_three_halves = 5.568328f;
    constexpr double three_over_four_pi = 0.2387324;
    constexpr double one_third = 0.33333;
    const std::size_t a = bond->GetBgn()->GetIdx();
    const std::size_t b = bond->GetEnd()->GetIdx();
    const float wa = kappa / (radii[a] * radii[a]);
    const float wb = kappa / (radii[b] * radii[b]);
    const float sum = wa + wb;
    std::array<float, 3> centre{};
    float squared = 0.0f;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float at_a = coords[3 * a + axis];
      const float at_b = coords[3 * b + axis];
      centre[axis] = (wa * at_a + wb * at_b) / sum;
      squared += (at_a - at_b) * (at_a - at_b);
    }
    Gsphere& term = result.emplace_back();
    term.width = sum;
    term.x = centre[0];
    term.y = centre[1];
    term.z = centre[2];
    term.prefactor = -std::exp(-squared * wb * (wa / sum)) * prefactor * prefactor;
    term.level = 1;
    term.volume = term.prefactor * -pi_to_three_halves / (std::sqrt(sum) * sum);
    term.radius = static_cast<float>(std::pow(double{term.volume} * three_over_four_pi, one_third));
  }
  return hand_out(out, count);
}

}  // namespace VXCore
