/// \file
/// Rigid motions of grids; their values stay untouched.
#ifndef VXGRID_GRIDMATH_MOTIONS_H
#define VXGRID_GRIDMATH_MOTIONS_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;
class VXSkewGrid;

/// Turns a grid about the origin of space by a 3x3 matrix M, nine numbers row by row. The mid
/// becomes M*mid and the orientation M*O, with O the present one or the identity. The space group
/// is cleared, since a moved grid no longer bears a crystal frame. The double form rounds M to
/// float first. A null matrix does nothing.
VXGRID_API void VXRotate(VXBrioGrid& g, const float* matrix);
VXGRID_API void VXRotate(VXBrioGrid& g, const double* matrix);

/// Moves a grid by a vector in Angstrom and clears the space group. The orientation stays.
VXGRID_API void VXTranslate(VXBrioGrid& g, const float* vector);
VXGRID_API void VXTranslate(VXBrioGrid& g, const double* vector);

/// The same for the Brio grid inside a skew grid.
VXGRID_API void VXRotate(VXSkewGrid& g, const float* matrix);
VXGRID_API void VXRotate(VXSkewGrid& g, const double* matrix);
VXGRID_API void VXTranslate(VXSkewGrid& g, const float* vector);
VXGRID_API void VXTranslate(VXSkewGrid& g, const double* vector);

}  // namespace VXCore

#endif
