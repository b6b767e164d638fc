/// \file
/// The symmetric 3x3 eigenproblem, and rotations as matrices and quaternions.
///
/// Matrices are nine numbers in rows, element (r, c) at 3*r + c. Eigenvalues come in descending
/// order; eigenvectors have unit length and form a right-handed set. The sign of the first two is
/// the one that makes their largest component positive; the third is their cross product.
#ifndef VXGRID_TOOLKIT_LEGACY_EIGEN3_H
#define VXGRID_TOOLKIT_LEGACY_EIGEN3_H

#include "vxgrid/toolkit/core/export.h"

namespace VXBrioMol {

/// Eigenvalues and eigenvectors of a symmetric matrix, of which the upper triangle is read.
/// `vectors[9]` has eigenvector k in column k: `vectors[3*r + k]` is its component r. Cyclic Jacobi
/// rotations in double precision (Golub & Van Loan, Matrix Computations, 4th ed., section 8.5).
/// False, with zero eigenvalues and the identity, when an element is not finite.
VXGRID_API bool eigen_solve_3_by_3(const double* matrix, double* values, double* vectors);
VXGRID_API bool eigen_solve_3_by_3(const float* matrix, float* values, float* vectors);

/// The same, in place: the matrix becomes its eigenvectors, in columns, and `roots[3]` takes the
/// eigenvalues, the roots of its characteristic cubic; `roots` may be null.
VXGRID_API bool get_roots_3(double* matrix, double* roots);
VXGRID_API bool get_roots_3(float* matrix, float* roots);

/// The rotation matrix of a quaternion (w, x, y, z), scalar part first, of any length but 0; a
/// quaternion of length 0 gives the identity.
VXGRID_API void vx_quaternions_to_rotation_matrix(const float* quaternion, float* matrix);

/// The unit quaternion (w, x, y, z), w not negative, of a rotation matrix. Computed from the
/// largest of the four components, so that no angle loses precision (S. W. Shepperd, J. Guidance
/// and Control 1, 223 (1978), doi:10.2514/3.55767b).
VXGRID_API void vx_rotation_matrix_to_quaternions(const float* matrix, float* quaternion);

/// The rotation that takes the axes x, y, z onto the principal axes of a symmetric matrix, largest
/// eigenvalue first: its columns are the eigenvectors. `rotation` may be `symmetric` itself.
VXGRID_API void vx_make_rmat2(const float* symmetric, float* rotation);

}  // namespace VXBrioMol

#endif
