// From points and atoms to the geometry of a record.
#include "vxgrid/gridmath/sizing.h"

#include <algorithm>  // for any_of, max, max_element, min
#include <array>      // for array
#include <cmath>      // for fabs, isfinite
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t, uint64_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional

#include "gridmath/dimensions.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::points_for;
using detail::truncated;

using Floats3 = std::array<float, 3>;
using Ints3 = std::array<int, 3>;

struct Box {
  Floats3 low, high;
  bool empty = true;

  Floats3 centre() const {
    Floats3 mid{};
    for (std::size_t axis = 0; axis < 3; ++axis)
      mid[axis] = (high[axis] + low[axis]) * 0.5f;
    return mid;
  }
  void widen(float width) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] -= width;
      high[axis] += width;
    }
  }
};

// The box of the atoms, each widened by its radius; those of radius 0 only with `keep_all`.
Box box_of_atoms(const PdbStruct* atoms, const float* radii, int count, bool keep_all) {
  constexpr float far = 1000000.0f;
  Box box{{far, far, far}, {-far, -far, -far}};
  for (int i = 0; atoms && i < count; ++i) {
    const float radius = radii ? radii[i] : 0.0f;
    if (radius == 0.0f && !keep_all) continue;
    const Floats3 point = {atoms[i].x, atoms[i].y, atoms[i].z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.low[axis] = std::min(box.low[axis], point[axis] - radius);
      box.high[axis] = std::max(box.high[axis], point[axis] + radius);
    }
    box.empty = false;
  }
  return box;
}

// What vi_make_grid works out; the record is written when all of it is known.
struct Layout {
  Floats3 mid;
  Ints3 dims;
  float spacing;
};

struct SizingJob {
  const center_size& size;
  const PdbStruct* atoms;
  const float* radii;
  int count;
  float probe;
  bool is_accessible;

  Floats3 extents() const { return {size.x_extent, size.y_extent, size.z_extent}; }
  Floats3 buffers() const { return {size.x_buffer, size.y_buffer, size.z_buffer}; }
  Ints3 borders() const { return {size.x_border, size.y_border, size.z_border}; }
  // How far the probe reaches beyond the atoms.
  float reach() const { return is_accessible ? probe + probe : probe; }

  void spacing_from_extents(Layout& layout) const;
  bool spacing_from_atoms(Layout& layout) const;
  bool dims_from_atoms(Layout& layout) const;
  bool dims_from_extents(Layout& layout) const;
  bool complete(Layout& layout) const;
};

void SizingJob::spacing_from_extents(Layout& layout) const {
  constexpr float tolerance = 0.0001f;
  Floats3 candidates{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    candidates[axis] = extents()[axis] / static_cast<float>(std::int64_t{layout.dims[axis]} - 1);
  }
  if (std::fabs(candidates[0] - candidates[1]) > tolerance ||
      std::fabs(candidates[2] - candidates[1]) > tolerance) {
    vi_warning("Grid dimensions inconsistent with volume specifications!!\n");
  }
  layout.spacing = *std::max_element(candidates.begin(), candidates.end());
  vi_warning("Grid spacing set to %f", double{layout.spacing});
}

bool SizingJob::spacing_from_atoms(Layout& layout) const {
  vi_warning("Grid constructed with dimensions but no spacing or extents.");
  const Box box = box_of_atoms(atoms, radii, count, false);
  if (box.empty) return false;
  layout.mid = box.centre();
  Floats3 candidates{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float extent = box.high[axis] - box.low[axis] + 2.0f * reach() + 2.0f * buffers()[axis];
    const std::int64_t intervals =
        std::int64_t{layout.dims[axis]} - 2 * std::int64_t{borders()[axis]} - 1;
    if (intervals < 1) return false;
    candidates[axis] = extent / static_cast<float>(intervals);
  }
  layout.spacing = *std::max_element(candidates.begin(), candidates.end());
  return true;
}

bool SizingJob::dims_from_atoms(Layout& layout) const {
  Box box = box_of_atoms(atoms, radii, count, false);
  if (box.empty) return false;
  box.widen(reach());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    float length = box.high[axis] - box.low[axis];
    if (size.centre_set != 0) {
      length = 2.0f * std::max(layout.mid[axis] - box.low[axis], box.high[axis] - layout.mid[axis]);
    }
    const std::optional<int> intervals =
        truncated((2.0f * buffers()[axis] + length) * (-1.0f / layout.spacing));
    const std::optional<int> base = truncated(2.0 * borders()[axis] + 2.0);
    if (!base) return false;
    const std::optional<int> points = points_for(*base, intervals);
    if (!points) return false;
    layout.dims[axis] = *points;
  }
  return true;
}

bool SizingJob::dims_from_extents(Layout& layout) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::optional<int> points =
        points_for(1, truncated(extents()[axis] * (-1.0f / layout.spacing)));
    if (!points) return false;
    layout.dims[axis] = *points;
  }
  return true;
}

// Fills in what is not given; false when that cannot be done.
bool SizingJob::complete(Layout& layout) const {
  const bool has_spacing = size.spacing_given != 0;
  const bool has_extents = size.extent_given != 0;
  if (size.dims_given != 0) {
    if (has_spacing) return true;
    if (!has_extents) return spacing_from_atoms(layout);
    spacing_from_extents(layout);
    return true;
  }
  if (!has_spacing) return true;
  return has_extents ? dims_from_extents(layout) : dims_from_atoms(layout);
}

// Depth of the multigrid that fits the dimensions; they are raised to 1 plus a multiple of its
// factor, 2 to the depth less one. Nothing when that fits no int.
std::optional<int> fit_multigrid(Ints3& dims) {
  const int largest = *std::max_element(dims.begin(), dims.end());
  const int level = largest > 80 ? 5 : largest > 40 ? 4 : largest > 20 ? 3 : 2;
  const int factor = 1 << (level - 1);
  for (int& dim : dims) {
    if ((dim - 1) % factor == 0) continue;
    const std::int64_t raised = (std::int64_t{dim - 1} / factor + 1) * factor + 1;
    if (raised > std::numeric_limits<int>::max()) return std::nullopt;
    dim = static_cast<int>(raised);
  }
  return level;
}

}  // namespace

void vi_clear_cen_size(center_size* record, int full) {
  if (!record) return;
  record->centre_set = 0;
  record->sized = 0;
  if (full != 1) return;
  center_size cleared;
  cleared.dims_given = record->dims_given;
  cleared.extent_given = record->extent_given;
  cleared.spacing_given = record->spacing_given;
  *record = cleared;
}

int vx_set_grid_from_points(float* points, int count, float x_buffer, float y_buffer,
                            float z_buffer, float spacing, GridStruct* grid) {
  if (spacing == 0.0f || !points || count < 1 || !grid) return 0;
  Box box{};
  vx_get_box_size(points, count, box.low.data(), box.high.data());
  const Floats3 buffers = {x_buffer, y_buffer, z_buffer};
  Ints3 dims{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float length = box.high[axis] - box.low[axis] + 2.0f * buffers[axis];
    const std::optional<int> dim = points_for(3, truncated(length * (-1.0f / spacing)));
    if (!dim) return 0;
    dims[axis] = *dim;
  }
  detail::set_lattice(*grid, {dims, box.centre(), spacing});
  grid->floats = nullptr;
  grid->integers = nullptr;
  return 1;
}

void vi_make_grid(int, center_size* size, GridStruct* grid, PdbStruct* atoms, float* radii,
                  int count, float probe, int* levels, int keep_all) {
  if (!size || !grid) return;
  const bool keep_mid = size->centre_set != 0;
  Layout layout{
      {grid->xmid, grid->ymid, grid->zmid}, {grid->xdim, grid->ydim, grid->zdim}, grid->spacing};
  if (size->sized == 0) {
    if (!keep_mid) layout.mid = box_of_atoms(atoms, radii, count, keep_all != 0).centre();
    const SizingJob job{*size, atoms, radii,
                        count, probe, vi_sindex(grid->name, "accessible") == 1};
    if (!job.complete(layout)) return;
  }
  if (!std::isfinite(layout.spacing)) return;
  if (std::any_of(layout.dims.begin(), layout.dims.end(), [](int dim) { return dim < 1; })) return;
  const std::optional<int> level = fit_multigrid(layout.dims);
  if (!level) return;
  if (levels) *levels = *level;
  if (!keep_mid) {
    grid->xmid = layout.mid[0];
    grid->ymid = layout.mid[1];
    grid->zmid = layout.mid[2];
  }
  grid->spacing = layout.spacing;
  if (layout.spacing != 0.0f) grid->inverse_spacing = 1.0f / layout.spacing;
  grid->xdim = layout.dims[0];
  grid->ydim = layout.dims[1];
  grid->zdim = layout.dims[2];
  size->centre_set = 1;
  size->sized = 1;
}

int vx_grid_struct_midpoint(GridStruct* g) {
  if (!g) return 0;
  // Unsigned, so that dimensions of no real grid do no harm; halving is arithmetic.
  const auto half = [](int dim) {
    return static_cast<std::uint64_t>((std::int64_t{dim} - 1) >> 1);
  };
  const auto xdim = static_cast<std::uint64_t>(g->xdim);
  const auto ydim = static_cast<std::uint64_t>(g->ydim);
  return static_cast<int>((half(g->zdim) * ydim + half(g->ydim)) * xdim + half(g->xdim));
}

}  // namespace VXCore
