/// \file
/// The Ascii grid: a title, mid, dimensions and spacing, then one value a line.
///
///     Title: <text>
///     Mid: <x> <y> <z>           Angstrom, six decimals
///     Dim: <x> <y> <z>           points
///     Spacing: <s>               Angstrom, six decimals
///     Values:
///     <value>                    x fastest: element = x + xdim*(y + ydim*z); seven digits
#ifndef VXGRID_GRIDIO_ASCII_H
#define VXGRID_GRIDIO_ASCII_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/host_grids.h"

namespace VXHost {
class vxistream;
class vxostream;
}  // namespace VXHost

namespace VXCore {

/// Reads an Ascii grid. False with a Warning "Problem reading Title: line in Ascii grid" (or Mid:,
/// Dim:, Spacing:, Values:) for a line that is not as above, and with "Reached early end-of-file."
/// and "Expected grid size: %d, found: %d" for too few values; the grid keeps what was set before.
/// Runs of white space in the title become one blank, and an empty title is not set. A number that
/// cannot be read is 0; among the values it brings the Warning "Could not read floating point value
/// from the text '%s'" and no failure. Lines behind the last value are not read.
VXGRID_API bool VXReadAsciiGrid(VXHost::vxistream& in, VXGrid<float>& grid);

/// Writes an Ascii grid. Always true: the stream tells whether its bytes arrived.
VXGRID_API bool VXWriteAsciiGrid(VXHost::vxostream& out, const VXFixedGrid<float>& grid);

}  // namespace VXCore

#endif
