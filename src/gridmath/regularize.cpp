// Resampling onto plain lattices, with and without wrapping, and cutting blocks of whole points.
#include "vxgrid/gridmath/regularize.h"

#include <algorithm>  // for copy_n, min, min_element, minmax_element
#include <array>      // for array
#include <cmath>      // for fabs, fmod, isfinite
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional
#include <string>     // for string
#include <vector>     // for vector

#include "grid/lattice.h"
#include "gridmath/dimensions.h"
#include "gridmath/point_sampler.h"
#include "gridmath/trilinear.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::identity3;
using detail::lattice_of;
using detail::Matrix3;
using detail::PointSampler;
using detail::RecordLattice;
using detail::SamplingOrder;
using detail::Vector3;

struct Source {
  RecordLattice lattice;
  const float* values;
  Matrix3 orientation = identity3;
};

Source source_of(const VXBrioGrid& grid) {
  Source source{lattice_of(grid), vi_grid_floats(grid)};
  grid.GetOrientation(source.orientation.data());
  return source;
}

// True for 1 to 2^31 - 1 points; `side` tells input from output in the message.
bool size_fits(const std::array<int, 3>& dims, const char* side) {
  constexpr std::int64_t limit = std::numeric_limits<int>::max();
  const auto [x, y, z] = dims;
  const std::int64_t xy = std::int64_t{x} * y;
  const bool sensible = x > 0 && y > 0 && z > 0;
  if (sensible && xy <= limit && xy * z <= limit) return true;
  if (sensible) {
    const std::int64_t first = xy > limit ? x : xy;
    const std::int64_t second = xy > limit ? y : z;
    VXThrow.Warning("Grid dimensions too large for memory size: %lu x %lu",
                    static_cast<unsigned long>(first), static_cast<unsigned long>(second));
  }
  VXThrow.Warning("Unable to regularize grid due to %s grid signed integer overflow: %i x %i x %i",
                  side, x, y, z);
  return false;
}

// Sizes a target over the box of eight corners.
bool size_from_corners(VXBrioGrid& out, const RecordLattice& source, const float* corners) {
  std::array<int, 3> dims{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::array<float, 8> ends{};
    for (std::size_t i = 0; i < 8; ++i)
      ends[i] = corners[3 * i + axis];
    const auto [low, high] = std::minmax_element(ends.begin(), ends.end());
    const std::optional<int> points =
        detail::points_for(1, detail::truncated((*high - *low) * (-1.0f / source.spacing)));
    if (!points) return false;
    dims[axis] = *points;
  }
  if (!size_fits(dims, "output")) return false;
  return out.SetSpacing(source.spacing) &&
         out.SetMid(source.mid[0], source.mid[1], source.mid[2]) &&
         out.SetDim(static_cast<unsigned>(dims[0]), static_cast<unsigned>(dims[1]),
                    static_cast<unsigned>(dims[2]));
}

// The place of target points in the source's own lattice, M(p - mid) + mid with the inverse M of
// the orientation. What depends on one axis alone is worked out once; the sums keep the order of
// the oriented position rule, so that no result depends on it.
class RowMapping {
 public:
  RowMapping(const RecordLattice& target, const Matrix3& inverse, const Vector3& mid)
      : target_(target), inverse_(inverse), mid_(mid) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      along_row_[axis].resize(target.row_stride());
      for (int i = 0; i < target.dim[0]; ++i) {
        along_row_[axis][static_cast<std::size_t>(i)] =
            inverse[3 * axis] * (target.coordinate(0, i) - mid[0]);
      }
    }
  }

  // Places of the first `count` points of row (j, k).
  void map(int j, int k, std::size_t count, std::array<std::vector<float>, 3>& places) const {
    const float dy = target_.coordinate(1, j) - mid_[1];
    const float dz = target_.coordinate(2, k) - mid_[2];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float y_part = inverse_[3 * axis + 1] * dy;
      const float z_part = inverse_[3 * axis + 2] * dz;
      const float centre = mid_[axis];
      const float* const x_parts = along_row_[axis].data();
      float* const place = places[axis].data();
      for (std::size_t i = 0; i < count; ++i)
        place[i] = x_parts[i] + y_part + z_part + centre;
    }
  }

 private:
  RecordLattice target_;
  Matrix3 inverse_;
  Vector3 mid_;
  std::array<std::vector<float>, 3> along_row_;
};

void resample_inside(const RecordLattice& target, const Source& source, const Matrix3& inverse,
                     float* out) {
  const PointSampler sampler(source.lattice, source.values, SamplingOrder::trilinear);
  const RowMapping mapping(target, inverse, source.lattice.mid);
  const std::size_t row = target.row_stride();
  std::array<std::vector<float>, 3> places;
  for (std::vector<float>& place : places)
    place.resize(row);
  for (int k = 0; k < target.dim[2]; ++k) {
    for (int j = 0; j < target.dim[1]; ++j) {
      mapping.map(j, k, row, places);
      sampler.sample(places[0].data(), places[1].data(), places[2].data(), row, out);
      out += row;
    }
  }
}

// Brings an offset into [0, period) by whole periods; false when single precision has no step left
// at that distance. Beyond a few thousand periods the exact remainder stands for the subtractions.
bool reduce_into_period(float& offset, float period) {
  constexpr float longest_walk = 4096.0f;
  if (!std::isfinite(offset)) return false;
  const float step = offset < 0.0f ? period : -period;
  if ((offset < 0.0f || offset >= period) && offset + step == offset) return false;
  if (std::fabs(offset) > longest_walk * period) offset = std::fmod(offset, period);
  while (offset >= period)
    offset -= period;
  while (offset < 0.0f)
    offset += period;
  return true;
}

// One axis of a position that runs through a periodic source, in intervals of the source.
struct PeriodicAxis {
  float period;  // intervals, as their lengths have it
  int intervals;
  float step;
  float f = 0.0f;

  // The cell and the fraction in it. Between -1 and 0 the index is 0 and the fraction negative: the
  // first cell is continued downwards. A position is moved by one period at most as long as
  // the step is shorter than that.
  int cell(float& t) {
    int index = static_cast<int>(f);
    t = f - static_cast<float>(index);
    if (index >= intervals) {
      f -= period;
      index -= intervals;
    } else if (index < 0) {
      f += period;
      index += intervals;
    }
    if (index < 0 || index >= intervals) {
      f = std::fmod(f, period);
      if (f < 0.0f) f += period;
      index = std::min(static_cast<int>(f), intervals - 1);
      t = f - static_cast<float>(index);
    }
    return index;
  }
};

bool resample_wrapped(const RecordLattice& target, const Source& source, const Matrix3& inverse,
                      float* out) {
  const RecordLattice& lattice = source.lattice;
  std::array<PeriodicAxis, 3> axes{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    axes[axis] = {(lattice.upper[axis] - lattice.lower[axis]) / lattice.spacing,
                  lattice.dim[axis] - 1, inverse[3 * axis] * target.spacing / lattice.spacing};
    // Far beyond any period; what is no number fails here as well.
    if (!(std::fabs(axes[axis].step) < 1.0e9f)) return false;
  }
  const RowMapping mapping(target, inverse, lattice.mid);
  const std::size_t row = lattice.row_stride();
  const std::size_t plane = lattice.plane_stride();
  std::array<std::vector<float>, 3> start;
  for (std::vector<float>& place : start)
    place.resize(1);
  for (int k = 0; k < target.dim[2]; ++k) {
    for (int j = 0; j < target.dim[1]; ++j) {
      mapping.map(j, k, 1, start);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        float offset = start[axis][0] - lattice.lower[axis];
        if (!reduce_into_period(offset, lattice.upper[axis] - lattice.lower[axis])) return false;
        axes[axis].f = offset / lattice.spacing;
      }
      for (int i = 0; i < target.dim[0]; ++i) {
        Vector3 t{};
        const int x = axes[0].cell(t[0]);
        const int y = axes[1].cell(t[1]);
        const int z = axes[2].cell(t[2]);
        *out++ = detail::blend_cell(source.values + element_at(lattice, x, y, z), row, plane, t[0],
                                    t[1], t[2]);
        for (PeriodicAxis& axis : axes)
          axis.f += axis.step;
      }
    }
  }
  return true;
}

bool resample(VXBrioGrid& out, bool wrap, const Source& source, const float* corners) {
  const RecordLattice& lattice = source.lattice;
  if (!size_fits(lattice.dim, "input") || !source.values) return false;
  if (out.GetSize() < 2) {
    if (!corners || !size_from_corners(out, lattice, corners)) return false;
  }
  const RecordLattice target = lattice_of(out);
  if (!size_fits(target.dim, "output")) return false;
  vx_clear_grid_floats(out);
  float* const values = vi_grid_floats(out);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float period = lattice.upper[axis] - lattice.lower[axis];
    if (!(period > 0.0f) || !(std::fabs(period / lattice.spacing) > 0.0f)) return false;
  }
  Matrix3 inverse{};
  if (!values || !detail::invert(source.orientation, inverse)) return false;
  if (wrap) return resample_wrapped(target, source, inverse, values);
  resample_inside(target, source, inverse, values);
  return true;
}

// A single plane, row or point of values has nothing between its points along some axis.
bool is_flat(const RecordLattice& lattice) {
  return lattice.size() != 0 && *std::min_element(lattice.dim.begin(), lattice.dim.end()) == 1;
}

bool make_regular_subgrid(VXBrioGrid& out, const Source& source, const std::string& title,
                          const float* centre, const float* extents, float spacing, bool wrap) {
  out.Clear();
  const float step = spacing == 0.0f ? source.lattice.spacing : spacing;
  if (!VXMakeGridFromCenterAndExtents(out, centre, extents, step)) return false;
  if (!resample(out, wrap, source, nullptr) && !is_flat(source.lattice)) return false;
  out.SetTitle(title);
  return true;
}

// True when a box at the grid's own spacing would have far more points than the grid. The spacing
// is that of the shortest cell step, which the header of a map may claim to be as short as it
// likes.
bool is_out_of_proportion(const Vector3& extents, const VXBrioGrid& grid) {
  constexpr double largest_dimension = 16777216;
  constexpr double granted_points = 16777216;
  constexpr double granted_ratio = 16;
  double points = 1.0;
  for (const float extent : extents) {
    // The margin of the rule that turns an extent into a dimension counts where the spacing is tiny.
    const double along_axis = (double{extent} + 1e-5) / double{grid.GetSpacing()} + 1.0;
    // No dimension at all, which is refused by name further on.
    if (!(along_axis <= largest_dimension)) return false;
    points *= along_axis;
  }
  return points > granted_points && points > granted_ratio * static_cast<double>(grid.GetSize());
}

// A scalar grid of the values and title of a Brio grid with the type and tags of its source.
void hand_over(VXScalarGrid& out, VXBrioGrid& result, unsigned int type, const VXBase& tags) {
  out = result.GetFloats()[0];
  out.SetType(type);
  VXCopyBaseData(out, tags);
}

int regularize(const VXBrioGrid& in, VXBrioGrid& out, bool wrap) {
  if (&in == &out) return 0;
  std::array<float, 24> corners{};
  vx_get_corners_of_grid(corners.data(), in);
  return resample(out, wrap, source_of(in), corners.data()) ? 1 : 0;
}

int regularized_subgrid(const VXBrioGrid& in, const float* centre, const float* half_extents,
                        float spacing, VXBrioGrid& out, bool wrap) {
  if (&in == &out) return 0;
  const float step = spacing == 0.0f ? in.GetSpacing() : spacing;
  if (step == 0.0f) return 0;
  if (centre && half_extents) {
    std::array<unsigned int, 3> dims{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::optional<int> intervals =
          detail::truncated((2.0 * double{half_extents[axis]} + 0.00001) * (1.0 / double{step}));
      if (!intervals || *intervals < 0 || *intervals == std::numeric_limits<int>::max()) return 0;
      dims[axis] = static_cast<unsigned int>(*intervals) + 1;
    }
    out.SetSpacing(step);
    out.SetMid(centre[0], centre[1], centre[2]);
    if (!out.SetDim(dims[0], dims[1], dims[2])) return 0;
  }
  regularize(in, out, wrap);
  return 1;
}

}  // namespace

bool VXMakeRegularGrid(VXBrioGrid& out, const VXBrioGrid& in, float spacing) {
  if (&out == &in) return false;
  if (!in.GetOrientationSet() && (spacing == 0.0f || spacing == in.GetSpacing())) {
    out = in;
    return true;
  }
  Vector3 centre{};
  Vector3 extents{};
  VXGetCenterAndExtents(in, centre.data(), extents.data());
  if (spacing == 0.0f && is_out_of_proportion(extents, in)) return false;
  return VXMakeRegularSubGrid(out, in, centre.data(), extents.data(), spacing,
                              in.GetReentrant() != 0);
}

bool VXMakeRegularGrid(VXScalarGrid& out, const VXSkewGrid& in, float spacing) {
  VXBrioGrid result;
  if (!VXMakeRegularGrid(result, in.GetImpl().GetImpl(), spacing)) return false;
  hand_over(out, result, in.GetType(), in);
  return true;
}

bool VXMakeRegularSubGrid(VXBrioGrid& out, const VXBrioGrid& in, const float* centre,
                          const float* extents, float spacing, bool wrap) {
  if (&out == &in) return false;
  return make_regular_subgrid(out, source_of(in), in.GetTitle(), centre, extents, spacing, wrap);
}

bool VXMakeRegularSubGrid(VXScalarGrid& out, const VXScalarGrid& in, const float* centre,
                          const float* extents, float spacing, bool wrap) {
  if (&out == &in) return false;
  VXBrioGrid result;
  if (!make_regular_subgrid(result, {lattice_of(in), in.GetValues()}, in.GetTitle(), centre,
                            extents, spacing, wrap)) {
    return false;
  }
  hand_over(out, result, in.GetType(), in);
  return true;
}

bool VXMakeRegularSubGrid(VXScalarGrid& out, const VXSkewGrid& in, const float* centre,
                          const float* extents, float spacing, bool wrap) {
  VXBrioGrid result;
  if (!VXMakeRegularSubGrid(result, in.GetImpl().GetImpl(), centre, extents, spacing, wrap)) {
    return false;
  }
  hand_over(out, result, in.GetType(), in);
  return true;
}

int vx_regularize_grid(const VXBrioGrid& in, VXBrioGrid& out) {
  return regularize(in, out, false);
}

int vx_regularize_grid_reenterent(const VXBrioGrid& in, VXBrioGrid& out) {
  return regularize(in, out, true);
}

int vx_regularize_grid_from_grid_params(VXBrioGrid& out, int wrap, const float* values,
                                        const float* mid, const int* dims, float spacing,
                                        const float* orientation, const float* corners) {
  if (!mid || !dims) return 0;
  Source source{{{dims[0], dims[1], dims[2]}, {mid[0], mid[1], mid[2]}, spacing}, values};
  if (orientation) std::copy_n(orientation, 9, source.orientation.begin());
  return resample(out, wrap != 0, source, corners) ? 1 : 0;
}

int vx_make_regularized_subgrid(const VXBrioGrid& in, float* centre, float* half_extents,
                                float spacing, VXBrioGrid& out) {
  return regularized_subgrid(in, centre, half_extents, spacing, out, false);
}

int vx_make_regularized_subgrid_reenterent(const VXBrioGrid& in, float* centre, float* half_extents,
                                           float spacing, VXBrioGrid& out) {
  return regularized_subgrid(in, centre, half_extents, spacing, out, true);
}

int vx_make_subgrid_that_encloses_points(const VXBrioGrid& in, const float* points, int count,
                                         float buffer, VXBrioGrid& out) {
  constexpr std::array<char, 3> names = {'x', 'y', 'z'};
  const float* const values = vi_grid_floats(in);
  const RecordLattice source = lattice_of(in);
  if (!values || !points || count < 1 || source.spacing == 0.0f || &in == &out) return 0;
  Vector3 low{};
  Vector3 high{};
  vx_get_box_size(points, count, low.data(), high.data());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] -= buffer;
    high[axis] += buffer;
  }
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (low[axis] > source.upper[axis]) {
      vi_warning("minimum %c of points is greater than original grid\n", names[axis]);
      return 0;
    }
  }
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (high[axis] < source.lower[axis]) {
      vi_warning("maximum %c of points is less than original grid\n", names[axis]);
      return 0;
    }
  }
  std::array<int, 3> first{};
  std::array<int, 3> dims{};
  Vector3 mid{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float lower = source.lower[axis];
    std::optional<int> begin = 0;
    std::optional<int> last = source.dim[axis] - 1;
    if (!(low[axis] < lower)) begin = detail::truncated((low[axis] - lower) / source.spacing);
    if (!(high[axis] > source.upper[axis])) {
      last = detail::truncated((high[axis] - lower) / source.spacing);
    }
    if (!begin || !last || *begin < 0 || *last < *begin || *last >= source.dim[axis]) return 0;
    first[axis] = *begin;
    dims[axis] = *last - *begin + 1;
    const auto ends = static_cast<float>(std::int64_t{*last} + *begin);
    mid[axis] = ends * source.spacing / 2.0f + lower;
  }
  out.SetSpacing(source.spacing);
  out.SetMid(mid[0], mid[1], mid[2]);
  if (!out.SetDim(static_cast<unsigned>(dims[0]), static_cast<unsigned>(dims[1]),
                  static_cast<unsigned>(dims[2]))) {
    return 0;
  }
  float* to = out.GetFloats().GetValues(static_cast<unsigned>(out.GetFloatsMultiple() - 1));
  if (!to) return 0;
  for (int k = 0; k < dims[2]; ++k) {
    for (int j = 0; j < dims[1]; ++j) {
      to = std::copy_n(values + element_at(source, first[0], first[1] + j, first[2] + k), dims[0],
                       to);
    }
  }
  return 1;
}

}  // namespace VXCore
