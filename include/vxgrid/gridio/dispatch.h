/// \file
/// Reading and writing grids in any format, by constant or by the extension of a file name.
///
/// Nothing looks at a file's content to tell its format. A skew grid passes through the Brio grid
/// behind it; a scalar grid is a skew grid made regular, so that a crystal map is resampled along
/// Cartesian axes at its own spacing. What a failed read leaves in the grid is what the format got
/// to. Distinct grids may be read and written by different threads at a time.
#ifndef VXGRID_GRIDIO_DISPATCH_H
#define VXGRID_GRIDIO_DISPATCH_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXHost {
class vxistream;
class vxostream;
}  // namespace VXHost

namespace VXCore {

class VXBrioGrid;
class VXScalarGrid;
class VXSkewGrid;

/// Reads a grid from a stream in the format of a VXGridFileType. False with the Warning "Problem
/// reading CCP4 grid file" (or "Grasp", "GRD", "XPLOR", "Ascii") besides the format's own words,
/// and with the Error "File does not contain a readable grid file" for a type that cannot be read.
VXGRID_API bool VXReadGrid(VXHost::vxistream& in, VXBrioGrid& grid, unsigned int type);

/// The same; with `regularize` the grid becomes a regular one, without orientation, at its own
/// spacing.
VXGRID_API bool VXReadGrid(VXHost::vxistream& in, VXBrioGrid& grid, unsigned int type,
                           bool regularize);

/// The same into a regular grid. Where there is no memory for it: false, with the Warning "Unable
/// to allocate enough memory to read VXScalarGrid.".
VXGRID_API bool VXReadGrid(VXHost::vxistream& in, VXScalarGrid& grid, unsigned int type);

/// The same into a skew grid; without memory "Unable to allocate enough memory to read
/// VXSkewGrid.".
VXGRID_API bool VXReadGrid(VXHost::vxistream& in, VXSkewGrid& grid, unsigned int type);

/// \name Reading a file in the format of its extension, gzip-compressed or not
/// False with the Warnings "File %s does not contain a readable grid file." for an extension that
/// cannot be read, "Unable to open grid file: %s.", and those of the forms above. For scalar and
/// skew grids, without memory: "Unable to allocate enough memory to read VXSkewGrid from %s." (or
/// VXScalarGrid). Tags that the format reads, such as "AMEAN", stand on the grid afterwards.
/// @{
VXGRID_API bool VXReadGrid(const std::string& name, VXBrioGrid& grid);
VXGRID_API bool VXReadGrid(const std::string& name, VXBrioGrid& grid, bool regularize);
VXGRID_API bool VXReadGrid(const std::string& name, VXScalarGrid& grid);
VXGRID_API bool VXReadGrid(const std::string& name, VXSkewGrid& grid);
/// @}

/// \name Writing to a stream in the format of a VXGridFileType
/// GRASP maps have 65 points an axis: the grid is interpolated onto them, at a larger spacing if it
/// has more. False with the Error "Error: %s is not a writeable grid file format" for a type that
/// cannot be written.
/// @{
VXGRID_API bool VXWriteGrid(VXHost::vxostream& out, const VXBrioGrid& grid, unsigned int type);
VXGRID_API bool VXWriteGrid(VXHost::vxostream& out, const VXScalarGrid& grid, unsigned int type);
VXGRID_API bool VXWriteGrid(VXHost::vxostream& out, const VXSkewGrid& grid, unsigned int type);
/// @}

/// \name Writing a file in the format of its extension, compressed when the name ends in ".gz"
/// False with the Warning "Unable to open file for grid writing: %s". The file is made before the
/// format is judged: an extension that cannot be written leaves an empty file behind.
/// @{
VXGRID_API bool VXWriteGrid(const std::string& name, const VXBrioGrid& grid);
VXGRID_API bool VXWriteGrid(const std::string& name, const VXScalarGrid& grid);
VXGRID_API bool VXWriteGrid(const std::string& name, const VXSkewGrid& grid);
/// @}

/// The stream form of VXReadGrid on a file, in the format of its extension; a file that cannot be
/// opened is read as an empty one. 1 for success, 0 otherwise.
VXGRID_API int vx_read_grid_object(const char* name, VXBrioGrid& grid);

/// The file form of VXWriteGrid; 1 for success, 0 otherwise.
VXGRID_API int vx_write_grid_object(const char* name, const VXBrioGrid& grid);

}  // namespace VXCore

#endif
