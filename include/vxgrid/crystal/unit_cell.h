/// \file
/// The six parameters of a crystal cell and the two matrices that follow from them.
#ifndef VXGRID_CRYSTAL_UNIT_CELL_H
#define VXGRID_CRYSTAL_UNIT_CELL_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore::VXXtal {

/// A crystal cell as a plain value: edges in Angstrom, angles in degrees, and the matrices between
/// Cartesian and fractional coordinates.
///
/// The a axis lies along Cartesian x and b in the xy plane. Matrices are 4 by 4, row by row, for
/// row vectors: x' = m[0] x + m[4] y + m[8] z + m[12], and likewise m[1], ... for y' and m[2], ...
/// for z'. First A, then B is thus the row-major product A B. Every matrix that the crystal classes
/// pass around is of this form.
///
/// A cell of impossible parameters is an ordinary value: nothing is thrown or reported, the
/// parameters stay as given and both matrices are zero. isValid() tells.
class VXGRID_API VXUnitCell {
 public:
  /// All six parameters 0: not valid, with matrices that nobody may rely on.
  VXUnitCell() = default;
  VXUnitCell(float a, float b, float c, float alpha, float beta, float gamma);
  /// From six floats in the order a, b, c, alpha, beta, gamma.
  VXUnitCell(const float* cell);

  /// Cartesian (Angstrom) to fractional coordinates, 16 floats owned by the cell.
  const float* Cart2Frac() const { return cart2frac_; }
  /// Fractional to Cartesian coordinates (Angstrom), 16 floats owned by the cell.
  const float* Frac2Cart() const { return frac2cart_; }

  /// a b c sqrt(D), D = 1 - cos^2 alpha - cos^2 beta - cos^2 gamma + 2 cos alpha cos beta cos
  /// gamma, in Angstrom^3. Validity is not tested: angles that no cell can have (D below 0) give
  /// not a number.
  float GetVolume() const;

  /// True if every edge is above 0 and every angle lies between 0 and 180, both exclusive. An edge
  /// that is not a number passes, an angle that is not a number fails.
  bool isValid() const;

  /// True if no parameter differs by more than `tolerance` (Angstrom and degrees alike), so that a
  /// tolerance of 0 accepts identical numbers. Whether `other` is valid plays no part in that. If
  /// this cell itself is not valid the numbers don't count: true if `other` is not valid either.
  bool equalsCell(VXUnitCell other, float tolerance) const;

  float a = 0;      ///< Edge, Angstrom. The matrices do not follow when a parameter is changed.
  float b = 0;      ///< Edge, Angstrom.
  float c = 0;      ///< Edge, Angstrom.
  float alpha = 0;  ///< Angle between b and c, degrees.
  float beta = 0;   ///< Angle between a and c, degrees.
  float gamma = 0;  ///< Angle between a and b, degrees.

 private:
  void build_matrices();

  float cart2frac_[16] = {};
  float frac2cart_[16] = {};
};

}  // namespace VXCore::VXXtal

#endif
