// Sampling in all layouts of points, and the quadratic values and gradients.
#include "vxgrid/gridmath/sampling.h"

#include <algorithm>  // for copy, min
#include <array>      // for array
#include <cstddef>    // for size_t

#include "gridmath/point_sampler.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXCore {

namespace {

using detail::PointSampler;
using detail::RecordLattice;
using detail::SamplingOrder;

constexpr std::size_t block_size = 256;

struct FloatTriple {
  float x, y, z;
};
struct DoubleTriple {
  double x, y, z;
};

// Takes the coordinates apart block by block, so that the kernel reads them axis by axis.
template <class Point>
void sample_items(const PointSampler& sampler, const void* items, std::size_t count, float* out) {
  const auto* const points = static_cast<const Point*>(items);
  std::array<float, block_size> x;
  std::array<float, block_size> y;
  std::array<float, block_size> z;
  for (std::size_t begin = 0; begin < count; begin += block_size) {
    const std::size_t n = std::min(block_size, count - begin);
    for (std::size_t i = 0; i < n; ++i) {
      const Point& point = points[begin + i];
      x[i] = static_cast<float>(point.x);
      y[i] = static_cast<float>(point.y);
      z[i] = static_cast<float>(point.z);
    }
    sampler.sample(x.data(), y.data(), z.data(), n, out + begin);
  }
}

enum class Layout { atoms, floats, doubles };

struct Mode {
  Layout layout;
  SamplingOrder order;
};

// By the number of the mode.
constexpr std::array<Mode, 9> modes = {{{Layout::atoms, SamplingOrder::trilinear},
                                        {Layout::atoms, SamplingOrder::quadratic},
                                        {Layout::floats, SamplingOrder::trilinear},
                                        {Layout::floats, SamplingOrder::quadratic},
                                        {Layout::doubles, SamplingOrder::trilinear},
                                        {Layout::doubles, SamplingOrder::quadratic},
                                        {Layout::atoms, SamplingOrder::nearest},
                                        {Layout::floats, SamplingOrder::nearest},
                                        {Layout::doubles, SamplingOrder::nearest}}};

void quadratic_at_points(const PointSampler& sampler, const float* points, std::size_t count,
                         float* values, float* gradients, bool keep_outside) {
  for (std::size_t i = 0; i < count; ++i) {
    float value = 0.0f;
    std::array<float, 3> gradient{};
    const bool inside =
        sampler.quadratic({points[3 * i], points[3 * i + 1], points[3 * i + 2]}, value, gradient);
    if (!inside && keep_outside) continue;
    if (values) values[i] = value;
    if (gradients) std::copy(gradient.begin(), gradient.end(), gradients + 3 * i);
  }
}

}  // namespace

void vi_map_to_atoms_from_grid_and_vals(void* items, int count, float* out, GridStruct grid,
                                        const float* values, int mode) {
  if (mode < 0 || static_cast<std::size_t>(mode) >= modes.size()) return;
  if (!items || !out || !values || count < 1) return;
  const Mode& kind = modes[static_cast<std::size_t>(mode)];
  const PointSampler sampler(RecordLattice(grid), values, kind.order);
  const auto n = static_cast<std::size_t>(count);
  switch (kind.layout) {
    case Layout::atoms:
      sample_items<PdbStruct>(sampler, items, n, out);
      break;
    case Layout::floats:
      sample_items<FloatTriple>(sampler, items, n, out);
      break;
    case Layout::doubles:
      sample_items<DoubleTriple>(sampler, items, n, out);
      break;
  }
}

void vi_map_to_atoms_from_grid(void* items, int count, float* out, GridStruct grid, int mode) {
  vi_map_to_atoms_from_grid_and_vals(items, count, out, grid, grid.floats, mode);
}

void vi_quadratic_interpolation_and_derivativates(const float* points, int count, float* values,
                                                  float* gradients, GridStruct g, int flag) {
  if (!points || count < 1) return;
  const PointSampler sampler(RecordLattice(g), g.floats, SamplingOrder::quadratic);
  quadratic_at_points(sampler, points, static_cast<std::size_t>(count), values, gradients,
                      flag != 0);
}

bool VXQuadraticInterpolationAndDerivatives(const VXScalarGrid& g, const float* points,
                                            unsigned int count, float* values, float* gradients) {
  if (!points || !values || !gradients || !g.GetValues()) return false;
  const PointSampler sampler(detail::lattice_of(g), g.GetValues(), SamplingOrder::quadratic);
  quadratic_at_points(sampler, points, count, values, gradients, false);
  return true;
}

bool VXQuadraticInterpolationAndDerivatives(const VXScalarGrid& g, const VXMol::VXMolBase& mol,
                                            std::vector<float>& values,
                                            std::vector<float>& gradients) {
  const std::size_t count = mol.GetMaxAtomIdx();
  values.resize(count);
  gradients.resize(3 * count);
  std::vector<float> coords(3 * count);
  if (!mol.GetCoords(coords.data())) return false;
  return VXQuadraticInterpolationAndDerivatives(g, coords.data(), static_cast<unsigned int>(count),
                                                values.data(), gradients.data());
}

}  // namespace VXCore
