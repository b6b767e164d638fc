/// \file
/// Reading the bytes of MTZ reflection files.
#ifndef VXGRID_REFLECTION_MTZ_FILE_H
#define VXGRID_REFLECTION_MTZ_FILE_H

#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXReflection;

/// What a column of an MTZ file may stand for, by its default label; an index into
/// VXMTZColumnNames.
namespace VXMTZColumnIndex {
inline constexpr unsigned int H = 0;            ///< h
inline constexpr unsigned int K = 1;            ///< k
inline constexpr unsigned int L = 2;            ///< l
inline constexpr unsigned int FP = 3;           ///< fobs
inline constexpr unsigned int FC = 4;           ///< fcalc
inline constexpr unsigned int PHI = 5;          ///< phase
inline constexpr unsigned int PHIC = 6;         ///< phase_calc
inline constexpr unsigned int SIGFP = 7;        ///< sigma
inline constexpr unsigned int FOM = 8;          ///< fom
inline constexpr unsigned int HLA = 9;          ///< hla
inline constexpr unsigned int HLB = 10;         ///< hlb
inline constexpr unsigned int HLC = 11;         ///< hlc
inline constexpr unsigned int HLD = 12;         ///< hld
inline constexpr unsigned int FreeR_flag = 13;  ///< known by name, but kept by no reader
inline constexpr unsigned int FWT = 14;         ///< fwt
inline constexpr unsigned int DELFWT = 15;      ///< fdelwt
inline constexpr unsigned int PHWT = 16;        ///< phiwt
inline constexpr unsigned int PHDELWT = 17;     ///< phidelwt
inline constexpr unsigned int count = 18;
}  // namespace VXMTZColumnIndex

/// The label under which a file holds each quantity; starts with the default labels, which are the
/// names in VXMTZColumnIndex.
class VXGRID_API VXMTZColumnNames {
 public:
  VXMTZColumnNames();

  /// The empty text for an index that is out of range.
  const std::string& GetColumnName(unsigned int index) const;
  const std::vector<std::string>& GetColumnNames() const { return names_; }
  /// False for an index that is out of range.
  bool SetColumnName(unsigned int index, const std::string& label);

 private:
  std::vector<std::string> names_;
  std::string out_of_range_;
};

/// Reads the reflections of an MTZ file: the indices, the columns whose labels `names` holds, cell
/// and space group, and the resolution limits (VXReflection::SetRESO).
///
/// Of columns with equal labels the last one is taken. Intensities (column types J and K) in the
/// place of fcalc become amplitudes by their square root. In the place of fobs they make the reader
/// take the square root of the amplitude column with that label, or of the word before the row (0
/// before the first row) when there is none: results have to stay comparable with those on file.
/// Files of either byte order are read alike. Missing values stay not a number. The coefficients
/// hla to hld are kept only when all four are there, free-R flags never.
///
/// True, the set untouched, for a stream of less than 80 bytes, a file with no reflection data, or
/// one whose header tells no reflections or no columns. False for a file that does not begin with
/// "MTZ "; false, with the reflection data cleared, when H, K or L is missing, when an index does
/// not fit an int, or when the header tells of more data than there is. A file whose header
/// position lies before its data or past its end raises std::bad_alloc, before anything is
/// allocated in the case of streams that know their length.
VXGRID_API bool VXReadReflectionMTZ(vxistream& is, VXReflection& refl,
                                    const VXMTZColumnNames& names);

/// Appends the label and the one-letter type of every column of an MTZ file in file order and
/// leaves the stream at its end. False for what is not an MTZ file and for one without columns.
VXGRID_API bool VXGetMTZFileColumnNamesAndTypes(vxistream& is, std::vector<std::string>& names,
                                                std::vector<char>& types);

}  // namespace VXCore

#endif
