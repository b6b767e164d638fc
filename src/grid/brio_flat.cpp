/// \file
/// The flat accessors: dimensions, mid, spacing, title, fields, flags and crystal data.
#include "vxgrid/grid/brio_flat.h"

#include <algorithm>  // for copy_n, fill_n, min
#include <cstdint>    // for uint64_t
#include <cstring>    // for memcpy
#include <limits>     // for numeric_limits

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_functions.h"

namespace VXCore {

namespace {

int give_dimension(int* out, unsigned int dim) {
  if (!out) return 0;
  *out = static_cast<int>(dim);
  return 1;
}

int give(float* out, float value) {
  if (!out) return 0;
  *out = value;
  return 1;
}

/// Applies one setter to the float store and then to the integer store.
template <class Change>
int on_both_stores(VXBrioGrid& grid, Change change) {
  return change(grid.GetFloats()) && change(grid.GetIntegers()) ? 1 : 0;
}

/// The values of the selected field, null when the count of fields in use points to none.
template <class Store>
auto selected_values(Store& store, int multiple) -> decltype(store[0].GetValues()) {
  if (multiple < 1 || static_cast<unsigned int>(multiple) > store.GetNumGrids()) return nullptr;
  return store[static_cast<unsigned int>(multiple) - 1].GetValues();
}

template <class T, class Store>
int copy_field(T* out, const Store& store, int multiple) {
  const T* values = selected_values(store, multiple);
  if (!out || !values) return 0;
  std::copy_n(values, store.GetSize(), out);
  return 1;
}

template <class T, class Store>
int set_field(const T* values, Store& store, int multiple) {
  T* field = selected_values(store, multiple);
  if (!values || !field) return 0;
  std::copy_n(values, store.GetSize(), field);
  return 1;
}

/// The limit takes an index equal to the size, one past the last element, for good.
bool element_allowed(int i, unsigned int size) {
  return i >= 0 && static_cast<unsigned int>(i) <= size;
}

template <class T, class Store>
int get_element(T* out, int i, const Store& store, int multiple) {
  const T* values = selected_values(store, multiple);
  if (!out || !values || !element_allowed(i, store.GetSize())) return 0;
  *out = static_cast<unsigned int>(i) < store.GetSize() ? values[i] : T{};
  return 1;
}

template <class T, class Store>
int set_element(T value, int i, Store& store, int multiple) {
  T* values = selected_values(store, multiple);
  if (!values || !element_allowed(i, store.GetSize())) return 0;
  if (static_cast<unsigned int>(i) < store.GetSize()) values[i] = value;
  return 1;
}

template <class Store>
int length_of(const Store& store) {
  const std::uint64_t length = std::uint64_t{store.GetSize()} * store.GetNumGrids();
  return static_cast<int>(std::min<std::uint64_t>(length, std::numeric_limits<int>::max()));
}

template <class Store>
int clear_fields(Store& store) {
  for (unsigned int field = 0; field < store.GetNumGrids(); ++field) {
    if (auto* values = store[field].GetValues()) std::fill_n(values, store.GetSize(), 0);
  }
  return 1;
}

}  // namespace

int vx_get_grid_x_dimension(int* dim, const VXBrioGrid& grid) {
  return give_dimension(dim, grid.GetXDim());
}
int vx_get_grid_y_dimension(int* dim, const VXBrioGrid& grid) {
  return give_dimension(dim, grid.GetYDim());
}
int vx_get_grid_z_dimension(int* dim, const VXBrioGrid& grid) {
  return give_dimension(dim, grid.GetZDim());
}

int vx_set_grid_x_dimension(int dim, VXBrioGrid& grid) {
  if (dim < 0) return 0;
  return on_both_stores(grid, [=](auto& s) { return s.SetXDim(static_cast<unsigned int>(dim)); });
}
int vx_set_grid_y_dimension(int dim, VXBrioGrid& grid) {
  if (dim < 0) return 0;
  return on_both_stores(grid, [=](auto& s) { return s.SetYDim(static_cast<unsigned int>(dim)); });
}
int vx_set_grid_z_dimension(int dim, VXBrioGrid& grid) {
  if (dim < 0) return 0;
  return on_both_stores(grid, [=](auto& s) { return s.SetZDim(static_cast<unsigned int>(dim)); });
}

int vx_get_grid_x_midpoint(float* mid, const VXBrioGrid& grid) {
  return give(mid, grid.GetXMid());
}
int vx_get_grid_y_midpoint(float* mid, const VXBrioGrid& grid) {
  return give(mid, grid.GetYMid());
}
int vx_get_grid_z_midpoint(float* mid, const VXBrioGrid& grid) {
  return give(mid, grid.GetZMid());
}

int vx_set_grid_x_midpoint(float mid, VXBrioGrid& grid) {
  return on_both_stores(grid, [=](auto& s) { return s.SetXMid(mid); });
}
int vx_set_grid_y_midpoint(float mid, VXBrioGrid& grid) {
  return on_both_stores(grid, [=](auto& s) { return s.SetYMid(mid); });
}
int vx_set_grid_z_midpoint(float mid, VXBrioGrid& grid) {
  return on_both_stores(grid, [=](auto& s) { return s.SetZMid(mid); });
}

int vx_is_grid_x_midpoint_set(const VXBrioGrid& grid) {
  return grid.GetFloats().IsXMidSet();
}
int vx_is_grid_y_midpoint_set(const VXBrioGrid& grid) {
  return grid.GetFloats().IsYMidSet();
}
int vx_is_grid_z_midpoint_set(const VXBrioGrid& grid) {
  return grid.GetFloats().IsZMidSet();
}

int vx_get_grid_spacing(float* spacing, const VXBrioGrid& grid) {
  return give(spacing, grid.GetSpacing());
}
int vx_set_grid_spacing(float spacing, VXBrioGrid& grid) {
  return on_both_stores(grid, [=](auto& s) { return s.SetSpacing(spacing); });
}
int vx_is_grid_spacing_set(const VXBrioGrid& grid) {
  return grid.IsSpacingSet();
}

int vx_get_grid_name(char* name, const VXBrioGrid& grid) {
  if (!name) return 0;
  const std::string title = grid.GetTitle();
  std::memcpy(name, title.c_str(), title.size() + 1);
  return 1;
}
int vx_set_grid_name(const char* name, VXBrioGrid& grid) {
  return name && grid.SetTitle(name);
}
int vx_is_grid_name_set(const VXBrioGrid& grid) {
  return grid.IsTitleSet();
}

int vx_get_grid_orientation(float* matrix, const VXBrioGrid& grid) {
  return matrix && grid.GetOrientation(matrix);
}
int vx_set_grid_orientation(const float* matrix, VXBrioGrid& grid) {
  return grid.SetOrientation(matrix);
}
int vx_is_grid_orientation_set(const VXBrioGrid& grid) {
  return grid.GetOrientationSet();
}

int vx_get_grid_floats(float* values, const VXBrioGrid& grid) {
  return copy_field(values, grid.GetFloats(), grid.GetFloatsMultiple());
}
int vx_set_grid_floats(const float* values, VXBrioGrid& grid) {
  return set_field(values, grid.GetFloats(), grid.GetFloatsMultiple());
}
int vx_is_grid_floats_set(const VXBrioGrid& grid) {
  return grid.GetFloatsSet();
}
int vx_get_grid_floats_element(float* value, int i, const VXBrioGrid& grid) {
  return get_element(value, i, grid.GetFloats(), grid.GetFloatsMultiple());
}
int vx_set_grid_floats_element(float value, int i, VXBrioGrid& grid) {
  return set_element(value, i, grid.GetFloats(), grid.GetFloatsMultiple());
}
int vx_get_grid_floats_length(const VXBrioGrid& grid) {
  return length_of(grid.GetFloats());
}
int vx_set_grid_floats_multiple(int count, VXBrioGrid& grid) {
  return count >= 0 && grid.SetFloatsMultiple(static_cast<unsigned int>(count));
}

int vx_get_grid_integers(int* values, const VXBrioGrid& grid) {
  return copy_field(values, grid.GetIntegers(), grid.GetIntegersMultiple());
}
int vx_set_grid_integers(const int* values, VXBrioGrid& grid) {
  return set_field(values, grid.GetIntegers(), grid.GetIntegersMultiple());
}
int vx_is_grid_integers_set(const VXBrioGrid& grid) {
  return grid.GetIntegersSet();
}
int vx_get_grid_integers_element(int* value, int i, const VXBrioGrid& grid) {
  return get_element(value, i, grid.GetIntegers(), grid.GetIntegersMultiple());
}
int vx_set_grid_integers_element(int value, int i, VXBrioGrid& grid) {
  return set_element(value, i, grid.GetIntegers(), grid.GetIntegersMultiple());
}
int vx_get_grid_integers_length(const VXBrioGrid& grid) {
  return length_of(grid.GetIntegers());
}
int vx_set_grid_integers_multiple(int count, VXBrioGrid& grid) {
  return count >= 0 && grid.SetIntegersMultiple(static_cast<unsigned int>(count));
}

float* vi_grid_floats(VXBrioGrid& grid) {
  return selected_values(grid.GetFloats(), grid.GetFloatsMultiple());
}
const float* vi_grid_floats(const VXBrioGrid& grid) {
  return selected_values(grid.GetFloats(), grid.GetFloatsMultiple());
}
int* vi_grid_integers(VXBrioGrid& grid) {
  return selected_values(grid.GetIntegers(), grid.GetIntegersMultiple());
}
const int* vi_grid_integers(const VXBrioGrid& grid) {
  return selected_values(grid.GetIntegers(), grid.GetIntegersMultiple());
}

int vx_clear_grid_floats(VXBrioGrid& grid) {
  return clear_fields(grid.GetFloats());
}
int vx_clear_grid_integers(VXBrioGrid& grid) {
  return clear_fields(grid.GetIntegers());
}

int vx_grid_reentrant(const VXBrioGrid& grid) {
  return static_cast<int>(grid.GetReentrant());
}
int vx_grid_x_reentrant(const VXBrioGrid& grid) {
  return grid.GetXReentrant();
}
int vx_grid_y_reentrant(const VXBrioGrid& grid) {
  return grid.GetYReentrant();
}
int vx_grid_z_reentrant(const VXBrioGrid& grid) {
  return grid.GetZReentrant();
}
int vx_set_grid_reentrant(VXBrioGrid& grid) {
  grid.SetReentrant(true);
  return 1;
}
int vx_set_grid_reentrant_direction(char axis, VXBrioGrid& grid) {
  switch (axis) {
    case 'X':
    case 'x':
      grid.SetXReentrant();
      break;
    case 'Y':
    case 'y':
      grid.SetYReentrant();
      break;
    case 'Z':
    case 'z':
      grid.SetZReentrant();
      break;
    default:
      break;
  }
  return vx_grid_reentrant(grid);
}

int vx_grid_get_unitcell(float* cell, const VXBrioGrid& grid) {
  return cell && grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
}
int vx_grid_set_unitcell(float a, float b, float c, float alpha, float beta, float gamma, int nx,
                         int ny, int nz, VXBrioGrid& grid) {
  if (nx < 0 || ny < 0 || nz < 0) return 0;
  return grid.SetUnitCell(a, b, c, alpha, beta, gamma, static_cast<unsigned int>(nx),
                          static_cast<unsigned int>(ny), static_cast<unsigned int>(nz));
}
int vx_is_grid_unitcell_set(const VXBrioGrid& grid) {
  return grid.HasUnitCell();
}
int vx_grid_get_spacegroup(const VXBrioGrid& grid) {
  return static_cast<int>(grid.GetSpaceGroup());
}
int vx_grid_set_spacegroup(int number, VXBrioGrid& grid) {
  return number >= 0 && grid.SetSpaceGroup(static_cast<unsigned int>(number));
}
int vx_is_grid_spacegroup_set(const VXBrioGrid& grid) {
  return grid.HasSpaceGroup();
}

}  // namespace VXCore
