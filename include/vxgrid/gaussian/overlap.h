/// \file
/// Overlap of two Gaussians: the product Gaussian, and the integral of the product with its
/// derivatives.
///
/// With widths a and b and the centres d = (centre of a) - (centre of b) apart,
///
///     integral = p_a p_b exp(-|d|^2 ab/(a + b)) (pi/(a + b))^(3/2).
///
/// The sum of the widths has to be above 0, which is not checked.
#ifndef VXGRID_GAUSSIAN_OVERLAP_H
#define VXGRID_GAUSSIAN_OVERLAP_H

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Centre, prefactor, width and level of the product, which is a Gaussian again; volume and radius
/// of the result are left alone. `result` may be one of the two. Gives 1.
VXGRID_API int vi_make_overlap_gaussian(Gsphere* a, Gsphere* b, Gsphere* result);

/// The integral, in cubic Angstrom; 0 when the exponent is above 23.026, which is a factor of
/// 1e-10. Gives 1.
VXGRID_API int vi_vol_sg_intersect(double* volume, Gsphere* a, Gsphere* b);

/// The integral and its gradient by the centre of `a`. Gives 1, or 0 with all of it 0 when the
/// exponent is above 23.026.
VXGRID_API int vi_vol_deriv_sg_intersect(double* volume, double* gradient, Gsphere* a, Gsphere* b);

/// The integral, gradient[3] and second[6] (xx, xy, xz, yy, yz, zz) by the centre of `a`, at any
/// distance. The heights p are read from the `volume` fields of the records, not from `prefactor`.
/// Gives 1.
VXGRID_API int vi_vol_deriv_sec_deriv_sg_intersect(double* volume, double* gradient, double* second,
                                                   Gsphere* a, Gsphere* b);

}  // namespace VXCore

#endif
