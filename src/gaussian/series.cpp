// Life and storage of a series builder, and the names under which its forms are asked for.
#include "vxgrid/gaussian/series.h"

#include <algorithm>  // for max, min
#include <cmath>      // for log
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <memory>     // for make_unique

#include "gaussian/neighbour_tree.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

float sum_of_volumes(const std::vector<Gsphere>& terms) {
  float sum = 0.0f;
  for (const Gsphere& term : terms)
    sum += term.volume;
  return sum;
}

}  // namespace

Gaussian::Gaussian() = default;
Gaussian::Gaussian(Gaussian&& other) noexcept = default;
Gaussian& Gaussian::operator=(Gaussian&& other) noexcept = default;
Gaussian::~Gaussian() = default;

Gaussian::Gaussian(const Gaussian& other)
    : prefactor(other.prefactor),
      ratio_table(other.ratio_table),
      log_prefactor_table(other.log_prefactor_table),
      reach_table(other.reach_table),
      volume_table(other.volume_table),
      min_radius(other.min_radius),
      max_radius(other.max_radius),
      cutoff(other.cutoff),
      log_cutoff(other.log_cutoff),
      volume_scale(other.volume_scale),
      capacity(other.capacity),
      scratch(other.scratch),
      coords(other.coords),
      widths(other.widths),
      prefactors(other.prefactors),
      radii(other.radii),
      first_term(other.first_term),
      terms(other.terms),
      result(other.result),
      atom_terms_(other.atom_terms_),
      table_prefactor_(other.table_prefactor_),
      table_cutoff_(other.table_cutoff_) {}

Gaussian& Gaussian::operator=(const Gaussian& other) {
  if (this != &other) *this = Gaussian(other);
  return *this;
}

int Gaussian::vi_init_gauss_rep(int atoms) {
  if (atoms <= 0) return 0;
  capacity = std::max(capacity, atoms);
  constexpr auto per_atom = static_cast<int>(MaxG);
  vi_init_gs(std::min(atoms, std::numeric_limits<int>::max() / per_atom) * per_atom);
  log_cutoff = std::log(cutoff);
  if (capacity > TreeThresh && !tree) tree = std::make_unique<detail::NeighbourTree>();
  return 1;
}

int Gaussian::vi_delete_gauss_rep() {
  tree.reset();
  capacity = 0;
  return 1;
}

int Gaussian::vi_init_gs(int count) {
  if (count <= 0) return 0;
  if (terms.size() < static_cast<std::size_t>(count)) terms.resize(static_cast<std::size_t>(count));
  return 1;
}

int Gaussian::hand_out(Gsphere** out, int* count) {
  *out = result.data();
  *count = static_cast<int>(result.size());
  return 1;
}

int Gaussian::make_atomic_gaussian_rep_base(VXMolBase& mol, int with_bonds, int no_hydrogens,
                                            Gsphere** out, int* count) {
  return build_atomic(mol, with_bonds != 0, no_hydrogens != 0, out, count);
}

int Gaussian::vx_make_atomic_gaussian_representation(const VXMolBase& mol, Gsphere** out,
                                                     int* count) {
  return build_atomic(mol, false, false, out, count);
}

int Gaussian::vx_make_atomic_gaussian_representation_with_hydrogens(const VXMolBase& mol,
                                                                    Gsphere** out, int* count) {
  return build_atomic(mol, false, false, out, count);
}

int Gaussian::vx_make_atomic_gaussian_representation_no_hydrogens(const VXMolBase& mol,
                                                                  Gsphere** out, int* count) {
  return build_atomic(mol, false, true, out, count);
}

int Gaussian::vx_make_bond_gaussian_representation(const VXMolBase& mol, Gsphere** out,
                                                   int* count) {
  return build_atomic(mol, true, false, out, count);
}

int Gaussian::vx_make_bond_gaussian_representation_with_hydrogens(const VXMolBase& mol,
                                                                  Gsphere** out, int* count) {
  return build_atomic(mol, true, false, out, count);
}

int Gaussian::vx_make_bond_gaussian_representation_no_hydrogens(const VXMolBase& mol, Gsphere** out,
                                                                int* count) {
  return build_atomic(mol, true, true, out, count);
}

int Gaussian::vx_make_gaussian_representation(const VXMolBase& mol, Gsphere** out, int* count) {
  return make_full_gaussian_rep_base(mol, 1, out, count);
}

int Gaussian::vx_make_gaussian_representation_no_hydrogens(const VXMolBase& mol, Gsphere** out,
                                                           int* count) {
  return make_full_gaussian_rep_base(mol, 1, out, count);
}

int Gaussian::vx_make_gaussian_representation_with_hydrogens(const VXMolBase& mol, Gsphere** out,
                                                             int* count) {
  return make_full_gaussian_rep_base(mol, 0, out, count);
}

int Gaussian::vx_calculate_volume(const VXMolBase& mol, float* volume) {
  return vx_calculate_volume_base(mol, volume, 0);
}

int Gaussian::vx_calculate_volume_with_hydrogens(const VXMolBase& mol, float* volume) {
  return vx_calculate_volume_base(mol, volume, 0);
}

int Gaussian::vx_calculate_volume_no_hydrogens(const VXMolBase& mol, float* volume) {
  return vx_calculate_volume_base(mol, volume, 1);
}

int Gaussian::vx_calculate_volume_base(const VXMolBase& mol, float* volume, int no_hydrogens) {
  Gsphere* spheres = nullptr;
  int count = 0;
  make_full_gaussian_rep_base(mol, no_hydrogens, &spheres, &count);
  *volume = sum_of_volumes(result);
  return 1;
}

int Gaussian::make_test(VXMolBase& mol) {
  Gsphere* spheres = nullptr;
  int count = 0;
  vx_make_atomic_gaussian_representation(mol, &spheres, &count);
  vx_printf("atm vol = %f\n", double{sum_of_volumes(result)});
  vx_make_bond_gaussian_representation(mol, &spheres, &count);
  vx_printf("bond vol = %f\n", double{sum_of_volumes(result)});
  vx_make_gaussian_representation_no_hydrogens(mol, &spheres, &count);
  vx_printf("full vol = %f, num= %d\n", double{sum_of_volumes(result)}, count);
  vx_make_gaussian_representation_with_hydrogens(mol, &spheres, &count);
  vx_printf("full vol (h) = %f, num= %d\n", double{sum_of_volumes(result)}, count);
  return 1;
}

}  // namespace VXCore
