/// \file
/// The regular float grid with a word for the kind of its values.
#ifndef VXGRID_GRID_SCALAR_GRID_H
#define VXGRID_GRID_SCALAR_GRID_H

#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/base_data.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/host_grids.h"

namespace VXCore {

/// What the values of a grid are. Grids carry it as a plain number, and take any other as well.
enum VXGridType : unsigned int {
  Generic = 0,
  Electrostatic = 1,
  Dorn = 2,
  RegularMap = 3,
  DifferenceMap = 4,
  Ux = 5
};

/// A regular grid of floats: the host grid and a VXGridType.
class VXGRID_API VXScalarGrid : public VXGrid<float> {
 public:
  /// No geometry, no values, type Generic.
  VXScalarGrid();
  VXScalarGrid(const VXScalarGrid& other);
  VXScalarGrid(VXScalarGrid&& other) noexcept;
  /// Geometry, values, title and tags of any host grid; type Generic.
  VXScalarGrid(const VXFixedGrid<float>& grid);
  /// Dimensions in points, centre and spacing in Angstrom; null values give a grid of zeros.
  VXScalarGrid(int xdim, int ydim, int zdim, float xmid, float ymid, float zmid, float spacing,
               std::string title, const float* values = nullptr);
  /// Covers the box given as xmin, ymin, zmin, xmax, ymax, zmax in Angstrom.
  VXScalarGrid(const float* minmax, float spacing, const char* title);
  VXScalarGrid(const double* minmax, double spacing, const char* title);
  ~VXScalarGrid() override;

  VXScalarGrid& operator=(const VXScalarGrid& other);
  VXScalarGrid& operator=(VXScalarGrid&& other) noexcept;
  /// As the constructor; the type becomes Generic.
  VXScalarGrid& operator=(const VXFixedGrid<float>& grid);

  /// Back to a default-made grid: geometry, values, title, tags and type all go.
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;

  /// A VXGridType, or whatever number was set.
  unsigned int GetType() const { return type_; }
  /// Takes any number; always true.
  bool SetType(unsigned int type);

 private:
  unsigned int type_ = VXGridType::Generic;
};

template <>
struct DataTypeId<VXScalarGrid> : FixedDataTypeId<data_ids::scalar_grid> {};
template <>
struct DataTypeId<std::vector<VXScalarGrid>> : FixedDataTypeId<data_ids::vector_scalar_grid> {};
extern template class VXBaseDataT<VXScalarGrid>;
extern template class VXBaseDataT<std::vector<VXScalarGrid>>;

}  // namespace VXCore

#endif
