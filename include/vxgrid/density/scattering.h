/// \file
/// X-ray scattering factors of atoms and ions in the Cromer-Mann form.
#ifndef VXGRID_DENSITY_SCATTERING_H
#define VXGRID_DENSITY_SCATTERING_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// The scattering factor of one atom or ion,
/// f(s) = sum over i = 1..4 of ai exp(-bi s^2) + c, with s = sin(theta) / lambda in 1/Angstrom.
///
/// Published in the International Tables for Crystallography, Volume C, table 6.1.1.4, for s up to
/// 2 / Angstrom.
struct scatterT {
  int z;          ///< Atomic number.
  int charge;     ///< Formal charge of the ion, 0 for the neutral atom.
  int electrons;  ///< z - charge; the row of U(6+) alone holds 84, as it has been published.
  double a1, b1;  ///< ai in electrons, bi in Angstrom^2.
  double a2, b2;
  double a3, b3;
  double a4, b4;
  double c;  ///< The constant term, electrons.
};

/// Rows of scatter_data.
inline constexpr int scatter_count = 208;

/// The elements 1 to 98 and their ions, ascending by atomic number but in no order of charge; every
/// element has a neutral row. Constant data, made from data/scattering_factors.txt when the library
/// is built.
extern VXGRID_API const scatterT scatter_data[scatter_count];

/// Row of `scatter_data` for an element and charge: the first row of that charge, otherwise the
/// neutral row, otherwise the element's first row. -1 if there is none or `z` is 0.
VXGRID_API int find_scatter_row(int z, int charge);

}  // namespace VXCore

#endif
