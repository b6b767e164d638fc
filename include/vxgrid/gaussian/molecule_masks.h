/// \file
/// Grid points cleared or damped by the Gaussian density of a molecule or of spheres.
///
/// The mask value m of a point is the sum of the Gaussians there, on the grid's own lattice; what
/// it does to a value is said in vxgrid/gridmath/masks.h.
#ifndef VXGRID_GAUSSIAN_MOLECULE_MASKS_H
#define VXGRID_GAUSSIAN_MOLECULE_MASKS_H

#include "vxgrid/gridmath/masks.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

class VXBrioGrid;
class VXScalarGrid;

/// Masks all float fields by the atoms of a molecule (vx_make_molecular_gaussian_grid) at the
/// threshold `value`: "gaussian" clears where m > value, "gaussian-" where m < value,
/// "gaussian_smooth" multiplies by exp(-m*value), "gaussian_smooth-" by 1 - exp(-m*value). A
/// molecule without atoms has m = 0 everywhere. Gives 1, or 0 with nothing changed for any other
/// type and a grid without values.
VXGRID_API int vx_mask_grid(VXBrioGrid& g, const VXMol::VXMolBase& mol, float value,
                            const char* type);

/// The same with the types by number (mask_gaussian and the others), at the threshold 0.5 or the
/// given one. False for any other type and for a grid without values.
VXGRID_API bool VXMaskGridByMolecule(VXBrioGrid& g, const VXMol::VXMolBase& mol, unsigned int type);
VXGRID_API bool VXMaskGridByMolecule(VXBrioGrid& g, const VXMol::VXMolBase& mol, unsigned int type,
                                     float threshold);

/// The same on a scalar grid, which keeps its type. False also for a molecule without atoms, with
/// the warning "VXMaskGridByMolecule() : empty molecule!", and for one without coordinates, with
/// "VXMaskGridByMolecule() : 3D molecule coordinates required!"; where a threshold is given,
/// "VXMaskGridByMolecule() : 3D coordinates required!".
VXGRID_API bool VXMaskGridByMolecule(VXScalarGrid& g, const VXMol::VXMolBase& mol,
                                     unsigned int type);
VXGRID_API bool VXMaskGridByMolecule(VXScalarGrid& g, const VXMol::VXMolBase& mol,
                                     unsigned int type, float threshold);

/// Masks by Gaussians of prefactor 2.7 at coords[3*count] that end at their radii[count]
/// (vx_make_gaussian_grid_explicit), at the threshold 0.5. False, with nothing changed, for a type
/// that is none and for a grid of fewer than two points.
VXGRID_API bool VXMaskGridByCoordsAndRadii(VXScalarGrid& g, const float* coords, const float* radii,
                                           unsigned int count, unsigned int type);

}  // namespace VXCore

#endif
