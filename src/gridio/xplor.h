// The reader of XPLOR maps, text or binary, that VXReadGrid uses.
#ifndef VXGRID_SRC_GRIDIO_XPLOR_H
#define VXGRID_SRC_GRIDIO_XPLOR_H

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

/// Fills a grid from a map of either form, told apart by the first words. The grid is left alone
/// until all values have been read; its title becomes "xplor".
///
/// The text form: any number of lines up to one with the number of title lines, the title lines, a
/// line with NA, AMIN, AMAX, NB, BMIN, BMAX, NC, CMIN, CMAX (intervals of the cell along an edge,
/// first and last index of the map), a line with the cell in six columns of 12, a line with the
/// order of the axes, slowest first; then for each value of the slowest axis a line with its number
/// and the values in columns of 12. The binary form: the same in Fortran records in the host's byte
/// order, reals in 64 bits.
///
/// False with the Warnings "Failed to retrieve number of title lines", "Could not find the ordering
/// specification", "Unable to convert string to number while reading XPLOR file: %s", those of
/// vi_grid_range_from_axes and "Grid dimensions too large for memory size: %lu x %lu"; quietly for
/// a cell line with less than six columns or one that is no number, for a map of no points, and for
/// a binary file that is far too short. A binary file that is somewhat short is filled with zeros.
bool read_xplor_grid(VXHost::vxistream& in, VXBrioGrid& grid);

}  // namespace VXCore::detail

#endif
