/// \file
/// The words of which VXB, the binary form of objects, is made: tags, lengths and marks of byte
/// order. docs/vxb_format.md shows them byte by byte.
#ifndef VXGRID_TOOLKIT_VXB_PRIMITIVES_H
#define VXGRID_TOOLKIT_VXB_PRIMITIVES_H

#include <cstddef>  // for size_t
#include <cstdint>  // for uint64_t
#include <string>   // for string

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

/// The version of the form, which the records of the toolkit's own classes start with.
inline constexpr unsigned char VXBVersion = 1;

/// What the reading of a record comes to.
namespace VXBStatus {
inline constexpr unsigned int Success = 0;
inline constexpr unsigned int BadFormat = 2;    ///< A Gaussian's number has no valid head.
inline constexpr unsigned int NoMemory = 2;     ///< No memory for the record.
inline constexpr unsigned int FieldEnded = 3;   ///< A field of a "VXBrioGridData" ended early.
inline constexpr unsigned int ShortRecord = 4;  ///< Fewer bytes than the record has to have.
inline constexpr unsigned int NoTag = 6;        ///< No valid tag.
inline constexpr unsigned int StreamEnded = 8;  ///< The end where a byte or a length was due.
inline constexpr unsigned int NotKept = 9;      ///< An unknown record could not be kept.
}  // namespace VXBStatus

/// Writes a text as a tag: a byte with its length and its characters; from 255 characters on a byte
/// of 255 and the length as by VXBWriteDataLength. False when not all of it arrives, or for a text
/// of 2^32 characters and more.
VXGRID_API bool VXBWriteTag(VXHost::vxostream& out, const std::string& tag);
/// Reads a tag. False, with `tag` empty, when the stream ends too early. `tag_byte` is the byte
/// with the length, 0 when the stream had no byte left: a tag of no characters is read well, and a
/// record cannot have it.
VXGRID_API bool VXBReadTag(VXHost::vxistream& in, std::string& tag, unsigned char& tag_byte);
VXGRID_API bool VXBReadTag(VXHost::vxistream& in, std::string& tag);

/// Writes the length of a record's payload as four bytes, the lowest first on every machine. False
/// for 2^32 and more, which no record can have, and when not all of it arrives.
VXGRID_API bool VXBWriteDataLength(VXHost::vxostream& out, std::uint64_t length);
/// The length of a payload; 0 also when the stream ends too early. No record has a length of 0.
VXGRID_API unsigned int VXBReadDataLength(VXHost::vxistream& in);

/// \name Marks of byte order
/// The first form gives the mark of this machine: 0 for little-endian, 1 for big-endian. The second
/// tells whether the order of the machine that wrote a mark (0 to 255) is another one.
/// @{
VXGRID_API char VXBIntEndian();
VXGRID_API bool VXBIntEndian(int mark);
VXGRID_API char VXBFloatEndian();
VXGRID_API bool VXBFloatEndian(int mark);
VXGRID_API char VXBShortEndian();
VXGRID_API bool VXBShortEndian(int mark);
/// @}

/// Reverses the bytes of each of `count` values of four bytes.
VXGRID_API void ArraySwapBytes(float* values, std::size_t count);
VXGRID_API void ArraySwapBytes(int* values, std::size_t count);
VXGRID_API void ArraySwapBytes(unsigned int* values, std::size_t count);

}  // namespace VXCore

#endif
