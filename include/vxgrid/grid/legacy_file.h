/// \file
/// The legacy binary grid file and the plain text listing of a grid record.
#ifndef VXGRID_GRID_LEGACY_FILE_H
#define VXGRID_GRID_LEGACY_FILE_H

#include "vxgrid/grid/grid_struct.h"

namespace VXCore {

/// Reads a legacy binary grid file into a record.
///
/// The file is a run of 32-bit words in the machine's byte order: xmid, ymid, zmid, spacing,
/// inverse_spacing, xdim, ydim, zdim, a selector, and then one block of xdim*ydim*zdim words
/// (selector 1: floats, 2: integers) or two (selector 3). Of two blocks the first is taken as the
/// floats, while vi_write_grid puts the integers first: such a file comes back with the two fields
/// swapped, bit for bit.
///
/// Buffers come from malloc and are the caller's to free (vx_deallocate_grid_struct); a buffer
/// that the file does not hold becomes null, and `name` is left alone. What a short file does not
/// fill is zero. The first argument is ignored.
///
/// Gives 1. Gives 0 with the Warning "Cannot open file %s", the record as it was, for a file that
/// cannot be opened, has a negative dimension, or claims more than 64 MiB of values of which less
/// than a sixteenth is there.
VXGRID_API int vi_read_grid(int unused, GridStruct* grid, const char* name);

/// Writes a grid record. The first argument is ignored.
///
/// Mode 1 writes the binary file that vi_read_grid reads, with `what` as its selector, and says
/// "writing BINARY grid file\n" by vx_printf. Mode 2 writes a text listing of the floats with
/// `what` values a line, each as "%12.5e ", the first line of values being blank. Other modes do
/// nothing.
///
/// Gives 1; 0 when the file cannot be opened ("Cannot open file %s\n", by vx_printf in mode 1 and
/// as a Warning in mode 2), 0 when it cannot be written in full, and 0 without a file when a buffer
/// that is to be written is null, a dimension is negative, or mode 2 is given less than one value a
/// line.
VXGRID_API int vi_write_grid(int unused, GridStruct grid, int mode, const char* name, int what);

}  // namespace VXCore

#endif
