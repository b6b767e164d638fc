/// \file
/// All host grid classes.
#ifndef VXGRID_TOOLKIT_CORE_HOST_GRIDS_H
#define VXGRID_TOOLKIT_CORE_HOST_GRIDS_H

#include "vxgrid/toolkit/core/fixed_grid.h"
#include "vxgrid/toolkit/core/grid_base.h"
#include "vxgrid/toolkit/core/multi_grid.h"

#endif
