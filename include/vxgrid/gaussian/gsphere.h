/// \file
/// One spherical Gaussian, and the closed forms that turn one description of it into another.
///
/// A Gaussian is prefactor * exp(-width * d^2) at the distance d (Angstrom) from its centre, and
/// its volume is its integral over space, prefactor * (pi/width)^(3/2). It stands in for a hard
/// sphere of radius r when the integral is the sphere's volume: width = kappa(prefactor)/r^2 with
/// kappa(p) = pi * (3p/(4 pi))^(2/3) (Grant & Pickup, J. Phys. Chem. 1995, 99, 3503,
/// doi 10.1021/j100011a016). The one free parameter is the prefactor, 2.7 unless said otherwise.
#ifndef VXGRID_GAUSSIAN_GSPHERE_H
#define VXGRID_GAUSSIAN_GSPHERE_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// One Gaussian, or one term of an overlap series: eight 32-bit words.
struct Gsphere {
  float width = 0;  ///< the exponent, per Angstrom squared
  float x = 0;      ///< centre, Angstrom
  float y = 0;
  float z = 0;
  float prefactor = 0;  ///< height at the centre
  int level = 0;        ///< 0 for an atom, n for an overlap of n + 1 atoms; odd ones are subtracted
  float volume = 0;  ///< the integral over space, cubic Angstrom; signed or not as its maker says
  float radius = 0;  ///< of the hard sphere, Angstrom; 0 for unknown
};
static_assert(sizeof(Gsphere) == 32, "arrays of the record are read as packed words");

/// The prefactor from volume and width; a volume of 0 leaves the record alone.
VXGRID_API void vi_set_gaussian_prefactor(Gsphere* g);

/// The radius from prefactor and width; a width of 0, and a prefactor that is not above 0, leave
/// the record alone.
VXGRID_API void vi_set_gaussian_radius(Gsphere* g);

/// The volume, of the sphere where the radius is not 0, else from prefactor and width; with both 0
/// the record is left alone.
VXGRID_API void vi_set_gaussian_volume(Gsphere* g);

/// The distance in Angstrom at which a Gaussian has fallen to `cutoff`, both by magnitude. 0 for a
/// width that is not above 0, a prefactor or cut-off of 0, and a cut-off above the prefactor.
VXGRID_API float vi_gauss_rad(float prefactor, float width, float cutoff);

/// widths[i] of the Gaussian with prefactors[i] that stands in for a sphere of radii[i], for
/// `count` of them; 0 where prefactor or radius is 0. The radii are only read.
VXGRID_API void vi_assign_gwid_from_rad_pre(const float* prefactors, float* radii, float* widths,
                                            int count);

/// kappa = width * radius^2 of the Gaussians with this prefactor.
VXGRID_API double VXGetKappa(double prefactor);
/// The prefactor of this kappa.
VXGRID_API double VXGetPrefactor(double kappa);
/// The radius in Angstrom of the sphere that a Gaussian stands in for.
VXGRID_API double VXGetRadius(double prefactor, double width);
/// The width of a Gaussian of this kappa that stands in for a sphere of this radius.
VXGRID_API double VXGetWidth(double kappa, double radius);

}  // namespace VXCore

#endif
