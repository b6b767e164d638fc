/// \file
/// CCP4 (MRC) map files as they are: the header word by word, labels, symmetry records and values;
/// and the way between them and grids.
///
/// The format: R. Cheng et al., "MRC2014: Extensions to the MRC format header for electron
/// cryo-microscopy and tomography", J. Struct. Biol. 192 (2015) 146, doi:10.1016/j.jsb.2015.04.002,
/// and the page "maplib" of the CCP4 suite, whose names the fields bear.
#ifndef VXGRID_GRIDIO_CCP4_MAP_H
#define VXGRID_GRIDIO_CCP4_MAP_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <string>   // for string
#include <vector>   // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace VXHost {
class vxistream;
class vxostream;
}  // namespace VXHost

namespace VXCore {

class VXBrioGrid;
class VXScalarGrid;

/// The 1024 bytes at the start of a map file, 256 words of 32 bits, in the order of the file.
struct VXCCP4Header {
  int NC = 0;       ///< Columns: points along the fastest axis of the file.
  int NR = 0;       ///< Rows: points along the medium axis.
  int NS = 0;       ///< Sections: points along the slowest axis.
  int MODE = 0;     ///< Kind of value: 2 for 32-bit reals, 0 for bytes.
  int NCSTART = 0;  ///< Index of the first column on the grid of the cell.
  int NRSTART = 0;  ///< Index of the first row.
  int NSSTART = 0;  ///< Index of the first section.
  int NX = 0;       ///< Intervals along the whole cell edge a.
  int NY = 0;       ///< Intervals along b.
  int NZ = 0;       ///< Intervals along c.
  float A = 0;      ///< Cell edges, Angstrom.
  float B = 0;
  float C = 0;
  float Alpha = 0;  ///< Cell angles, degrees.
  float Beta = 0;
  float Gamma = 0;
  int MAPC = 0;     ///< The axis that runs along columns: 1 for x, 2 for y, 3 for z.
  int MAPR = 0;     ///< The axis along rows.
  int MAPS = 0;     ///< The axis along sections.
  float AMIN = 0;   ///< Smallest value.
  float AMAX = 0;   ///< Largest value.
  float AMEAN = 0;  ///< Mean value.
  int ISPG = 0;     ///< Space-group number.
  int NSYMBT = 0;   ///< Bytes of symmetry records between header and values.
  int LSKFLG = 0;   ///< 1 when a skew transformation follows. It is carried and never applied.
  std::array<float, 9> SKWMAT{};             ///< Skew matrix.
  std::array<float, 3> SKWTRN{};             ///< Skew translation.
  std::array<unsigned char, 15> reserved{};  ///< Low bytes of words 38 to 52; the rest is dropped.
  std::array<char, 4> MAP{};                 ///< "MAP " in a proper file.
  int MACHST = 0;                            ///< Machine stamp; 0x4144 stands for little-endian.
  float ARMS = 0;  ///< Root mean square deviation of the values from their mean.
  int NLABL = 0;   ///< How many labels are in use.
  std::array<std::array<char, 80>, 10> labels;  ///< Texts padded with blanks, no zero behind them.

  VXCCP4Header() {
    for (auto& label : labels)
      label.fill(' ');
  }
};

/// A whole map file in memory. Copies are deep.
class VXGRID_API VXCCP4Map : public VXCCP4Header {
 public:
  /// Records of symmetry operators in text, 80 characters each: the NSYMBT / 80 of the file.
  std::vector<std::array<char, 80>> symmetry;
  /// The values, x fastest whatever order the file has: element = x + nx * (y + ny * z), where nx,
  /// ny, nz are those of NC, NR, NS that run along x, y, z.
  ValueBuffer<float> values;

  /// Fills the map from a stream, of either byte order. What is missing at the end of a short file
  /// is 0, so long as the header claims no more than 64 MiB of values or 16 times what arrived.
  ///
  /// False, with an Error, for a MODE other than 0 and 2 ("VXCCP4Map::Can only read CCP4 Maps of
  /// type 2 (Real Numbers)"), for axes outside 1 to 3 ("VXCCP4Map::Map axes must correspond to 1(x)
  /// 2(y) or 3(z)") and for MAPC equal to MAPR ("VXCCP4Map::indices not independent!"); false
  /// without a message when a count is negative, there are more than 2^31 - 1 values, or the file
  /// is far shorter than its header claims. The header is then as it was read, and there are no
  /// values.
  ///
  /// Bytes behind the values bring the Warning "Read %d bytes more, initial bytes %d, total data
  /// bytes = %d (should be %d)" and do no harm. Bytes of MODE 0 become
  /// (AMAX - AMIN) * 0.00392 * (byte + 128) + AMIN, which tops out above AMAX.
  bool Read(VXHost::vxistream& in);

  /// Writes the map, little-endian, in the axis order of MAPC, MAPR, MAPS.
  ///
  /// False without a message, and nothing written, when there are no values. False with an Error
  /// for a MODE other than 2 ("VXCCP4Map::Can only write CCP4 Maps of type 2 (Real Numbers)"), of
  /// which the first 16 bytes are written by then, and for MAPC equal to MAPR or outside 1 to 3
  /// ("VXCCP4Map::indices not independent!"). False when there are fewer values than NC * NR * NS,
  /// or the stream does not take all bytes.
  ///
  /// The last character of each symmetry record is set to 0 in memory once it has been written.
  bool Write(VXHost::vxostream& out);

  /// Drops values, symmetry records, labels and skew, and sets NSYMBT, NLABL and LSKFLG to 0. All
  /// other header words stay.
  void Clear();

  /// Reports a digest of the header through VXThrow.Info; with `all` every word besides.
  void Dump(bool all) const;

  /// How many values there are.
  std::size_t GetGridSize() const { return values.size(); }
  /// Changes the number of values; new ones are 0.
  void SetGridSize(std::size_t size) { values.resize(size); }
};

/// Makes a map of a regular grid by inventing a cell around it, twice as large as the map: an even
/// dimension grows by one, the centre moves to the nearest multiple of the spacing, and the values
/// are interpolated onto the new points. The space group is 146 by convention.
///
/// A grid tagged "vx_no_norm" and "SIGMA" gets its values times sigma, so that the map is as it was
/// before VXSigmaNormalizeGrid; sigma 0 fails with the Warning "VXWriteCCP4: cached SIGMA value is
/// 0.0, grid values will be zero, failing...". The statistics are the tags "ARMS", "AMEAN", "AMIN"
/// and "AMAX"; when one is missing, minimum and maximum are found, rms is 1, mean is 0, and the
/// values are the grid's own, unscaled.
VXGRID_API bool VXGridToCCP4(VXCCP4Map& map, const VXScalarGrid& grid);
/// The same from a Brio grid. One with an orientation and a space group goes into the map as it
/// stands, cell and sampling included; any other is made regular first.
VXGRID_API bool VXGridToCCP4(VXCCP4Map& map, const VXBrioGrid& grid);

/// Makes a crystal grid of a map: cell, orientation, space group, reentrant, titled "ccp4 map". An
/// axis that covers one whole period gets a closing plane. No statistics are tagged. False when the
/// axes of the map are no permutation, or it has fewer values than its header says.
VXGRID_API bool VXCCP4ToGrid(VXBrioGrid& grid, const VXCCP4Map& map);

/// Writes a grid as a CCP4 map file by way of VXGridToCCP4.
VXGRID_API bool VXWriteCCP4Grid(VXHost::vxostream& out, const VXBrioGrid& grid);
VXGRID_API bool VXWriteCCP4Grid(VXHost::vxostream& out, const VXScalarGrid& grid);
/// The same to a file, compressed when its name ends in ".gz"; false with the Warning "Unable to
/// open file for grid writing: %s" when the file cannot be made.
VXGRID_API bool VXWriteCCP4Grid(const std::string& filename, const VXBrioGrid& grid);
VXGRID_API bool VXWriteCCP4Grid(const std::string& filename, const VXScalarGrid& grid);

}  // namespace VXCore

#endif
