// The density of one atom as a sum of five Gaussians, and its deposit on a lattice.
#ifndef VXGRID_SRC_DENSITY_ATOM_DENSITY_H
#define VXGRID_SRC_DENSITY_ATOM_DENSITY_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <vector>   // for vector

#include "grid/lattice.h"
#include "vxgrid/density/scattering.h"

namespace VXCore::detail {

inline constexpr std::size_t gaussian_count = 5;

/// An atom's electron density, sum of amplitude[i] exp(-exponent[i] r^2).
struct AtomDensity {
  AtomDensity(const scatterT& row, double b_factor, double occupancy);

  std::array<double, gaussian_count> amplitude;  ///< electrons / Angstrom^3
  std::array<double, gaussian_count> exponent;   ///< 1 / Angstrom^2
  double reach;  ///< where the widest Gaussian is at 1/e, Angstrom; density ends there
};

/// Adds atoms to the values of one lattice.
class DensityDepositor {
 public:
  /// `step` are the lattice steps along the axes in Angstrom; `values` has the lattice's size.
  DensityDepositor(const OrientedLattice& lattice, const std::array<double, 3>& step,
                   float* values);

  /// Adds to every point strictly within the atom's reach, each Gaussian rounded to float before it
  /// is added. Points outside the lattice are left out.
  void add(const AtomDensity& density, const float* xyz);

 private:
  struct Range {
    std::size_t first, end;
  };
  bool box_around(const float* xyz, double reach, std::array<Range, 3>& box) const;
  void add_separable(const AtomDensity& density, const float* xyz, const std::array<Range, 3>& box);
  void add_general(const AtomDensity& density, const float* xyz, const std::array<Range, 3>& box);

  OrientedLattice lattice_;
  LatticeLocator locator_;
  std::array<double, 3> step_;
  float* values_;
  bool is_separable_;

  // Along one axis of the box, per point: the squared distance, and each Gaussian's factor.
  struct AxisTable {
    std::vector<double> distance_squared;
    std::array<std::vector<double>, gaussian_count> factor;
  };
  std::array<AxisTable, 3> axes_;
};

}  // namespace VXCore::detail

#endif
