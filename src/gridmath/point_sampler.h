/// \file
/// The one kernel behind all sampling of grids at points.
#ifndef VXGRID_SRC_GRIDMATH_POINT_SAMPLER_H
#define VXGRID_SRC_GRIDMATH_POINT_SAMPLER_H

#include <array>    // for array
#include <cstddef>  // for size_t

#include "gridmath/record_lattice.h"

namespace VXCore::detail {

enum class SamplingOrder { trilinear, quadratic, nearest };

/// Reads values of one lattice at points; the rules are those of vi_map_to_atoms_from_grid.
class PointSampler {
 public:
  /// `values` stay the caller's; null is fine and makes every point one that does not count.
  PointSampler(const RecordLattice& lattice, const float* values, SamplingOrder order);

  /// Value i is written when point i counts; `out` keeps what it holds otherwise.
  void sample(const float* x, const float* y, const float* z, std::size_t count, float* out) const;

  /// Quadratic value and gradient per Angstrom at one point, of a sampler of that order; false when
  /// the point does not count.
  bool quadratic(const std::array<float, 3>& point, float& value,
                 std::array<float, 3>& gradient) const;

 private:
  // Three nodes per axis, the first of which is `corner`, and where the point lies from the middle
  // one.
  struct QuadraticCell {
    const float* corner;
    std::array<float, 3> t;
  };

  bool counts(const std::array<float, 3>& point) const;
  QuadraticCell quadratic_cell(const std::array<float, 3>& point) const;
  template <SamplingOrder order>
  void sample_blocks(const float* x, const float* y, const float* z, std::size_t count,
                     float* out) const;

  RecordLattice lattice_;
  const float* values_;
  SamplingOrder order_;
  bool usable_;
  // A point counts strictly between these.
  std::array<float, 3> low_{};
  std::array<float, 3> high_{};
};

}  // namespace VXCore::detail

#endif
