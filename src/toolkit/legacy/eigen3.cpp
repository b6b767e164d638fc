// The symmetric 3x3 eigenproblem by Jacobi rotations, and rotations as matrices and quaternions.
#include "vxgrid/toolkit/legacy/eigen3.h"

#include <algorithm>  // for copy, swap, transform
#include <array>      // for array
#include <cmath>      // for sqrt, fabs, isfinite
#include <cstddef>    // for size_t

namespace VXBrioMol {

namespace {

using Vector3 = std::array<double, 3>;
using Matrix3 = std::array<Vector3, 3>;

struct EigenSystem {
  Vector3 values{};
  Matrix3 vectors{};  // one per row
};

constexpr Matrix3 identity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// One rotation that makes element (p, q) zero; `rows` turns along and ends as the eigenvectors.
void jacobi_rotation(Matrix3& a, Matrix3& rows, std::size_t p, std::size_t q) {
  if (a[p][q] == 0.0) return;
  const double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
  // The smaller root of t^2 + 2 theta t - 1, which keeps the angle below 45 degrees. Theta may be
  // infinite; t is then 0.
  const double t = (theta < 0.0 ? -1.0 : 1.0) / (std::fabs(theta) + std::hypot(theta, 1.0));
  const double c = 1.0 / std::sqrt(t * t + 1.0);
  const double s = t * c;
  const double shift = t * a[p][q];
  a[p][p] -= shift;
  a[q][q] += shift;
  a[p][q] = a[q][p] = 0.0;
  const std::size_t r = 3 - p - q;
  const double rp = a[r][p];
  const double rq = a[r][q];
  a[r][p] = a[p][r] = c * rp - s * rq;
  a[r][q] = a[q][r] = s * rp + c * rq;
  for (std::size_t k = 0; k < 3; ++k) {
    const double vp = rows[p][k];
    const double vq = rows[q][k];
    rows[p][k] = c * vp - s * vq;
    rows[q][k] = s * vp + c * vq;
  }
}

void make_largest_component_positive(Vector3& v) {
  std::size_t largest = 0;
  for (std::size_t k = 1; k < 3; ++k) {
    if (std::fabs(v[k]) > std::fabs(v[largest])) largest = k;
  }
  if (v[largest] < 0.0) {
    for (double& component : v)
      component = -component;
  }
}

Vector3 cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// `a` is symmetric and finite.
EigenSystem solve(Matrix3 a) {
  EigenSystem system;
  Matrix3& rows = system.vectors;
  rows = identity;
  // Convergence is quadratic: five or six sweeps take any matrix to the last bit.
  constexpr int most_sweeps = 50;
  for (int sweep = 0; sweep < most_sweeps; ++sweep) {
    if (a[0][1] == 0.0 && a[0][2] == 0.0 && a[1][2] == 0.0) break;
    jacobi_rotation(a, rows, 0, 1);
    jacobi_rotation(a, rows, 0, 2);
    jacobi_rotation(a, rows, 1, 2);
  }
  system.values = {a[0][0], a[1][1], a[2][2]};
  const auto order = [&](std::size_t i, std::size_t j) {
    if (system.values[i] < system.values[j]) {
      std::swap(system.values[i], system.values[j]);
      std::swap(rows[i], rows[j]);
    }
  };
  order(0, 1);
  order(1, 2);
  order(0, 1);
  make_largest_component_positive(rows[0]);
  make_largest_component_positive(rows[1]);
  rows[2] = cross(rows[0], rows[1]);
  return system;
}

template <class Real>
bool eigen_solve(const Real* matrix, Real* values, Real* vectors) {
  const double xx = matrix[0], xy = matrix[1], xz = matrix[2];
  const double yy = matrix[4], yz = matrix[5], zz = matrix[8];
  const bool finite = std::isfinite(xx) && std::isfinite(xy) && std::isfinite(xz) &&
                      std::isfinite(yy) && std::isfinite(yz) && std::isfinite(zz);
  const EigenSystem system =
      finite ? solve({{{xx, xy, xz}, {xy, yy, yz}, {xz, yz, zz}}}) : EigenSystem{{}, identity};
  for (std::size_t k = 0; k < 3; ++k) {
    if (values) values[k] = static_cast<Real>(system.values[k]);
    for (std::size_t r = 0; r < 3; ++r) {
      vectors[3 * r + k] = static_cast<Real>(system.vectors[k][r]);
    }
  }
  return finite;
}

}  // namespace

bool eigen_solve_3_by_3(const double* matrix, double* values, double* vectors) {
  return eigen_solve(matrix, values, vectors);
}

bool eigen_solve_3_by_3(const float* matrix, float* values, float* vectors) {
  return eigen_solve(matrix, values, vectors);
}

bool get_roots_3(double* matrix, double* roots) {
  return eigen_solve(matrix, roots, matrix);
}

bool get_roots_3(float* matrix, float* roots) {
  return eigen_solve(matrix, roots, matrix);
}

void vx_quaternions_to_rotation_matrix(const float* quaternion, float* matrix) {
  const double w = quaternion[0], x = quaternion[1], y = quaternion[2], z = quaternion[3];
  const double norm = w * w + x * x + y * y + z * z;
  const double s = norm > 0.0 ? 2.0 / norm : 0.0;
  const std::array<double, 9> rotation{
      1.0 - s * (y * y + z * z), s * (x * y - w * z),       s * (x * z + w * y),
      s * (x * y + w * z),       1.0 - s * (x * x + z * z), s * (y * z - w * x),
      s * (x * z - w * y),       s * (y * z + w * x),       1.0 - s * (x * x + y * y)};
  std::transform(rotation.begin(), rotation.end(), matrix,
                 [](double element) { return static_cast<float>(element); });
}

void vx_rotation_matrix_to_quaternions(const float* matrix, float* quaternion) {
  const auto m = [matrix](int r, int c) { return static_cast<double>(matrix[3 * r + c]); };
  const double trace = m(0, 0) + m(1, 1) + m(2, 2);
  std::array<double, 4> q{};
  if (trace >= m(0, 0) && trace >= m(1, 1) && trace >= m(2, 2)) {
    q = {1.0 + trace, m(2, 1) - m(1, 2), m(0, 2) - m(2, 0), m(1, 0) - m(0, 1)};
  } else if (m(0, 0) >= m(1, 1) && m(0, 0) >= m(2, 2)) {
    q = {m(2, 1) - m(1, 2), 1.0 + 2.0 * m(0, 0) - trace, m(0, 1) + m(1, 0), m(0, 2) + m(2, 0)};
  } else if (m(1, 1) >= m(2, 2)) {
    q = {m(0, 2) - m(2, 0), m(0, 1) + m(1, 0), 1.0 + 2.0 * m(1, 1) - trace, m(1, 2) + m(2, 1)};
  } else {
    q = {m(1, 0) - m(0, 1), m(0, 2) + m(2, 0), m(1, 2) + m(2, 1), 1.0 + 2.0 * m(2, 2) - trace};
  }
  double norm = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
  if (!(norm > 0.0)) {
    q = {1.0, 0.0, 0.0, 0.0};
    norm = 1.0;
  }
  if (q[0] < 0.0) norm = -norm;
  std::transform(q.begin(), q.end(), quaternion,
                 [norm](double part) { return static_cast<float>(part / norm); });
}

void vx_make_rmat2(const float* symmetric, float* rotation) {
  eigen_solve<float>(symmetric, nullptr, rotation);
}

}  // namespace VXBrioMol
