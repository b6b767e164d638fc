/// \file
/// The interface of all grids, and the regular geometry that the host grids share.
///
/// Values lie x fastest: element = x + xdim*(y + ydim*z). The mid is the geometric centre of the
/// lattice of points and the spacing the distance between neighbours on all three axes, both in
/// Angstrom: index i of an axis lies at mid + (i - (dim-1)/2)*spacing, in single precision. An
/// even dimension has no point at the mid.
#ifndef VXGRID_TOOLKIT_CORE_GRID_BASE_H
#define VXGRID_TOOLKIT_CORE_GRID_BASE_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <string>   // for string

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// The interface of all grids.
class VXGRID_API VXGridAbstractBase : public VXBase {
 public:
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;

  virtual std::string GetTitle() const = 0;
  virtual bool SetTitle(const std::string& title) = 0;
  virtual float GetSpacing() const = 0;
  virtual bool IsSpacingSet() const = 0;
  virtual unsigned int GetSize() const = 0;
  virtual bool GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const = 0;
  virtual unsigned int GetXDim() const = 0;
  virtual unsigned int GetYDim() const = 0;
  virtual unsigned int GetZDim() const = 0;
  virtual bool GetMid(float& xmid, float& ymid, float& zmid) const = 0;
  virtual float GetXMid() const = 0;
  virtual float GetYMid() const = 0;
  virtual float GetZMid() const = 0;
};

/// Title, spacing, mid and dimensions of a grid, and which of them were ever set.
struct GridGeometry {
  std::string title;
  float spacing = 0.0f;
  std::array<float, 3> mid{};
  std::array<unsigned int, 3> dim{};
  bool title_set = false;
  bool spacing_set = false;
  std::array<bool, 3> mid_set{};
};

/// A grid of regular geometry. What was never set is 0 or empty. The setters take any value, a
/// spacing of 0 or below included, and give true, but for the dimensions.
class VXGRID_API VXGridBase : public VXGridAbstractBase {
 public:
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  /// Back to no geometry, no values and no tagged data.
  void Clear() override;

  std::string GetTitle() const override { return geometry_->title; }
  bool SetTitle(const std::string& title) override;
  float GetSpacing() const override { return geometry_->spacing; }
  bool IsSpacingSet() const override { return geometry_->spacing_set; }
  /// The product of the dimensions.
  unsigned int GetSize() const override;
  bool GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const override;
  unsigned int GetXDim() const override { return geometry_->dim[0]; }
  unsigned int GetYDim() const override { return geometry_->dim[1]; }
  unsigned int GetZDim() const override { return geometry_->dim[2]; }
  bool GetMid(float& xmid, float& ymid, float& zmid) const override;
  float GetXMid() const override { return geometry_->mid[0]; }
  float GetYMid() const override { return geometry_->mid[1]; }
  float GetZMid() const override { return geometry_->mid[2]; }

  virtual bool IsTitleSet() const { return geometry_->title_set; }
  virtual bool IsXMidSet() const { return geometry_->mid_set[0]; }
  virtual bool IsYMidSet() const { return geometry_->mid_set[1]; }
  virtual bool IsZMidSet() const { return geometry_->mid_set[2]; }
  virtual bool SetSpacing(float spacing);
  virtual bool SetMid(float xmid, float ymid, float zmid);
  virtual bool SetXMid(float xmid);
  virtual bool SetYMid(float ymid);
  virtual bool SetZMid(float zmid);
  /// Gives the grid new values, all zero. False, and nothing changed, when the product of the three
  /// exceeds 4294967295, the largest size. Throws std::bad_alloc, and changes nothing, when there
  /// is no memory for the values.
  virtual bool SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim);
  virtual bool SetXDim(unsigned int xdim);
  virtual bool SetYDim(unsigned int ydim);
  virtual bool SetZDim(unsigned int zdim);
  /// Replaces the values by as many zeros as the dimensions ask for.
  virtual bool Realloc() = 0;

  /// The point of an index, in Angstrom. Indices beyond the grid give the point where the lattice
  /// goes on, and false.
  bool GridIdxToSpatialCoord(unsigned int x, unsigned int y, unsigned int z, float& xcoord,
                             float& ycoord, float& zcoord) const;
  /// The point of an element, in Angstrom; false, and nothing written, at `GetSize` and beyond.
  bool ElementToSpatialCoord(unsigned int element, float& xcoord, float& ycoord,
                             float& zcoord) const;
  /// The index of an element; false, and nothing written, at `GetSize` and beyond.
  bool ElementToGridIdx(unsigned int element, unsigned int& x, unsigned int& y,
                        unsigned int& z) const;

 protected:
  VXGridBase() = default;
  /// For a grid that takes part in the geometry of another, which has to outlive it.
  explicit VXGridBase(GridGeometry& shared) noexcept : geometry_(&shared) {}
  VXGridBase(const VXGridBase& other) : VXGridAbstractBase(other), own_(*other.geometry_) {}
  VXGridBase(VXGridBase&& other) noexcept;
  VXGridBase& operator=(const VXGridBase& other);
  VXGridBase& operator=(VXGridBase&& other) noexcept;

  GridGeometry& geometry() noexcept { return *geometry_; }
  const GridGeometry& geometry() const noexcept { return *geometry_; }
  void share_geometry(GridGeometry& shared) noexcept { geometry_ = &shared; }

  std::size_t element_of(unsigned int x, unsigned int y, unsigned int z) const noexcept {
    const auto& dim = geometry_->dim;
    return x + std::size_t{dim[0]} * (y + std::size_t{dim[1]} * z);
  }

 private:
  GridGeometry own_;
  GridGeometry* geometry_ = &own_;
};

/// The box of a grid: the centre is the mid, the extents dim*spacing per axis (dim and not dim-1:
/// half a spacing beyond the outermost points on each side). Three floats each.
VXGRID_API void VXGetCenterAndExtents(const VXGridBase& grid, float* center, float* extents);

}  // namespace VXCore

#endif
