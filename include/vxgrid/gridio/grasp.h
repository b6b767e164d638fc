/// \file
/// GRASP (DELPHI) potential maps, and the words of byte-order aware binary files.
///
/// A map is a Fortran sequential file of five records, each between two words of its length: "now
/// starting phimap ", a line of 70 characters, 65^3 floats with x fastest, " end of phimap  ", and
/// scale, xmid, ymid, zmid; the scale is 1/spacing, in points per Angstrom, the mid the centre of
/// the box in Angstrom. All numbers are big-endian but for the length words of the third and the
/// last record, which stand in the order of the host that wrote them.
///
/// The format: A. Nicholls, K. Sharp, B. Honig, "Protein folding and association", Proteins 11
/// (1991) 281, doi:10.1002/prot.340110407.
#ifndef VXGRID_GRIDIO_GRASP_H
#define VXGRID_GRIDIO_GRASP_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXHost {
class vxistream;
class vxostream;
}  // namespace VXHost

namespace VXCore {

/// 32-bit words in files of either byte order. With `reverse` the bytes of a word are turned
/// around. At the end of a stream the missing bytes are zero.
namespace VXGraspIO {

/// Whether this build is for a little-endian host, whose words have to be reversed for a GRASP map.
VXGRID_API bool DetermineGraspByteOrder();

VXGRID_API int ReadGraspInt(VXHost::vxistream& in, bool reverse);
VXGRID_API float ReadGraspFloat(VXHost::vxistream& in, bool reverse);
/// Eight bytes, of which a reversal turns the first four around and leaves the last four: right
/// only for zero in a reversed file. Kept for callers that rely on it.
VXGRID_API double ReadGraspDouble(VXHost::vxistream& in, bool reverse);

VXGRID_API void WriteGraspInt(int value, VXHost::vxostream& out, bool reverse);
VXGRID_API void WriteGraspFloat(float value, VXHost::vxostream& out, bool reverse);

/// Reads a record of text, up to the first zero byte in it. The length is the first byte of the
/// length word that is not zero, so that both byte orders work up to 127. A larger one brings the
/// Warning "Invalid line length in Grasp grid file" and an empty text, and the record stays unread.
VXGRID_API std::string ReadGraspLine(VXHost::vxistream& in);

/// Writes `length` characters as a record, its length words reversed if asked.
VXGRID_API void WriteGraspLine(VXHost::vxostream& out, const char* text, int length, bool reverse);

/// Reads a length word and drops it.
VXGRID_API void EndGraspBlock(VXHost::vxistream& in);
/// Writes a length word in the host's order.
VXGRID_API void WEndGraspBlock(int length, VXHost::vxostream& out);

}  // namespace VXGraspIO

/// Writes a GRASP map. `values` holds 65^3 = 274625 floats, x fastest; `scale` is in points per
/// Angstrom, `mid[3]` in Angstrom. Always 1: the stream tells whether its bytes arrived.
VXGRID_API int VXWriteDelphiMap(VXHost::vxostream& out, const float* values, float scale,
                                const float* mid);

}  // namespace VXCore

#endif
