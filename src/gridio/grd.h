// The GRD format: all that a Brio grid holds, word by word.
//
// There is no header. Most items are led by a state word, 0 when the item is absent; a state of 2
// at xmid says that all numbers of the file, but not the state words, are in the other byte order.
//
//   title         state, 80 bytes: 78 characters padded with blanks, two zeros
//   mid           state, xmid; state, ymid; state, zmid      float32, Angstrom
//   spacing       state, spacing                             float32, Angstrom
//   dimensions    state, xdim; state, ydim; state, zdim      int32, negative on a reentrant axis
//   floats        state, field 0                             float32, x fastest
//   integers      state, field 0                             int32, x fastest
//   orientation   state, nine elements                       float32, row by row
//   field counts  state, floats; state, integers             int32; these states mean nothing
//   more fields   floats 1 and on, integers 1 and on         no state words
//   crystal       a, b, c, alpha, beta, gamma; nx, ny, nz    float32, int32; no state words
//   space group   int32
//   type          int32
//
// The last three are missing in older files.
#ifndef VXGRID_SRC_GRIDIO_GRD_H
#define VXGRID_SRC_GRIDIO_GRD_H

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

/// Writes a grid, its title cut to 78 characters. Always true. A slip of the format is kept: zdim
/// is negative when x or y is reentrant, whatever z is.
bool write_grd(VXHost::vxostream& out, const VXBrioGrid& grid);

/// Reads a grid, which is cleared first and keeps what was read before a failure. False with the
/// Warning "Corrupt state read from GRD file: %i" for a state word above 2, with "Attempting to
/// read a grid with bad dimensions: %i x %i x %i" for dimensions below 1 or too large, and quietly
/// for a short file, for a field count of 0, and for counts out of all proportion to the file.
bool read_grd(VXHost::vxistream& in, VXBrioGrid& grid);

}  // namespace VXCore::detail

#endif
