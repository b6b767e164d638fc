// The product of two Gaussians and its integral.
#include "vxgrid/gaussian/overlap.h"

#include <array>    // for array
#include <cmath>    // for exp, sqrt
#include <cstddef>  // for size_t

namespace VXCore {

namespace {

constexpr double pi_to_three_halves = 5.568327903747559;
constexpr double largest_exponent = 23.026;  // ln(1e10)

// Two Gaussians in double precision; the difference of the centres is rounded to float first.
struct Pair {
  Pair(const Gsphere& a, const Gsphere& b)
      : wa(a.width),
        wb(b.width),
        inverse(1.0 / (wa + wb)),
        d{double{a.x - b.x}, double{a.y - b.y}, double{a.z - b.z}},
        exponent((d[0] * d[0] + d[1] * d[1] + d[2] * d[2]) * (wa * wb * inverse)) {}

  // The integral for the product of two heights.
  double integral(float heights) const {
    return std::exp(-exponent) * double{heights} * pi_to_three_halves *
           (std::sqrt(inverse) * inverse);
  }

  double wa, wb, inverse;
  std::array<double, 3> d;
  double exponent;
};

}  // namespace

int vi_make_overlap_gaussian(Gsphere* a, Gsphere* b, Gsphere* result) {
  const float wa = a->width;
  const float wb = b->width;
  const float inverse = 1.0f / (wa + wb);
  const float dx = a->x - b->x;
  const float dy = a->y - b->y;
  const float dz = a->z - b->z;
  const float x = (a->x * wa + b->x * wb) * inverse;
  const float y = (a->y * wa + b->y * wb) * inverse;
  const float z = (a->z * wa + b->z * wb) * inverse;
  result->prefactor = std::exp(-(dx * dx + dy * dy + dz * dz) * wa * (inverse * wb)) *
                      (a->prefactor * b->prefactor);
  result->level = a->level + b->level + 1;
  result->width = wa + wb;
  result->x = x;
  result->y = y;
  result->z = z;
  return 1;
}

int vi_vol_sg_intersect(double* volume, Gsphere* a, Gsphere* b) {
  const Pair pair(*a, *b);
  *volume = pair.exponent > largest_exponent ? 0.0 : pair.integral(a->prefactor * b->prefactor);
  return 1;
}

int vi_vol_deriv_sg_intersect(double* volume, double* gradient, Gsphere* a, Gsphere* b) {
  const Pair pair(*a, *b);
  if (pair.exponent > largest_exponent) {
    *volume = gradient[0] = gradient[1] = gradient[2] = 0.0;
    return 0;
  }
  const double v = pair.integral(a->prefactor * b->prefactor);
  *volume = v;
  for (std::size_t k = 0; k < 3; ++k)
    gradient[k] = v * (pair.wa * pair.wb) * (pair.inverse * -2.0) * pair.d[k];
  return 1;
}

int vi_vol_deriv_sec_deriv_sg_intersect(double* volume, double* gradient, double* second,
                                        Gsphere* a, Gsphere* b) {
  const Pair pair(*a, *b);
  const double v = pair.integral(a->volume * b->volume);
  const double f = pair.inverse * pair.wb;
  const std::array<double, 3> r = {f * pair.d[0], f * pair.d[1], f * pair.d[2]};
  *volume = v;

  const double c1 = pair.wa * -2.0 * v;
  for (std::size_t k = 0; k < 3; ++k)
    gradient[k] = c1 * r[k];

  const double c2 = pair.wa * v * (pair.wa * 4.0);
  const double c3 = f * c2 / (pair.wa * -2.0);
  second[0] = r[0] * r[0] * c2 + c3;
  second[1] = r[1] * r[0] * c2;
  second[2] = r[2] * r[0] * c2;
  second[3] = r[1] * r[1] * c2 + c3;
  second[4] = r[2] * r[1] * c2;
  second[5] = r[2] * r[2] * c2 + c3;
  return 1;
}

}  // namespace VXCore
