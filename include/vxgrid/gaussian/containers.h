/// \file
/// Gaussians as objects that carry tagged data, and collections of them.
#ifndef VXGRID_GAUSSIAN_CONTAINERS_H
#define VXGRID_GAUSSIAN_CONTAINERS_H

#include <memory>  // for unique_ptr
#include <vector>  // for vector

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/iterators.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

class VXScalarGrid;

/// One Gaussian: prefactor, width (per Angstrom squared), centre (Angstrom) and a colour, an
/// RGB-like number that nothing here interprets. Hosts may have implementations of their own.
class VXGRID_API VXGaussianBase : public VXBase {
 public:
  ~VXGaussianBase() override;
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override = 0;

  virtual void SetPrefactor(float prefactor) = 0;
  virtual float GetPrefactor() const = 0;
  virtual void SetWidth(float width) = 0;
  virtual float GetWidth() const = 0;
  /// Takes three floats; null changes nothing.
  virtual void SetCenter(float* center) = 0;
  virtual void SetX(float x) = 0;
  virtual void SetY(float y) = 0;
  virtual void SetZ(float z) = 0;
  /// Writes three floats.
  virtual void GetCenter(float* center) const = 0;
  virtual float GetX() const = 0;
  virtual float GetY() const = 0;
  virtual float GetZ() const = 0;
  virtual void SetColor(unsigned int color) = 0;
  virtual unsigned int GetColor() const = 0;

 protected:
  VXGaussianBase();
  VXGaussianBase(const VXGaussianBase& other);
  VXGaussianBase(VXGaussianBase&& other) noexcept;
  VXGaussianBase& operator=(const VXGaussianBase& other);
  VXGaussianBase& operator=(VXGaussianBase&& other) noexcept;
};

/// The Gaussian to make.
class VXGRID_API VXGaussian : public VXGaussianBase {
 public:
  /// All fields 0.
  VXGaussian();
  VXGaussian(float prefactor, float width, float x, float y, float z, unsigned int color);
  /// A null centre is the origin.
  VXGaussian(float prefactor, float width, float* center, unsigned int color);
  /// Copies and assignment take the tagged data too.
  VXGaussian(const VXGaussian& other);
  VXGaussian(const VXGaussianBase& other);
  VXGaussian(VXGaussian&& other) noexcept;
  ~VXGaussian() override;
  VXGaussian& operator=(const VXGaussian& other);
  VXGaussian& operator=(const VXGaussianBase& other);
  VXGaussian& operator=(VXGaussian&& other) noexcept;

  /// All fields to 0, and the tagged data gone.
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;

  void SetPrefactor(float prefactor) override { prefactor_ = prefactor; }
  float GetPrefactor() const override { return prefactor_; }
  void SetWidth(float width) override { width_ = width; }
  float GetWidth() const override { return width_; }
  void SetCenter(float* center) override;
  void SetX(float x) override { x_ = x; }
  void SetY(float y) override { y_ = y; }
  void SetZ(float z) override { z_ = z; }
  void GetCenter(float* center) const override;
  float GetX() const override { return x_; }
  float GetY() const override { return y_; }
  float GetZ() const override { return z_; }
  void SetColor(unsigned int color) override { color_ = color; }
  unsigned int GetColor() const override { return color_; }

 private:
  void take_fields(const VXGaussianBase& other);

  float x_ = 0;
  float y_ = 0;
  float z_ = 0;
  float prefactor_ = 0;
  float width_ = 0;
  unsigned int color_ = 0;
};

/// A collection of Gaussians in order. Hosts may have implementations of their own.
class VXGRID_API VXGaussianContainerBase : public VXBase {
 public:
  ~VXGaussianContainerBase() override;
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override = 0;

  virtual unsigned int NumGaussians() const = 0;
  /// Puts a copy at the end, tagged data included. Always true.
  virtual bool AddGaussian(const VXGaussianBase& gaussian) = 0;
  /// Deletes this very object, and closes the gap. False if it is not in this container.
  virtual bool DeleteGaussian(VXGaussianBase* gaussian) = 0;
  /// A walk in order, owned by the caller, who best keeps it in a VXIter. It goes over those that
  /// stand here now; deleting one of them ends its life.
  virtual VXIterBase<const VXGaussianBase>* GetGaussians() const = 0;
  virtual VXIterBase<VXGaussianBase>* GetGaussians() = 0;
  virtual void DeleteGaussians() = 0;
  /// Writes 3*NumGaussians() numbers, in order.
  virtual void GetCoords(double* coords) const = 0;
  virtual void GetCoords(float* coords) const = 0;
  /// The others write NumGaussians() numbers.
  virtual void GetPrefactors(double* prefactors) const = 0;
  virtual void GetPrefactors(float* prefactors) const = 0;
  virtual void GetWidths(double* widths) const = 0;
  virtual void GetWidths(float* widths) const = 0;
  virtual void GetColors(unsigned int* colors) const = 0;

 protected:
  VXGaussianContainerBase();
  VXGaussianContainerBase(const VXGaussianContainerBase& other);
  VXGaussianContainerBase(VXGaussianContainerBase&& other) noexcept;
  VXGaussianContainerBase& operator=(const VXGaussianContainerBase& other);
  VXGaussianContainerBase& operator=(VXGaussianContainerBase&& other) noexcept;
};

/// What stands behind a VXGaussianContainer: an array of owned Gaussians.
class VXGRID_API VXGaussianContainerImpl : public VXGaussianContainerBase {
 public:
  VXGaussianContainerImpl();
  VXGaussianContainerImpl(const VXGaussianContainerImpl& other);
  VXGaussianContainerImpl(VXGaussianContainerImpl&& other) noexcept;
  ~VXGaussianContainerImpl() override;
  VXGaussianContainerImpl& operator=(const VXGaussianContainerImpl& other);
  VXGaussianContainerImpl& operator=(VXGaussianContainerImpl&& other) noexcept;

  /// All Gaussians and the tagged data go.
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;

  unsigned int NumGaussians() const override;
  bool AddGaussian(const VXGaussianBase& gaussian) override;
  bool DeleteGaussian(VXGaussianBase* gaussian) override;
  VXIterBase<const VXGaussianBase>* GetGaussians() const override;
  VXIterBase<VXGaussianBase>* GetGaussians() override;
  void DeleteGaussians() override;
  void GetCoords(double* coords) const override;
  void GetCoords(float* coords) const override;
  void GetPrefactors(double* prefactors) const override;
  void GetPrefactors(float* prefactors) const override;
  void GetWidths(double* widths) const override;
  void GetWidths(float* widths) const override;
  void GetColors(unsigned int* colors) const override;

 private:
  std::vector<std::unique_ptr<VXGaussianBase>> gaussians_;
};

/// The container to make: hands every call to the implementation that it owns.
class VXGRID_API VXGaussianContainer : public VXGaussianContainerBase {
 public:
  VXGaussianContainer();
  /// Copies have Gaussians of their own.
  VXGaussianContainer(const VXGaussianContainer& other);
  /// Leaves an empty container behind.
  VXGaussianContainer(VXGaussianContainer&& other);
  ~VXGaussianContainer() override;
  VXGaussianContainer& operator=(const VXGaussianContainer& other);
  VXGaussianContainer& operator=(VXGaussianContainer&& other) noexcept;

  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;

  unsigned int NumGaussians() const override;
  bool AddGaussian(const VXGaussianBase& gaussian) override;
  bool DeleteGaussian(VXGaussianBase* gaussian) override;
  VXIterBase<const VXGaussianBase>* GetGaussians() const override;
  VXIterBase<VXGaussianBase>* GetGaussians() override;
  void DeleteGaussians() override;
  void GetCoords(double* coords) const override;
  void GetCoords(float* coords) const override;
  void GetPrefactors(double* prefactors) const override;
  void GetPrefactors(float* prefactors) const override;
  void GetWidths(double* widths) const override;
  void GetWidths(float* widths) const override;
  void GetColors(unsigned int* colors) const override;

 private:
  std::unique_ptr<VXGaussianContainerImpl> impl_;
};

/// Moves the centres: p' = M p, with the nine floats of M row by row.
VXGRID_API void VXRotate(VXGaussianContainerBase& c, const float* matrix);
/// Moves the centres by a vector in Angstrom.
VXGRID_API void VXTranslate(VXGaussianContainerBase& c, const float* vector);

/// kappa of the Gaussian's prefactor.
VXGRID_API double VXGetKappa(const VXGaussianBase& g);
/// The radius in Angstrom of the sphere that the Gaussian stands in for.
VXGRID_API double VXGetRadius(const VXGaussianBase& g);

/// Adds a Gaussian of this prefactor and colour 0 for each atom, with the width of its radius; a
/// radius of 0 gives a width of 0. Where no atom has a radius above 0, Bondi's stand in. True when
/// the container is then not empty.
VXGRID_API bool VXMakeGaussians(VXGaussianContainerBase& c, const VXMol::VXMolBase& mol,
                                double prefactor);

/// Makes the grid the sum of the Gaussians, sized and evaluated as by
/// vx_make_gaussian_grid_explicit at `spacing` (Angstrom). False, with the grid as it was, for an
/// empty container and a spacing that makes no grid.
VXGRID_API bool VXMakeGaussianRepGrid(VXScalarGrid& grid, const VXGaussianContainerBase& c,
                                      float spacing);

}  // namespace VXCore

#endif
