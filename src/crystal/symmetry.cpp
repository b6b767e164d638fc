// Binding a space group to a cell, and taking points through its operators.
#include "vxgrid/crystal/symmetry.h"

#include <algorithm>  // for copy
#include <cmath>      // for fabs
#include <cstddef>    // for size_t
#include <cstring>    // for strlen

#include "crystal/affine.h"
#include "vxgrid/crystal/space_groups.h"
#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore::VXXtal {

namespace {

/// Names up to this length are given in full, longer ones as their short form.
constexpr std::size_t longest_name = 10;

bool same_edge(float a, float b) {
  return !(static_cast<double>(std::fabs(a - b)) > 0.005);
}

bool all_right_angles(const VXUnitCell& cell) {
  return cell.alpha == 90 && cell.beta == 90 && cell.gamma == 90;
}

/// The message of a monoclinic cell, and whether the cell is taken. b is the standard unique axis.
bool check_monoclinic(const VXUnitCell& cell, std::string& message) {
  if (cell.alpha == 90 && cell.gamma == 90) return true;
  if (cell.beta != 90 || (cell.alpha != 90 && cell.gamma != 90)) return false;
  message = cell.alpha == 90 ? "Monoclinic cell in nonstandard C-unique setting"
                             : "Monoclinic cell in nonstandard A-unique setting";
  return true;
}

bool meets_constraints(const VXUnitCell& cell, int system) {
  switch (system) {
    case crystal_system::orthorhombic:
      return all_right_angles(cell);
    case crystal_system::tetragonal:
      return all_right_angles(cell) && same_edge(cell.a, cell.b);
    case crystal_system::trigonal:
    case crystal_system::hexagonal:
      return cell.alpha == 90 && cell.beta == 90 && cell.gamma == 120 && same_edge(cell.a, cell.b);
    case crystal_system::cubic:
      return all_right_angles(cell) && same_edge(cell.a, cell.b) && same_edge(cell.b, cell.c) &&
             same_edge(cell.a, cell.c);
    default:
      return true;
  }
}

void transform_points(const detail::Matrix4& matrix, float* coords, std::size_t count) {
  for (float* point = coords; point != coords + 3 * count; point += 3) {
    const auto moved = detail::transform_point(matrix.data(), point);
    std::copy(moved.begin(), moved.end(), point);
  }
}

/// Cuts off the fraction, towards zero; 0 for what does not fit a 32-bit integer.
float cut_fraction(float value) {
  return detail::fits_int32(value) ? static_cast<float>(static_cast<int>(value)) : 0.0f;
}

/// Brings fractional coordinates into [0, 1).
void wrap_points(float* coords, std::size_t count) {
  for (float* v = coords; v != coords + 3 * count; ++v) {
    if (!(*v >= 0)) *v = (1 - cut_fraction(*v)) + *v;
    // Whole and very small negative values have become 1.
    if (*v >= 1) *v = *v - cut_fraction(*v);
  }
}

}  // namespace

VXSymmetryImpl::VXSymmetryImpl(unsigned int number, const VXUnitCell& cell) {
  bind(find_space_group(number), cell);
}

VXSymmetryImpl::VXSymmetryImpl(const std::string& name, const VXUnitCell& cell) {
  bind(find_space_group(name), cell);
}

void VXSymmetryImpl::bind(int row, const VXUnitCell& cell) {
  cell_ = cell;
  if (!check_cell(row)) {
    VXThrow.Warning(error_);
    return;
  }
  const sglibT& group = sglib[row];
  number_ = group.number;
  name_ = std::strlen(group.long_name) <= longest_name ? group.long_name : group.short_name;
  op_count_ = static_cast<unsigned int>(group.op_count);
  matrices_ = group.matrices[0];
  enabled_.assign(op_count_, true);
}

bool VXSymmetryImpl::check_cell(int row) {
  error_.clear();
  if (row < 0) {
    error_ = "Error: Unknown space group number.";
    return false;
  }
  const int system = sglib[row].system;
  if (system == crystal_system::monoclinic) return check_monoclinic(cell_, error_);
  if (meets_constraints(cell_, system)) return true;
  error_ = "The specified cell does not meet the constraints for the given spacegroup";
  return false;
}

/// Null if there is no such operator.
const float* VXSymmetryImpl::find_operator(unsigned int op) const {
  return number_ > 0 && op < op_count_ ? matrices_ + 16 * static_cast<std::size_t>(op) : nullptr;
}

bool VXSymmetryImpl::GetEnabled(std::vector<bool>& flags) const {
  flags = enabled_;
  return true;
}

bool VXSymmetryImpl::SetEnabled(const std::vector<bool>& flags) {
  if (flags.size() != op_count_) return false;
  enabled_ = flags;
  return true;
}

bool VXSymmetryImpl::CartesianToFractional(float* coords, unsigned int count, unsigned int op,
                                           bool wrap) const {
  const float* matrix = find_operator(op);
  if (!matrix) return false;
  transform_points(detail::chain(cell_.Cart2Frac(), matrix), coords, count);
  if (wrap) wrap_points(coords, count);
  return true;
}

bool VXSymmetryImpl::FractionalToCartesian(float* coords, unsigned int count, unsigned int op,
                                           bool wrap) const {
  const float* matrix = find_operator(op);
  if (!matrix) return false;
  if (wrap) wrap_points(coords, count);
  transform_points(detail::chain(cell_.Frac2Cart(), matrix), coords, count);
  return true;
}

bool VXSymmetryImpl::GetCartesianOperator(float* out, unsigned int op, int ix, int iy, int iz,
                                          const float* anchor) const {
  const float* matrix = find_operator(op);
  if (!matrix) return false;
  detail::Matrix4 shifted;
  std::copy(matrix, matrix + 16, shifted.begin());
  if (anchor) {
    const auto to_image = detail::chain(cell_.Cart2Frac(), matrix);
    const auto image = detail::transform_point(to_image.data(), anchor);
    for (std::size_t i = 0; i < 3; ++i)
      shifted[12 + i] -= detail::cell_floor(image[i]);
  }
  shifted[12] += static_cast<float>(ix);
  shifted[13] += static_cast<float>(iy);
  shifted[14] += static_cast<float>(iz);
  const auto to_fractional = detail::chain(cell_.Cart2Frac(), shifted.data());
  const auto whole = detail::chain(to_fractional.data(), cell_.Frac2Cart());
  std::copy(whole.begin(), whole.end(), out);
  return true;
}

VXSymmetry::VXSymmetry() : impl_(std::make_unique<VXSymmetryImpl>()) {}
VXSymmetry::VXSymmetry(unsigned int number, const VXUnitCell& cell)
    : impl_(std::make_unique<VXSymmetryImpl>(number, cell)) {}
VXSymmetry::VXSymmetry(const std::string& name, const VXUnitCell& cell)
    : impl_(std::make_unique<VXSymmetryImpl>(name, cell)) {}
VXSymmetry::VXSymmetry(const VXSymmetry& other)
    : impl_(std::make_unique<VXSymmetryImpl>(*other.impl_)) {}
VXSymmetry::~VXSymmetry() = default;

VXSymmetry& VXSymmetry::operator=(const VXSymmetry& other) {
  *impl_ = *other.impl_;
  return *this;
}

VXSymmetry::operator bool() const {
  return impl_->GetNumber() > 0;
}
std::string VXSymmetry::GetName() const {
  return impl_->GetName();
}
unsigned int VXSymmetry::GetNumber() const {
  return impl_->GetNumber();
}
unsigned int VXSymmetry::GetOpCount() const {
  return impl_->GetOpCount();
}
const float* VXSymmetry::GetMatrices() const {
  return impl_->GetMatrices();
}
std::string VXSymmetry::GetError() const {
  return impl_->GetError();
}
bool VXSymmetry::HasWarnings() const {
  return impl_->HasWarnings();
}
bool VXSymmetry::GetEnabled(std::vector<bool>& flags) const {
  return impl_->GetEnabled(flags);
}
bool VXSymmetry::SetEnabled(const std::vector<bool>& flags) {
  return impl_->SetEnabled(flags);
}

bool VXSymmetry::CartesianToFractional(float* coords, unsigned int count, unsigned int op,
                                       bool wrap) const {
  return impl_->CartesianToFractional(coords, count, op, wrap);
}

bool VXSymmetry::FractionalToCartesian(float* coords, unsigned int count, unsigned int op,
                                       bool wrap) const {
  return impl_->FractionalToCartesian(coords, count, op, wrap);
}

VXUnitCell& VXSymmetry::cell() {
  return impl_->cell();
}
const VXUnitCell& VXSymmetry::cell() const {
  return impl_->cell();
}
VXSymmetryImpl* VXSymmetry::GetImpl() {
  return impl_.get();
}
const VXSymmetryImpl* VXSymmetry::GetImpl() const {
  return impl_.get();
}

}  // namespace VXCore::VXXtal
