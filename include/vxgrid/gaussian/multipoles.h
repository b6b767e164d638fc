/// \file
/// Shape multipoles: volume, centre, second moments and octopoles of a list of Gaussians.
///
/// A molecule's series of Gaussians is a density whose integral is its volume, and the moments of
/// that density describe its shape: the principal second moments its extent along three axes, the
/// octopoles its lopsidedness (Grant, Gallardo & Pickup, J. Comput. Chem. 1996, 17, 1653,
/// doi 10.1002/(SICI)1096-987X(19961115)17:14<1653::AID-JCC7>3.0.CO;2-K). In the frame of the
/// principal axes, with their directions fixed by the signs of the octopoles, they are the same
/// wherever and however the molecule lies. Class Gaussian computes them for molecules.
#ifndef VXGRID_GAUSSIAN_MULTIPOLES_H
#define VXGRID_GAUSSIAN_MULTIPOLES_H

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// The multipoles of `count` terms, each counted with |volume|, less for an odd level; that serves
/// series of either sign convention (see class Gaussian).
///
/// `centre[3]` is the centroid c, Angstrom. `rotation[9]` holds the principal axes in its rows,
/// right-handed, the one of the largest extent first, so that rotation*(p - c) is the place of p in
/// the frame. With Oabc the third central moment per volume along the axes a, b, c, Angstrom^3, and
/// Eab the second one, Angstrom^2, `multipoles[14]` are
///
/// | index | irreducible octopoles on (at start) | off |
/// |---|---|---|
/// | 0 | volume, Angstrom^3 | the same |
/// | 1, 2, 3 | E00 >= E11 >= E22 | the same |
/// | 4 | O000 + O110 + O220 | O000 |
/// | 5 | O001 + O111 + O221 | O111 |
/// | 6 | O112 + O002 + O222 | O222 |
/// | 7 | 1.5 (0.6666 O222 - O002 - O112) | O001 |
/// | 8 | 0.61237246 (4 O220 - O000 - O110) | O002 |
/// | 9 | 0.61237246 (4 O221 - O111 - O001) | O110 |
/// | 10 | 1.9364916 (O002 - O112) | O112 |
/// | 11 | 3.8729832 O012 | O220 |
/// | 12 | 0.7905649 (O000 - 3 O110) | O221 |
/// | 13 | 0.7905649 (3 O001 - O111) | O012 |
///
/// where 4 to 6 are the mean of u*|u|^2 and 7 to 13 those of the real solid harmonics of degree 3
/// in Racah's normalisation, in the order m = 0, 1, -1, 2, -2, 3, -3. Axes 0 and 1 point to where
/// O000 and O111 are above 0; axis 2 follows as their cross product. A moment of 0 counts as one
/// below 0, and its axis is turned round.
///
/// The raw moments about the origin are summed over the terms in order and in single precision:
/// the third ones lose digits with the cube of the distance from the origin. Terms whose volumes
/// sum to 0, none at all among them, have zeros as multipoles and centre, and the identity as
/// rotation. Gives 1.
VXGRID_API int vx_CalcShapeMultipoles(int count, const Gsphere* terms, float* multipoles,
                                      float* centre, float* rotation);

/// The form of the octopoles in all calls from now on, for the whole process. One plain number,
/// which is not to be changed while another thread computes multipoles.
VXGRID_API void vx_shape_multipoles_irreducible_octopoles_on();
VXGRID_API void vx_shape_multipoles_irreducible_octopoles_off();

}  // namespace VXCore

#endif
