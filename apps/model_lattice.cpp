// The lattice around a model for a grid that is going to be a file.
#include "model_lattice.h"

#include <cmath>    // for round
#include <cstddef>  // for size_t
#include <vector>   // for vector

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/gridmath/sizing.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

template <class Grid>
bool lay(const VXMolBase& model, float spacing, Grid& grid) {
  constexpr float buffer = 4.0f;
  std::vector<float> coords(3 * std::size_t{model.GetMaxAtomIdx()});
  GridStruct size;
  if (!model.GetCoords(coords.data()) ||
      !vx_set_grid_from_points(coords.data(), static_cast<int>(model.GetMaxAtomIdx()), buffer,
                               buffer, buffer, spacing, &size))
    return false;
  if (vx_grid_struct_overflow(size)) return false;
  const auto odd = [](int dim) { return static_cast<unsigned int>(dim) | 1u; };
  const auto snapped = [&](float mid) { return std::round(mid / spacing) * spacing; };
  grid.SetSpacing(spacing);
  grid.SetMid(snapped(size.xmid), snapped(size.ymid), snapped(size.zmid));
  return grid.SetDim(odd(size.xdim), odd(size.ydim), odd(size.zdim));
}

}  // namespace

bool lay_lattice(const VXMolBase& model, float spacing, VXBrioGrid& grid) {
  return lay(model, spacing, grid);
}

bool lay_lattice(const VXMolBase& model, float spacing, VXScalarGrid& grid) {
  return lay(model, spacing, grid);
}

}  // namespace vxgrid_app
