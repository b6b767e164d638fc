// The density of one atom as a sum of five Gaussians, and its deposit on a lattice.
#include "density/atom_density.h"

#include <algorithm>  // for max, min
#include <cmath>      // for exp, sqrt, isfinite

namespace VXCore::detail {

AtomDensity::AtomDensity(const scatterT& row, double b_factor, double occupancy) : reach(0) {
  constexpr double four_pi = 12.566370614359172;
  constexpr double four_pi_squared = 39.47841760435743;
  const std::array<double, gaussian_count> a = {row.a1, row.a2, row.a3, row.a4, row.c};
  const std::array<double, gaussian_count> b = {row.b1, row.b2, row.b3, row.b4, 0.0};
  for (std::size_t i = 0; i < gaussian_count; ++i) {
    const double t = 1.0 / (b_factor + b[i]);
    const double w = four_pi * t;
    amplitude[i] = std::sqrt(w) * w * occupancy * a[i];
    exponent[i] = four_pi_squared * t;
    reach = std::max(reach, 1.0 / std::sqrt(exponent[i]));
  }
}

DensityDepositor::DensityDepositor(const OrientedLattice& lattice,
                                   const std::array<double, 3>& step, float* values)
    : lattice_(lattice), locator_(lattice), step_(step), values_(values) {
  const Matrix3& m = lattice.orientation;
  is_separable_ = m[1] == 0 && m[2] == 0 && m[3] == 0 && m[5] == 0 && m[6] == 0 && m[7] == 0;
}

void DensityDepositor::add(const AtomDensity& density, const float* xyz) {
  std::array<Range, 3> box;
  if (!box_around(xyz, density.reach, box)) return;
  if (is_separable_)
    add_separable(density, xyz, box);
  else
    add_general(density, xyz, box);
}

bool DensityDepositor::box_around(const float* xyz, double reach, std::array<Range, 3>& box) const {
  std::array<double, 3> nearest = locator_.index(xyz);
  for (double& index : nearest) {
    index = std::nearbyint(index);
    if (!std::isfinite(index)) return false;
  }
  const Vector3 point =
      lattice_.place(static_cast<float>(nearest[0]), static_cast<float>(nearest[1]),
                     static_cast<float>(nearest[2]));
  for (std::size_t k = 0; k < 3; ++k) {
    const double offset = static_cast<double>(xyz[k]) - point[k];
    const double low = nearest[k] - std::trunc((reach - offset) / step_[k] + 0.5);
    const double high = nearest[k] + std::trunc((reach + offset) / step_[k] + 0.5);
    const double last = static_cast<double>(lattice_.dim[k]) - 1.0;
    if (!(low <= last && high >= 0.0)) return false;
    box[k] = {static_cast<std::size_t>(std::max(low, 0.0)),
              static_cast<std::size_t>(std::min(high, last)) + 1};
    if (box[k].first >= box[k].end) return false;
  }
  return true;
}

// On a lattice whose axes are those of space the coordinates of a point depend on one index each,
// and exp(-k r^2) is a product of three factors, one a table entry per axis.
void DensityDepositor::add_separable(const AtomDensity& density, const float* xyz,
                                     const std::array<Range, 3>& box) {
  for (std::size_t k = 0; k < 3; ++k) {
    AxisTable& axis = axes_[k];
    const std::size_t count = box[k].end - box[k].first;
    axis.distance_squared.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      std::array<float, 3> index{};
      index[k] = static_cast<float>(box[k].first + i);
      const double d =
          static_cast<double>(lattice_.place(index[0], index[1], index[2])[k]) - xyz[k];
      axis.distance_squared[i] = d * d;
    }
    for (std::size_t g = 0; g < gaussian_count; ++g) {
      axis.factor[g].resize(count);
      for (std::size_t i = 0; i < count; ++i)
        axis.factor[g][i] = std::exp(-density.exponent[g] * axis.distance_squared[i]);
    }
  }

  const double reach_squared = density.reach * density.reach;
  const std::vector<double>& dx2 = axes_[0].distance_squared;
  for (std::size_t z = box[2].first; z < box[2].end; ++z) {
    const double dz2 = axes_[2].distance_squared[z - box[2].first];
    for (std::size_t y = box[1].first; y < box[1].end; ++y) {
      const double dy2 = axes_[1].distance_squared[y - box[1].first];
      const auto inside = [&](std::size_t i) { return dx2[i] + dy2 + dz2 < reach_squared; };
      // The points inside form one run, since the distance has a single minimum along the row.
      std::size_t first = 0, end = dx2.size();
      while (first < end && !inside(first))
        ++first;
      while (end > first && !inside(end - 1))
        --end;
      if (first == end) continue;
      float* row = values_ + (z * lattice_.dim[1] + y) * lattice_.dim[0] + box[0].first;
      for (std::size_t g = 0; g < gaussian_count; ++g) {
        const double scale = density.amplitude[g] * axes_[2].factor[g][z - box[2].first] *
                             axes_[1].factor[g][y - box[1].first];
        const double* factor = axes_[0].factor[g].data();
        for (std::size_t i = first; i < end; ++i)
          row[i] += static_cast<float>(scale * factor[i]);
      }
    }
  }
}

void DensityDepositor::add_general(const AtomDensity& density, const float* xyz,
                                   const std::array<Range, 3>& box) {
  const double reach_squared = density.reach * density.reach;
  for (std::size_t z = box[2].first; z < box[2].end; ++z) {
    for (std::size_t y = box[1].first; y < box[1].end; ++y) {
      float* row = values_ + (z * lattice_.dim[1] + y) * lattice_.dim[0];
      for (std::size_t x = box[0].first; x < box[0].end; ++x) {
        const Vector3 point =
            lattice_.place(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
        double distance_squared = 0;
        for (std::size_t k = 0; k < 3; ++k) {
          const double d = static_cast<double>(point[k]) - xyz[k];
          distance_squared += d * d;
        }
        if (!(distance_squared < reach_squared)) continue;
        for (std::size_t g = 0; g < gaussian_count; ++g)
          row[x] += static_cast<float>(density.amplitude[g] *
                                       std::exp(-density.exponent[g] * distance_squared));
      }
    }
  }
}

}  // namespace VXCore::detail
