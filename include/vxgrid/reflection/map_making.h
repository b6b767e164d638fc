/// \file
/// The arrays of the Fourier transform that turns reflections into a map.
#ifndef VXGRID_REFLECTION_MAP_MAKING_H
#define VXGRID_REFLECTION_MAP_MAKING_H

#include <complex>  // for complex

namespace VXCore {

/// A real map and its half of reciprocal space in one array, as FFTW lays them out.
///
/// X is slowest and Z fastest, Z being the halved dimension: complex element (x, y, z) stands at
/// (x cy + y) cz + z, real element (x, y, z) at (x ry + y) rz + z. A row of reals is thus two
/// longer than nz, or one if nz is odd.
struct FFTMap {
  int nx, ny, nz;                      ///< Points of the map along the cell edges a, b, c.
  int cx, cy, cz;                      ///< Dimensions of the complex array: nx, ny, nz / 2 + 1.
  int rx, ry, rz;                      ///< Dimensions of the real array: nx, ny, 2 (nz / 2 + 1).
  double* real_data;                   ///< The array as real numbers; not owned.
  std::complex<double>* complex_data;  ///< The same array as (re, im) pairs.
  float scale;                         ///< 1 / cell volume, in 1/Angstrom^3.
};

}  // namespace VXCore

#endif
