/// \file
/// VXBrioGrid: making and assigning, its fields, orientation and cell.
#include "vxgrid/grid/brio_grid.h"

#include <algorithm>  // for any_of, copy_n, max, min
#include <cmath>      // for cos, sin, sqrt
#include <limits>     // for numeric_limits
#include <new>        // for bad_alloc
#include <utility>    // for exchange, move

#include "grid/lattice.h"
#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {

template class VXBaseDataT<VXBrioGrid>;
template class VXBaseDataT<std::vector<VXBrioGrid>>;

namespace {

constexpr double radians_per_degree = 0.0174532925199433;

template <class Store>
bool has_values(const Store& store) {
  return store.GetNumGrids() > 0 &&
         (store.GetXDim() > 1 || store.GetYDim() > 1 || store.GetZDim() > 1);
}

template <class Store>
int number_of_fields(const Store& store) {
  return static_cast<int>(std::max(store.GetNumGrids(), 1u));
}

template <class Store>
void make_first_field(Store& store) {
  if (store.GetNumGrids() == 0) store.SetNumGrids(1);
}

/// Grows a store to `count` fields and records the count, which a 32-bit int has to hold.
template <class Store>
bool grow(Store& store, unsigned int count, int& multiple) {
  if (count > static_cast<unsigned int>(std::numeric_limits<int>::max())) return false;
  try {
    if (store.GetNumGrids() < count && !store.SetNumGrids(count)) return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
  multiple = static_cast<int>(count);
  return true;
}

}  // namespace

VXBrioGrid::VXBrioGrid() = default;
VXBrioGrid::~VXBrioGrid() = default;

VXBrioGrid::VXBrioGrid(const VXBrioGrid& other)
    : VXGridAbstractBase(other),
      settings_(other.settings_),
      floats_(other.floats_),
      integers_(other.integers_) {
  SetTitle(other.GetTitle());
}

VXBrioGrid::VXBrioGrid(VXBrioGrid&& other) noexcept : VXBrioGrid() {
  *this = std::move(other);
}

VXBrioGrid::VXBrioGrid(const VXScalarGrid& grid) {
  *this = grid;
}

VXBrioGrid::VXBrioGrid(const VXFixedMultiGrid<float>& floats, const VXFixedMultiGrid<int>& integers)
    : floats_(floats), integers_(integers) {
  settings_.floats_multiple = number_of_fields(floats_);
  settings_.integers_multiple = number_of_fields(integers_);
  SetUnitCellFromSpacing(GetSpacing());
}

VXBrioGrid& VXBrioGrid::operator=(const VXBrioGrid& other) {
  if (this == &other) return *this;
  VXGridAbstractBase::operator=(other);
  settings_ = other.settings_;
  floats_ = other.floats_;
  integers_ = other.integers_;
  SetTitle(other.GetTitle());
  return *this;
}

VXBrioGrid& VXBrioGrid::operator=(VXBrioGrid&& other) noexcept {
  if (this == &other) return *this;
  VXGridAbstractBase::operator=(std::move(other));
  settings_ = std::exchange(other.settings_, Settings());
  // A store that was moved from has no field; clearing gives it back its first one.
  floats_ = std::move(other.floats_);
  other.floats_.Clear();
  integers_ = std::move(other.integers_);
  other.integers_.Clear();
  return *this;
}

VXBrioGrid& VXBrioGrid::operator=(const VXScalarGrid& grid) {
  *this = static_cast<const VXFixedGrid<float>&>(grid);
  settings_.type = grid.GetType();
  return *this;
}

VXBrioGrid& VXBrioGrid::operator=(const VXFixedGrid<float>& grid) {
  for (unsigned int field = 0; field < floats_.GetNumGrids(); ++field) {
    // A field of this very grid would lose its values when the store is sized anew.
    if (&floats_[field] == &grid) return *this = VXGrid<float>(grid);
  }
  VXCopyBaseData(*this, grid);
  make_first_field(floats_);
  floats_.SetTitle(grid.GetTitle());
  floats_.SetSpacing(grid.GetSpacing());
  floats_.SetMid(grid.GetXMid(), grid.GetYMid(), grid.GetZMid());
  floats_.SetDim(grid.GetXDim(), grid.GetYDim(), grid.GetZDim());
  floats_.SetValues(0, grid.GetValues(), grid.GetSize());
  match_integers_to_floats();
  return *this;
}

VXBrioGrid& VXBrioGrid::operator=(const VXFixedMultiGrid<float>& grid) {
  VXCopyBaseData(*this, grid);
  floats_ = grid;
  SetTitle(grid.GetTitle());
  settings_.floats_multiple = number_of_fields(floats_);
  match_integers_to_floats();
  return *this;
}

/// Ends an assignment: the integers on the geometry of the floats, and a lattice of cubes as cell.
void VXBrioGrid::match_integers_to_floats() {
  make_first_field(integers_);
  integers_.SetMid(floats_.GetXMid(), floats_.GetYMid(), floats_.GetZMid());
  integers_.SetDim(floats_.GetXDim(), floats_.GetYDim(), floats_.GetZDim());
  SetUnitCellFromSpacing(floats_.GetSpacing());
}

void VXBrioGrid::Clear() {
  *this = VXBrioGrid();
}

TypeId VXBrioGrid::GetDataType() const {
  return type_ids::brio_grid;
}

bool VXBrioGrid::IsDataType(TypeId type) const {
  return type == type_ids::brio_grid || VXGridAbstractBase::IsDataType(type);
}

VXBase* VXBrioGrid::CreateCopy() const {
  return new VXBrioGrid(*this);
}

std::string VXBrioGrid::GetTitle() const {
  return floats_.GetTitle();
}
bool VXBrioGrid::SetTitle(const std::string& title) {
  return floats_.SetTitle(title);
}
bool VXBrioGrid::IsTitleSet() const {
  return floats_.IsTitleSet();
}
float VXBrioGrid::GetSpacing() const {
  return floats_.GetSpacing();
}
bool VXBrioGrid::IsSpacingSet() const {
  return floats_.IsSpacingSet();
}
unsigned int VXBrioGrid::GetSize() const {
  return floats_.GetSize();
}
bool VXBrioGrid::GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const {
  xdim = floats_.GetXDim();
  ydim = floats_.GetYDim();
  zdim = floats_.GetZDim();
  return true;
}
unsigned int VXBrioGrid::GetXDim() const {
  return floats_.GetXDim();
}
unsigned int VXBrioGrid::GetYDim() const {
  return floats_.GetYDim();
}
unsigned int VXBrioGrid::GetZDim() const {
  return floats_.GetZDim();
}
bool VXBrioGrid::GetMid(float& xmid, float& ymid, float& zmid) const {
  return floats_.GetMid(xmid, ymid, zmid);
}
float VXBrioGrid::GetXMid() const {
  return floats_.GetXMid();
}
float VXBrioGrid::GetYMid() const {
  return floats_.GetYMid();
}
float VXBrioGrid::GetZMid() const {
  return floats_.GetZMid();
}

bool VXBrioGrid::SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim) {
  integers_.SetDim(xdim, ydim, zdim);
  return floats_.SetDim(xdim, ydim, zdim);
}

bool VXBrioGrid::SetMid(float xmid, float ymid, float zmid) {
  integers_.SetMid(xmid, ymid, zmid);
  return floats_.SetMid(xmid, ymid, zmid);
}

bool VXBrioGrid::SetSpacing(float spacing) {
  integers_.SetSpacing(spacing);
  return floats_.SetSpacing(spacing);
}

float* VXBrioGrid::GetValues() {
  return GetFloatsSet() ? floats_.GetValues(0) : nullptr;
}
const float* VXBrioGrid::GetValues() const {
  return GetFloatsSet() ? floats_.GetValues(0) : nullptr;
}

bool VXBrioGrid::SetValues(const float* values, unsigned int count) {
  return floats_.SetValues(0, values, count);
}

bool VXBrioGrid::AdoptValues(ValueBuffer<float>&& values) {
  return floats_.GetNumGrids() > 0 && floats_[0].AdoptValues(std::move(values));
}

bool VXBrioGrid::GetFloatsSet() const {
  return has_values(floats_);
}
bool VXBrioGrid::GetIntegersSet() const {
  return has_values(integers_);
}

bool VXBrioGrid::SetFloatsMultiple(unsigned int count) {
  return grow(floats_, count, settings_.floats_multiple);
}

bool VXBrioGrid::SetIntegersMultiple(unsigned int count) {
  return grow(integers_, count, settings_.integers_multiple);
}

bool VXBrioGrid::GetOrientation(float* matrix) const {
  if (!settings_.orientation_set || !matrix) return false;
  std::copy_n(settings_.orientation.begin(), 9, matrix);
  return true;
}

bool VXBrioGrid::SetOrientation(const float* matrix) {
  if (!matrix) return false;
  std::copy_n(matrix, 9, settings_.orientation.begin());
  settings_.orientation_set = true;
  return true;
}

bool VXBrioGrid::SetOrientationSet(bool set) {
  settings_.orientation_set = set;
  return true;
}

bool VXBrioGrid::IsRegular() const {
  const auto& m = settings_.orientation;
  return !settings_.orientation_set || (m[0] == 1.0f && m[4] == 1.0f && m[8] == 1.0f);
}

bool VXBrioGrid::GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta,
                             float& gamma) const {
  const auto& cell = settings_.cell;
  a = cell[0];
  b = cell[1];
  c = cell[2];
  alpha = cell[3];
  beta = cell[4];
  gamma = cell[5];
  return true;
}

bool VXBrioGrid::HasUnitCell() const {
  return std::any_of(settings_.cell.begin(), settings_.cell.end(),
                     [](float parameter) { return parameter != 0.0f; });
}

bool VXBrioGrid::GetUnitSpacing(unsigned int& nx, unsigned int& ny, unsigned int& nz) const {
  nx = settings_.unit_spacing[0];
  ny = settings_.unit_spacing[1];
  nz = settings_.unit_spacing[2];
  return nx != 0 || ny != 0 || nz != 0;
}

// The crystal's orthogonalisation matrix (a along x, b in the xy plane) with each column divided by
// its number of intervals, and the smallest step taken out as the spacing. The rounding of each
// step to single precision is part of the result.
bool VXBrioGrid::SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma,
                             unsigned int nx, unsigned int ny, unsigned int nz) {
  settings_.unit_spacing = {nx, ny, nz};
  settings_.cell = {a, b, c, alpha, beta, gamma};

  const float sin_gamma = static_cast<float>(std::sin(gamma * radians_per_degree));
  const float cos_gamma = static_cast<float>(std::cos(gamma * radians_per_degree));
  const float cos_beta = static_cast<float>(std::cos(beta * radians_per_degree));
  const double cos_alpha = std::cos(alpha * radians_per_degree);
  const float cos_product = cos_gamma * cos_beta;
  const float n =
      static_cast<float>((cos_alpha - static_cast<double>(cos_product)) / double{sin_gamma});
  const float w_squared = 1.0f - cos_beta * cos_beta - n * n;
  const float w = static_cast<float>(std::sqrt(double{w_squared}));

  const float step_a = a / static_cast<float>(nx);
  const float step_b = b / static_cast<float>(ny);
  const float step_c = c / static_cast<float>(nz);
  const float spacing = std::min({step_b, step_a, step_c});
  const float r = 1.0f / spacing;
  settings_.orientation = {r * step_a,
                           r * step_b * cos_gamma,
                           r * step_c * cos_beta,
                           0.0f,
                           r * step_b * sin_gamma,
                           r * step_c * n,
                           0.0f,
                           0.0f,
                           r * step_c * w};
  settings_.orientation_set = true;
  SetSpacing(spacing);
  return true;
}

bool VXBrioGrid::SetUnitCellFromSpacing(float spacing) {
  settings_.orientation = detail::identity3;
  settings_.orientation_set = true;
  SetSpacing(spacing);
  const float length_x = static_cast<float>(GetXDim()) * spacing;
  const float length_y = static_cast<float>(GetYDim()) * spacing;
  const float length_z = static_cast<float>(GetZDim()) * spacing;
  settings_.cell = {length_x, length_y, length_z, 90.0f, 90.0f, 90.0f};
  settings_.unit_spacing = {GetXDim(), GetYDim(), GetZDim()};
  return true;
}

bool VXBrioGrid::SetSpaceGroup(unsigned int number) {
  settings_.space_group = number;
  return true;
}

}  // namespace VXCore
