// The reader of CCP4 maps that VXReadGrid uses: straight into a grid, with every claim checked.
#ifndef VXGRID_SRC_GRIDIO_CCP4_READER_H
#define VXGRID_SRC_GRIDIO_CCP4_READER_H

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

/// Fills a grid from a map file of either byte order; the grid is left alone until all values have
/// been read. The tags "AMEAN", "AMIN", "AMAX" and "ARMS" take the header's statistics. Values that
/// a short file lacks are 0, so long as it claims no more than 64 MiB or 16 times what arrived.
///
/// False with the Warning "Invalid CCP4 grid dimensions: %i %i %i" for a dimension below 1, with
/// "Grid dimensions too large for memory size: %lu x %lu" for more than 2^31 - 1 values, and
/// without a message for a MODE other than 0 and 2, for axes that are not x, y and z in some order,
/// and for a file too short for its claim.
bool read_ccp4_grid(VXHost::vxistream& in, VXBrioGrid& grid);

/// Clears a grid and makes it a crystal grid of the values that belong to a header, x fastest.
/// False when the axes are not x, y and z in some order or there are too few values.
bool load_ccp4_values(VXBrioGrid& grid, const VXCCP4Header& header, ValueBuffer<float>&& values);

}  // namespace VXCore::detail

#endif
