// The lattice around a model for a grid that is going to be a file.
#ifndef VXGRID_APPS_MODEL_LATTICE_H
#define VXGRID_APPS_MODEL_LATTICE_H

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

/// Gives a grid the lattice around a model, 4 Angstrom beyond its atoms, with an odd number of
/// points and the middle one at a multiple of the spacing: what a CCP4 file can hold without
/// interpolation. False when that makes no grid.
bool lay_lattice(const VXCore::VXMolBase& model, float spacing, VXCore::VXBrioGrid& grid);
bool lay_lattice(const VXCore::VXMolBase& model, float spacing, VXCore::VXScalarGrid& grid);

}  // namespace vxgrid_app

#endif
