/// \file
/// The resolution of a model or map, and the radius around atoms that goes with it.
#ifndef VXGRID_DENSITY_RESOLUTION_H
#define VXGRID_DENSITY_RESOLUTION_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXSkewGrid;

/// The radius around atoms, in Angstrom, over which a map of this resolution (Angstrom) is compared
/// with a model: 0.7 below 0.6, (d - 0.6)/3 + 0.7/3 from 0.6 to 3.0 inclusive, d/2 above. The
/// middle part meets neither of its neighbours.
VXGRID_API double VXGetEDSRadius(double resolution);

/// The resolution in Angstrom that the model's file tells: of an mmCIF file by VXGetResolutionCIF,
/// of a PDB file the first "REMARK" whose second word is "RESOLUTION." and whose third is a number.
/// False when there is none.
VXGRID_API bool VXGetResolution(double& resolution, const VXMolBase& mol);

/// The double under the tag "resolution", which map making leaves on a grid; 0 when it is of
/// another type. False when there is none.
VXGRID_API bool VXGetResolution(double& resolution, const VXSkewGrid& grid);

}  // namespace VXCore

#endif
