// Point by point sums of grids whose lattices coincide.
#include "vxgrid/gridmath/merge.h"

#include <algorithm>  // for copy_n, max, min
#include <array>      // for array
#include <cmath>      // for fabs, rint
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t

#include "gridmath/record_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

// The overlap of two lattices on one axis: where it begins in either, and its length.
struct Span {
  std::int64_t to, from, length;
};

Span clip(int to_dim, int from_dim, std::int64_t offset) {
  const std::int64_t from = std::max<std::int64_t>(0, -offset);
  const std::int64_t to = std::max<std::int64_t>(0, offset);
  return {to, from, std::min(to_dim - to, from_dim - from)};
}

template <class Rule>
void merge_rows(const RecordLattice& to, float* to_values, const RecordLattice& from,
                const float* from_values, const std::array<Span, 3>& spans, Rule rule) {
  const auto& [x, y, z] = spans;
  for (std::int64_t k = 0; k < z.length; ++k) {
    for (std::int64_t j = 0; j < y.length; ++j) {
      float* const target =
          to_values + x.to +
          static_cast<std::int64_t>(to.row_stride()) * (y.to + j + to.dim[1] * (z.to + k));
      const float* const source =
          from_values + x.from +
          static_cast<std::int64_t>(from.row_stride()) * (y.from + j + from.dim[1] * (z.from + k));
      for (std::int64_t i = 0; i < x.length; ++i)
        rule(target[i], source[i]);
    }
  }
}

}  // namespace

int vi_zero_offset(GridStruct a, GridStruct b, int* x, int* y, int* z) {
  constexpr float tolerance = 0.00001f;
  if (!(std::fabs(a.spacing - b.spacing) <= tolerance)) {
    VXThrow.Warning("Can't add grid with different spacings.");
    return 0;
  }
  const float inverse = 1.0f / a.spacing;
  const std::array<float, 3> shift = {b.xmid - a.xmid, b.ymid - a.ymid, b.zmid - a.zmid};
  for (const float s : shift) {
    const float steps = std::fabs(s) * inverse;
    if (!(std::fabs(steps - std::rint(steps)) <= tolerance)) {
      VXThrow.Warning("Grids are misaligned.");
      return 0;
    }
  }
  const auto offset = [&](int a_dim, int b_dim, float s) {
    const float half = static_cast<float>(std::int64_t{a_dim} - b_dim) * 0.5f;
    return vi_nint(half + s * inverse);
  };
  if (x) *x = offset(a.xdim, b.xdim, shift[0]);
  if (y) *y = offset(a.ydim, b.ydim, shift[1]);
  if (z) *z = offset(a.zdim, b.zdim, shift[2]);
  return 1;
}

int vi_merge_grids(GridStruct* to, GridStruct from, int mode) {
  if (!to) return 0;
  if (to->spacing == 0.0f || from.spacing == 0.0f) {
    VXThrow.Warning("Zero grid spacing!");
    return 0;
  }
  int x = 0;
  int y = 0;
  int z = 0;
  if (!vi_zero_offset(*to, from, &x, &y, &z)) return 0;
  if (!to->floats || !from.floats) return 0;
  const RecordLattice target(*to);
  const RecordLattice source(from);
  if (target.size() == 0 || source.size() == 0) return 1;
  const std::array<Span, 3> spans = {clip(to->xdim, from.xdim, x), clip(to->ydim, from.ydim, y),
                                     clip(to->zdim, from.zdim, z)};
  switch (mode) {
    case 1:
      merge_rows(target, to->floats, source, from.floats, spans, [](float& t, float s) { t += s; });
      break;
    case 2:
      merge_rows(target, to->floats, source, from.floats, spans, [](float& t, float s) { t -= s; });
      break;
    case 3:
      merge_rows(target, to->floats, source, from.floats, spans, [](float& t, float s) { t = s; });
      break;
    default:
      break;
  }
  return 1;
}

int vi_add_grid(GridStruct* to, GridStruct from) {
  return vi_merge_grids(to, from, 1);
}

int vi_sub_grid(GridStruct* to, GridStruct from) {
  return vi_merge_grids(to, from, 2);
}

int vi_put_grid(GridStruct* to, GridStruct from) {
  return vi_merge_grids(to, from, 3);
}

}  // namespace VXCore
