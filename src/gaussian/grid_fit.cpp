// Matching pursuit over Gaussians of a few widths.
#include "vxgrid/gaussian/grid_fit.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cmath>      // for exp, fabs, isfinite, log, sqrt
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t, uint32_t
#include <cstdlib>    // for abs
#include <limits>     // for numeric_limits
#include <optional>   // for optional
#include <span>       // for span

#include "gaussian/grid_lattice.h"
#include "vxgrid/gaussian/containers.h"
#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

// What the search looks at: responses above this part of the threshold.
constexpr float drop = 0.85f;
constexpr int most_levels = 100;

struct FitOptions {
  float cutoff;
  float mask_threshold;
  float stop_gain;
  bool run_to_limit;
  int levels;
  float start_radius;
  float radius_step;
  int max_gaussians;
};

// A Gaussian on a point of the lattice.
struct NodeGaussian {
  std::array<int, 3> node;
  float width;
  float prefactor;
};

float width_of(float radius) {
  constexpr float prefactor = 2.7f;
  float width = 0.0f;
  vi_assign_gwid_from_rad_pre(&prefactor, &radius, &width, 1);
  return width;
}

// The distance at which a Gaussian has fallen to `cutoff`.
float reach_of(float cutoff, float width) {
  return std::sqrt(std::log(cutoff) * (-1.0f / width));
}

// Truncated, and no more than the grid is wide.
int whole_steps(float steps, const RecordLattice& lattice) {
  const int widest = std::max({lattice.dim[0], lattice.dim[1], lattice.dim[2]});
  if (!(steps >= 1.0f)) return 0;
  return steps < static_cast<float>(widest) ? static_cast<int>(steps) : widest;
}

// Takes a Gaussian off a grid, over the box of its reach less the last plane on each axis.
void subtract(const NodeGaussian& g, float cutoff, const RecordLattice& lattice, float* values) {
  const float h = lattice.spacing;
  const int steps = whole_steps(reach_of(cutoff, g.width) / h, lattice);
  std::vector<float> profile;
  for (int k = 0; k <= steps; ++k) {
    const auto distance = static_cast<float>(k);
    profile.push_back(std::exp(-distance * distance * g.width * h * h));
  }
  const auto at = [&](int offset) { return profile[static_cast<std::size_t>(std::abs(offset))]; };
  std::array<int, 3> first{};
  std::array<int, 3> last{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    first[axis] = std::max(g.node[axis] - steps, 0);
    const int beyond = lattice.dim[axis] - g.node[axis];
    last[axis] = g.node[axis] + std::min(steps, beyond);
  }
  std::vector<float> along_x;
  for (int x = first[0]; x < last[0]; ++x)
    along_x.push_back(at(x - g.node[0]));
  for (int z = first[2]; z < last[2]; ++z) {
    for (int y = first[1]; y < last[1]; ++y) {
      const float in_row = g.prefactor * at(z - g.node[2]) * at(y - g.node[1]);
      float* const row = values + detail::element_at(lattice, first[0], y, z);
      for (std::size_t i = 0; i < along_x.size(); ++i)
        row[i] -= in_row * along_x[i];
    }
  }
}

// to += factor*from over a row.
void add_scaled(float* to, const float* from, std::size_t count, float factor) {
  for (std::size_t i = 0; i < count; ++i)
    to[i] += factor * from[i];
}

// A copy with 0 for what is below the threshold or no number.
std::vector<float> values_from(std::span<const float> values, float threshold) {
  std::vector<float> kept(values.begin(), values.end());
  for (float& value : kept)
    value = value >= threshold ? value : 0.0f;
  return kept;
}

// One pass of a separable smoothing. Contributions to a point come in the order of their places,
// whatever the vector width.
std::vector<float> smoothed_along(std::size_t axis, std::span<const float> values,
                                  std::span<const float> kernel, const RecordLattice& lattice) {
  std::vector<float> out(values.size(), 0.0f);
  const int steps = static_cast<int>(kernel.size()) - 1;
  const std::size_t count = lattice.row_stride();
  for (int z = 0; z < lattice.dim[2]; ++z) {
    for (int y = 0; y < lattice.dim[1]; ++y) {
      float* const row = out.data() + detail::element_at(lattice, 0, y, z);
      for (int d = -steps; d <= steps; ++d) {
        const float factor = kernel[static_cast<std::size_t>(std::abs(d))];
        if (axis == 0) {
          const int first = std::max(0, -d);
          const int last = lattice.dim[0] - std::max(0, d);
          if (first >= last) continue;
          add_scaled(row + first, values.data() + detail::element_at(lattice, first + d, y, z),
                     static_cast<std::size_t>(last - first), factor);
        } else {
          const std::int64_t other = std::int64_t{axis == 1 ? y : z} + d;
          if (other < 0 || other >= lattice.dim[axis]) continue;
          const auto place = static_cast<int>(other);
          const std::size_t from = axis == 1 ? detail::element_at(lattice, 0, place, z)
                                             : detail::element_at(lattice, 0, y, place);
          add_scaled(row, values.data() + from, count, factor);
        }
      }
    }
  }
  return out;
}

// The integral of the grid times a Gaussian of this width and height 1 at each point.
std::vector<float> smoothed(std::span<const float> values, float width, float cutoff,
                            const RecordLattice& lattice) {
  const float h = lattice.spacing;
  const int steps = whole_steps(reach_of(cutoff, width) * (1.0f / h), lattice);
  std::vector<float> kernel;
  for (int k = 0; k <= steps; ++k) {
    const auto distance = static_cast<float>(k);
    kernel.push_back(h * std::exp(-width * h * h * distance * distance));
  }
  const std::vector<float> by_x =
      smoothed_along(0, values_from(values, 0.0000001f), kernel, lattice);
  const std::vector<float> by_xy = smoothed_along(1, values_from(by_x, 0.00001f), kernel, lattice);
  return smoothed_along(2, by_xy, kernel, lattice);
}

// Gaussians of one width.
struct Level {
  float width;
  float norm;  // 1/(integral of the square of the Gaussian of height 1)
  std::vector<float> responses;
  std::vector<std::uint32_t> candidates;
};

struct Pick {
  float value = 0.0f;
  std::size_t level = 0;
  std::uint32_t element = 0;
};

class GridFit {
 public:
  GridFit(const RecordLattice& lattice, std::span<float> values, const FitOptions& options)
      : lattice_(lattice), options_(options) {
    for (float& value : values) {
      if (!(value >= 0.0f)) value = 0.0f;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i] > options.mask_threshold) mask_.push_back(static_cast<std::uint32_t>(i));
    }
    float squares = 0.0f;
    for (const float value : values)
      squares += value * value;
    energy_ = lattice.spacing * lattice.spacing * lattice.spacing * squares;
    if (!mask_.empty()) make_levels(values);
  }

  std::vector<NodeGaussian> run() {
    std::vector<NodeGaussian> fitted;
    look_above(largest_response([](float response) { return response; }));
    while (const auto pick = next()) {
      Level& level = levels_[pick->level];
      const NodeGaussian g{node_of(pick->element), level.width,
                           std::sqrt(level.norm) * pick->value};
      fitted.push_back(g);
      const float energy = energy_ - g.prefactor * pick->value / std::sqrt(level.norm);
      take_off(g);
      if (fitted.size() >= static_cast<std::size_t>(std::max(options_.max_gaussians, 1))) break;
      if (!options_.run_to_limit && energy_ - energy < options_.stop_gain) break;
      // On a lattice too coarse for its Gaussians nothing more would ever change.
      if (!(level.responses[pick->element] < pick->value)) break;
      energy_ = energy;
    }
    return fitted;
  }

 private:
  void make_levels(std::span<const float> values) {
    for (int l = 0; l < std::min(options_.levels, most_levels); ++l) {
      const float radius = options_.start_radius - static_cast<float>(l) * options_.radius_step;
      if (!(radius > 0.0f) || !std::isfinite(radius)) continue;
      const float w = width_of(radius);
      const float eight_w_cubed = w * w * w * 8.0f;
      constexpr double one_over_pi_cubed = 0.03225161615845474;
      const auto norm = static_cast<float>(std::sqrt(double{eight_w_cubed} * one_over_pi_cubed));
      if (!(norm > 0.0f) || !std::isfinite(norm)) continue;
      Level& level = levels_.emplace_back(Level{w, norm, {}, {}});
      level.responses = smoothed(values, w, options_.cutoff, lattice_);
      const float factor = std::sqrt(norm);
      for (float& response : level.responses)
        response *= factor;
    }
  }

  float largest_response(float (*size)(float)) const {
    float largest = 0.0f;
    for (const Level& level : levels_) {
      for (const std::uint32_t i : mask_)
        largest = std::max(largest, size(level.responses[i]));
    }
    return largest;
  }

  void look_above(float threshold) {
    threshold_ = threshold;
    for (Level& level : levels_) {
      level.candidates.clear();
      for (const std::uint32_t i : mask_) {
        if (std::fabs(level.responses[i]) > drop * threshold) level.candidates.push_back(i);
      }
    }
  }

  // False when there is nothing left to speak of.
  bool lower_threshold() {
    const float largest = largest_response([](float response) { return std::fabs(response); });
    if (!(largest >= std::numeric_limits<float>::min()) || !std::isfinite(largest)) return false;
    float threshold = drop * threshold_;
    while (!(largest > drop * threshold))
      threshold *= drop;
    look_above(threshold);
    return true;
  }

  // The candidate with the largest response by magnitude, of those above the threshold. A level
  // that has none has no candidates until the threshold drops.
  Pick select() {
    Pick best;
    for (std::size_t l = 0; l < levels_.size(); ++l) {
      Level& level = levels_[l];
      Pick of_level{0.0f, l, 0};
      for (const std::uint32_t i : level.candidates) {
        if (std::fabs(level.responses[i]) > std::fabs(of_level.value))
          of_level = {level.responses[i], l, i};
      }
      if (!(std::fabs(of_level.value) > drop * threshold_))
        level.candidates.clear();
      else if (std::fabs(of_level.value) > std::fabs(best.value))
        best = of_level;
    }
    return best;
  }

  // What the fit takes next. That no candidate is above the threshold does not end the fit, however
  // far below the next response lies: the threshold drops until there is one. What ends it is a
  // largest candidate by magnitude that is negative, where a Gaussian would have to be negative
  // too.
  std::optional<Pick> next() {
    for (;;) {
      const Pick pick = select();
      if (pick.value > 0.0f) return pick;
      if (pick.value < 0.0f || !lower_threshold()) return std::nullopt;
    }
  }

  void take_off(const NodeGaussian& g) {
    constexpr float pi_cubed = 31.0062f;
    for (Level& level : levels_) {
      const float sum = level.width + g.width;
      const float overlap = std::sqrt(pi_cubed / (sum * sum * sum) * level.norm);
      subtract({g.node, level.width * g.width / sum, overlap * g.prefactor}, options_.cutoff,
               lattice_, level.responses.data());
    }
  }

  std::array<int, 3> node_of(std::uint32_t element) const {
    const std::size_t row = element / lattice_.row_stride();
    const auto dim_y = static_cast<std::size_t>(lattice_.dim[1]);
    return {static_cast<int>(element % lattice_.row_stride()), static_cast<int>(row % dim_y),
            static_cast<int>(row / dim_y)};
  }

  RecordLattice lattice_;
  FitOptions options_;
  std::vector<std::uint32_t> mask_;
  std::vector<Level> levels_;
  float energy_ = 0.0f;
  float threshold_ = 0.0f;
};

template <class Number>
Number or_default(Number value, Number standard) {
  return value == Number{0} ? standard : value;
}

bool add_fit(VXGaussianContainerBase& c, VXBrioGrid& grid, float stop_gain, unsigned int levels,
             unsigned int max_gaussians) {
  constexpr unsigned int most = std::numeric_limits<int>::max();
  std::vector<float> coords;
  std::vector<float> prefactors;
  std::vector<float> widths;
  VXBrioGrid fitted;
  vx_make_grid_gaussian_representation(
      grid, 0.01f, 0.01f, stop_gain, 0, static_cast<int>(std::min(levels, most)), 3.2f, 1.0f,
      static_cast<int>(std::min(max_gaussians, most)), coords, prefactors, widths, true, fitted);
  c.Clear();
  for (std::size_t i = 0; i < widths.size(); ++i)
    c.AddGaussian(VXGaussian(prefactors[i], widths[i], &coords[3 * i], 0));
  return c.NumGaussians() != 0;
}

}  // namespace

int vx_make_grid_gaussian_representation(VXBrioGrid& grid, float cutoff, float mask_threshold,
                                         float stop_gain, int run_to_limit, int levels,
                                         float start_radius, float radius_step, int max_gaussians,
                                         std::vector<float>& coords, std::vector<float>& prefactors,
                                         std::vector<float>& widths, bool fill_vectors,
                                         VXBrioGrid& fitted) {
  const FitOptions options{or_default(cutoff, 0.004f),
                           or_default(mask_threshold, 0.01f),
                           stop_gain,
                           run_to_limit != 0,
                           or_default(levels, 3),
                           or_default(start_radius, 3.2f),
                           or_default(radius_step, 1.0f),
                           max_gaussians};
  float* const values = vi_grid_floats(grid);
  const RecordLattice lattice = detail::lattice_of(grid);
  std::vector<NodeGaussian> gaussians;
  if (values && detail::is_usable(lattice))
    gaussians = GridFit(lattice, {values, lattice.size()}, options).run();

  if (&fitted != &grid) fitted = grid;
  vx_clear_grid_floats(fitted);
  for (NodeGaussian g : gaussians) {
    g.prefactor = -g.prefactor;
    subtract(g, options.cutoff, lattice, vi_grid_floats(fitted));
  }
  if (!fill_vectors) return 1;
  coords.clear();
  prefactors.clear();
  widths.clear();
  for (const NodeGaussian& g : gaussians) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      coords.push_back(lattice.coordinate(axis, g.node[axis]));
    prefactors.push_back(g.prefactor);
    widths.push_back(g.width);
  }
  return 1;
}

bool VXMakeGaussianRepresentation(VXGaussianContainerBase& c, const VXMolBase& mol, float stop_gain,
                                  unsigned int levels, unsigned int max_gaussians) {
  VXBrioGrid grid;
  VXMakeMolecularGaussianGrid(grid, mol, 0.5f);
  return add_fit(c, grid, stop_gain, levels, max_gaussians);
}

bool VXMakeGaussianRepresentation(VXGaussianContainerBase& c, const VXScalarGrid& grid,
                                  float stop_gain, unsigned int levels,
                                  unsigned int max_gaussians) {
  VXBrioGrid copy(grid);
  return add_fit(c, copy, stop_gain, levels, max_gaussians);
}

}  // namespace VXCore
