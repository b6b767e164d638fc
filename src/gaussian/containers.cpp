// Gaussian objects, their collections, and what is made of either.
#include "vxgrid/gaussian/containers.h"

#include <algorithm>  // for find_if
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <utility>    // for move

#include "gaussian/atom_radii.h"
#include "vxgrid/gaussian/explicit_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

// Writes one number of each Gaussian, in order.
template <class Number, class Get>
void write_each(const VXGaussianContainerBase& container, Number* out, Get get) {
  for (const VXGaussianBase& g : VXIter<const VXGaussianBase>(container.GetGaussians()))
    *out++ = Number{get(g)};
}

template <class Number>
void write_coords(const VXGaussianContainerBase& container, Number* out) {
  for (const VXGaussianBase& g : VXIter<const VXGaussianBase>(container.GetGaussians())) {
    float centre[3] = {};
    g.GetCenter(centre);
    for (const float x : centre)
      *out++ = Number{x};
  }
}

template <class Owned, class Viewed>
std::vector<Viewed*> pointers(const std::vector<std::unique_ptr<Owned>>& objects) {
  std::vector<Viewed*> all;
  all.reserve(objects.size());
  for (const auto& object : objects)
    all.push_back(object.get());
  return all;
}

std::unique_ptr<VXGaussianBase> clone(const VXGaussianBase& g) {
  return std::unique_ptr<VXGaussianBase>(static_cast<VXGaussianBase*>(g.CreateCopy()));
}

}  // namespace

VXGaussianBase::VXGaussianBase() = default;
VXGaussianBase::VXGaussianBase(const VXGaussianBase&) = default;
VXGaussianBase::VXGaussianBase(VXGaussianBase&&) noexcept = default;
VXGaussianBase& VXGaussianBase::operator=(const VXGaussianBase&) = default;
VXGaussianBase& VXGaussianBase::operator=(VXGaussianBase&&) noexcept = default;
VXGaussianBase::~VXGaussianBase() = default;

void VXGaussianBase::Clear() {
  VXBase::Clear();
}

TypeId VXGaussianBase::GetDataType() const {
  return type_ids::gaussian;
}

bool VXGaussianBase::IsDataType(TypeId type) const {
  return type == type_ids::gaussian || VXBase::IsDataType(type);
}

VXGaussian::VXGaussian() = default;
VXGaussian::VXGaussian(const VXGaussian&) = default;
VXGaussian::VXGaussian(VXGaussian&&) noexcept = default;
VXGaussian& VXGaussian::operator=(const VXGaussian&) = default;
VXGaussian& VXGaussian::operator=(VXGaussian&&) noexcept = default;
VXGaussian::~VXGaussian() = default;

VXGaussian::VXGaussian(float prefactor, float width, float x, float y, float z, unsigned int color)
    : x_(x), y_(y), z_(z), prefactor_(prefactor), width_(width), color_(color) {}

VXGaussian::VXGaussian(float prefactor, float width, float* center, unsigned int color)
    : prefactor_(prefactor), width_(width), color_(color) {
  SetCenter(center);
}

VXGaussian::VXGaussian(const VXGaussianBase& other) : VXGaussianBase(other) {
  take_fields(other);
}

VXGaussian& VXGaussian::operator=(const VXGaussianBase& other) {
  VXGaussianBase::operator=(other);
  take_fields(other);
  return *this;
}

void VXGaussian::take_fields(const VXGaussianBase& other) {
  x_ = other.GetX();
  y_ = other.GetY();
  z_ = other.GetZ();
  prefactor_ = other.GetPrefactor();
  width_ = other.GetWidth();
  color_ = other.GetColor();
}

void VXGaussian::Clear() {
  *this = VXGaussian();
}

TypeId VXGaussian::GetDataType() const {
  return type_ids::gaussian;
}

bool VXGaussian::IsDataType(TypeId type) const {
  return type == type_ids::gaussian || VXGaussianBase::IsDataType(type);
}

VXBase* VXGaussian::CreateCopy() const {
  return new VXGaussian(*this);
}

void VXGaussian::SetCenter(float* center) {
  if (!center) return;
  x_ = center[0];
  y_ = center[1];
  z_ = center[2];
}

void VXGaussian::GetCenter(float* center) const {
  center[0] = x_;
  center[1] = y_;
  center[2] = z_;
}

VXGaussianContainerBase::VXGaussianContainerBase() = default;
VXGaussianContainerBase::VXGaussianContainerBase(const VXGaussianContainerBase&) = default;
VXGaussianContainerBase::VXGaussianContainerBase(VXGaussianContainerBase&&) noexcept = default;
VXGaussianContainerBase& VXGaussianContainerBase::operator=(const VXGaussianContainerBase&) =
    default;
VXGaussianContainerBase& VXGaussianContainerBase::operator=(VXGaussianContainerBase&&) noexcept =
    default;
VXGaussianContainerBase::~VXGaussianContainerBase() = default;

void VXGaussianContainerBase::Clear() {
  VXBase::Clear();
}

TypeId VXGaussianContainerBase::GetDataType() const {
  return type_ids::gaussian_container;
}

bool VXGaussianContainerBase::IsDataType(TypeId type) const {
  return type == type_ids::gaussian_container || VXBase::IsDataType(type);
}

VXGaussianContainerImpl::VXGaussianContainerImpl() = default;
VXGaussianContainerImpl::VXGaussianContainerImpl(VXGaussianContainerImpl&&) noexcept = default;
VXGaussianContainerImpl& VXGaussianContainerImpl::operator=(VXGaussianContainerImpl&&) noexcept =
    default;

VXGaussianContainerImpl::VXGaussianContainerImpl(const VXGaussianContainerImpl& other)
    : VXGaussianContainerBase(other) {
  gaussians_.reserve(other.gaussians_.size());
  for (const auto& g : other.gaussians_)
    gaussians_.push_back(clone(*g));
}

VXGaussianContainerImpl& VXGaussianContainerImpl::operator=(const VXGaussianContainerImpl& other) {
  if (this != &other) *this = VXGaussianContainerImpl(other);
  return *this;
}

VXGaussianContainerImpl::~VXGaussianContainerImpl() {
  VXGaussianContainerImpl::DeleteGaussians();
}

void VXGaussianContainerImpl::Clear() {
  DeleteGaussians();
  VXGaussianContainerBase::Clear();
}

TypeId VXGaussianContainerImpl::GetDataType() const {
  return type_ids::gaussian_container;
}

bool VXGaussianContainerImpl::IsDataType(TypeId type) const {
  return type == type_ids::gaussian_container || VXGaussianContainerBase::IsDataType(type);
}

VXBase* VXGaussianContainerImpl::CreateCopy() const {
  return new VXGaussianContainerImpl(*this);
}

unsigned int VXGaussianContainerImpl::NumGaussians() const {
  return static_cast<unsigned int>(gaussians_.size());
}

bool VXGaussianContainerImpl::AddGaussian(const VXGaussianBase& gaussian) {
  gaussians_.push_back(clone(gaussian));
  return true;
}

bool VXGaussianContainerImpl::DeleteGaussian(VXGaussianBase* gaussian) {
  const auto at = std::find_if(gaussians_.begin(), gaussians_.end(),
                               [&](const auto& g) { return g.get() == gaussian; });
  if (at == gaussians_.end()) return false;
  gaussians_.erase(at);
  return true;
}

VXIterBase<const VXGaussianBase>* VXGaussianContainerImpl::GetGaussians() const {
  return new VXPointerIter<const VXGaussianBase>(
      pointers<VXGaussianBase, const VXGaussianBase>(gaussians_));
}

VXIterBase<VXGaussianBase>* VXGaussianContainerImpl::GetGaussians() {
  return new VXPointerIter<VXGaussianBase>(pointers<VXGaussianBase, VXGaussianBase>(gaussians_));
}

// In order, which the vector by itself does not promise.
void VXGaussianContainerImpl::DeleteGaussians() {
  for (auto& g : gaussians_)
    g.reset();
  gaussians_.clear();
}

void VXGaussianContainerImpl::GetCoords(double* coords) const {
  write_coords(*this, coords);
}

void VXGaussianContainerImpl::GetCoords(float* coords) const {
  write_coords(*this, coords);
}

void VXGaussianContainerImpl::GetPrefactors(double* prefactors) const {
  write_each(*this, prefactors, [](const VXGaussianBase& g) { return g.GetPrefactor(); });
}

void VXGaussianContainerImpl::GetPrefactors(float* prefactors) const {
  write_each(*this, prefactors, [](const VXGaussianBase& g) { return g.GetPrefactor(); });
}

void VXGaussianContainerImpl::GetWidths(double* widths) const {
  write_each(*this, widths, [](const VXGaussianBase& g) { return g.GetWidth(); });
}

void VXGaussianContainerImpl::GetWidths(float* widths) const {
  write_each(*this, widths, [](const VXGaussianBase& g) { return g.GetWidth(); });
}

void VXGaussianContainerImpl::GetColors(unsigned int* colors) const {
  write_each(*this, colors, [](const VXGaussianBase& g) { return g.GetColor(); });
}

VXGaussianContainer::VXGaussianContainer() : impl_(std::make_unique<VXGaussianContainerImpl>()) {}

VXGaussianContainer::VXGaussianContainer(const VXGaussianContainer& other)
    : VXGaussianContainerBase(other),
      impl_(std::make_unique<VXGaussianContainerImpl>(*other.impl_)) {}

VXGaussianContainer::VXGaussianContainer(VXGaussianContainer&& other) : VXGaussianContainer() {
  *this = std::move(other);
}

VXGaussianContainer::~VXGaussianContainer() = default;

VXGaussianContainer& VXGaussianContainer::operator=(const VXGaussianContainer& other) {
  if (this != &other) *this = VXGaussianContainer(other);
  return *this;
}

VXGaussianContainer& VXGaussianContainer::operator=(VXGaussianContainer&& other) noexcept {
  if (this == &other) return *this;
  VXGaussianContainerBase::operator=(std::move(other));
  *impl_ = std::move(*other.impl_);
  other.impl_->DeleteGaussians();
  return *this;
}

void VXGaussianContainer::Clear() {
  impl_->Clear();
  VXGaussianContainerBase::Clear();
}

TypeId VXGaussianContainer::GetDataType() const {
  return type_ids::gaussian_container;
}

bool VXGaussianContainer::IsDataType(TypeId type) const {
  return type == type_ids::gaussian_container || VXGaussianContainerBase::IsDataType(type);
}

VXBase* VXGaussianContainer::CreateCopy() const {
  return new VXGaussianContainer(*this);
}

unsigned int VXGaussianContainer::NumGaussians() const {
  return impl_->NumGaussians();
}

bool VXGaussianContainer::AddGaussian(const VXGaussianBase& gaussian) {
  return impl_->AddGaussian(gaussian);
}

bool VXGaussianContainer::DeleteGaussian(VXGaussianBase* gaussian) {
  return impl_->DeleteGaussian(gaussian);
}

VXIterBase<const VXGaussianBase>* VXGaussianContainer::GetGaussians() const {
  const VXGaussianContainerImpl& impl = *impl_;
  return impl.GetGaussians();
}

VXIterBase<VXGaussianBase>* VXGaussianContainer::GetGaussians() {
  return impl_->GetGaussians();
}

void VXGaussianContainer::DeleteGaussians() {
  impl_->DeleteGaussians();
}

void VXGaussianContainer::GetCoords(double* coords) const {
  impl_->GetCoords(coords);
}

void VXGaussianContainer::GetCoords(float* coords) const {
  impl_->GetCoords(coords);
}

void VXGaussianContainer::GetPrefactors(double* prefactors) const {
  impl_->GetPrefactors(prefactors);
}

void VXGaussianContainer::GetPrefactors(float* prefactors) const {
  impl_->GetPrefactors(prefactors);
}

void VXGaussianContainer::GetWidths(double* widths) const {
  impl_->GetWidths(widths);
}

void VXGaussianContainer::GetWidths(float* widths) const {
  impl_->GetWidths(widths);
}

void VXGaussianContainer::GetColors(unsigned int* colors) const {
  impl_->GetColors(colors);
}

void VXRotate(VXGaussianContainerBase& c, const float* matrix) {
  for (VXGaussianBase& g : VXIter<VXGaussianBase>(c.GetGaussians())) {
    float from[3] = {};
    float to[3] = {};
    g.GetCenter(from);
    for (std::size_t row = 0; row < 3; ++row)
      to[row] =
          matrix[3 * row] * from[0] + matrix[3 * row + 1] * from[1] + matrix[3 * row + 2] * from[2];
    g.SetCenter(to);
  }
}

void VXTranslate(VXGaussianContainerBase& c, const float* vector) {
  for (VXGaussianBase& g : VXIter<VXGaussianBase>(c.GetGaussians())) {
    float centre[3] = {};
    g.GetCenter(centre);
    for (std::size_t axis = 0; axis < 3; ++axis)
      centre[axis] += vector[axis];
    g.SetCenter(centre);
  }
}

double VXGetKappa(const VXGaussianBase& g) {
  return VXGetKappa(double{g.GetPrefactor()});
}

double VXGetRadius(const VXGaussianBase& g) {
  return VXGetRadius(double{g.GetPrefactor()}, double{g.GetWidth()});
}

bool VXMakeGaussians(VXGaussianContainerBase& c, const VXMolBase& mol, double prefactor) {
  const double kappa = VXGetKappa(prefactor);
  const bool own = detail::has_radii(mol);
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    const float r = own ? atom->GetRadius() : VXGetBondiVdWRadius(atom->GetAtomicNum());
    const double width = r != 0.0f ? VXGetWidth(kappa, double{r}) : 0.0;
    float centre[3] = {};
    mol.GetCoords(atom, centre);
    c.AddGaussian(VXGaussian(static_cast<float>(prefactor), static_cast<float>(width), centre, 0));
  }
  return c.NumGaussians() != 0;
}

bool VXMakeGaussianRepGrid(VXScalarGrid& grid, const VXGaussianContainerBase& c, float spacing) {
  const std::size_t n = c.NumGaussians();
  if (n == 0 || n > static_cast<std::size_t>(std::numeric_limits<int>::max())) return false;
  std::vector<float> coords(3 * n);
  std::vector<float> widths(n);
  std::vector<float> prefactors(n);
  c.GetCoords(coords.data());
  c.GetWidths(widths.data());
  c.GetPrefactors(prefactors.data());
  VXBrioGrid scratch;
  vx_make_gaussian_grid_explicit(coords.data(), widths.data(), prefactors.data(),
                                 static_cast<int>(n), spacing, scratch, 1);
  if (scratch.GetSize() == 0) return false;
  grid = scratch.GetFloats()[0];
  return true;
}

}  // namespace VXCore
