// Volume, comparison and matrices of a crystal cell.
#include "vxgrid/crystal/unit_cell.h"

#include <cmath>  // for sin, cos, sqrt, fabs

namespace VXCore::VXXtal {

namespace {

double radians(float degrees) {
  return degrees * 0.0174532925199433;
}

bool is_angle(float degrees) {
  return degrees > 0 && degrees < 180;
}

}  // namespace

VXUnitCell::VXUnitCell(float edge_a, float edge_b, float edge_c, float angle_bc, float angle_ac,
                       float angle_ab)
    : a(edge_a), b(edge_b), c(edge_c), alpha(angle_bc), beta(angle_ac), gamma(angle_ab) {
  build_matrices();
}

VXUnitCell::VXUnitCell(const float* cell)
    : VXUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]) {}

float VXUnitCell::GetVolume() const {
  const double ca = std::cos(radians(alpha));
  const double cb = std::cos(radians(beta));
  const double cg = std::cos(radians(gamma));
  const double d = 1 - ca * ca - cb * cb - cg * cg + 2 * ca * cb * cg;
  const float edges = a * b * c;
  return static_cast<float>(edges / std::sqrt(1 / d));
}

bool VXUnitCell::isValid() const {
  // The edges are tested the other way round than the angles, which lets an edge pass that is not a
  // number.
  const auto is_edge = [](float edge) { return !(0 >= edge); };
  return is_edge(a) && is_edge(b) && is_edge(c) && is_angle(alpha) && is_angle(beta) &&
         is_angle(gamma);
}

bool VXUnitCell::equalsCell(VXUnitCell other, float tolerance) const {
  if (!isValid()) return !other.isValid();
  const auto differ = [tolerance](float x, float y) { return std::fabs(x - y) > tolerance; };
  return !(differ(a, other.a) || differ(b, other.b) || differ(c, other.c) ||
           differ(alpha, other.alpha) || differ(beta, other.beta) || differ(gamma, other.gamma));
}

void VXUnitCell::build_matrices() {
  for (float& element : cart2frac_)
    element = 0;
  for (float& element : frac2cart_)
    element = 0;
  if (!(a > 0 && b > 0 && c > 0 && is_angle(alpha) && is_angle(beta) && is_angle(gamma))) return;

  const double cos_beta = std::cos(radians(beta));
  const double sin_gamma = std::sin(radians(gamma));
  const double cos_gamma = std::cos(radians(gamma));
  const float volume = GetVolume();
  const double cos_alpha = std::cos(radians(alpha));
  // What of c lies along b, apart from the shear of gamma.
  const double n = cos_alpha - cos_beta * cos_gamma;
  const double ab = a * b;
  const double bc = b * c;
  const double ac = a * c;

  frac2cart_[0] = a;
  frac2cart_[4] = static_cast<float>(b * cos_gamma);
  frac2cart_[5] = static_cast<float>(b * sin_gamma);
  frac2cart_[8] = static_cast<float>(c * cos_beta);
  frac2cart_[9] = static_cast<float>(c * n / sin_gamma);
  frac2cart_[10] = static_cast<float>(volume / (ab * sin_gamma));
  frac2cart_[15] = 1;

  cart2frac_[0] = 1.0f / a;
  cart2frac_[4] = static_cast<float>(-cos_gamma / (a * sin_gamma));
  cart2frac_[5] = static_cast<float>(1 / (b * sin_gamma));
  cart2frac_[8] =
      static_cast<float>(bc * cos_gamma * n / sin_gamma - bc * cos_beta * sin_gamma) / volume;
  cart2frac_[9] = static_cast<float>(-ac * n / (volume * sin_gamma));
  cart2frac_[10] = static_cast<float>(static_cast<double>(a) * b * sin_gamma / volume);
  cart2frac_[15] = 1;
}

}  // namespace VXCore::VXXtal
