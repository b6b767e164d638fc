// Closed forms of one Gaussian. Precisions and the odd last digits of the constants are part of the
// results.
#include "vxgrid/gaussian/gsphere.h"

#include <cmath>  // for exp, fabs, log, pow, sqrt

#include "vxgrid/toolkit/core/text.h"

namespace VXCore {

namespace {

// 4 pi/3
constexpr double sphere_volume = 4.1887902047863905;

}  // namespace

void vi_set_gaussian_prefactor(Gsphere* g) {
  if (g->volume == 0.0f) return;
  constexpr float pi_to_minus_three_halves = 0.17958713f;
  const float w = g->width;
  g->prefactor = std::sqrt(w * w * w) * g->volume * pi_to_minus_three_halves;
}

void vi_set_gaussian_radius(Gsphere* g) {
  constexpr float default_prefactor = 2.7f;
  constexpr double default_kappa = 2.344250976862621;
  constexpr float kappa_of_one = 1.2090055f;  // pi*(3/(4 pi))^(2/3)
  constexpr float exponent = 0.666666f;       // shorter than 2/3, and meant so
  if (g->width == 0.0f) return;
  if (VXFloatCompare(g->prefactor, default_prefactor, 0.00001f)) {
    g->radius = static_cast<float>(std::sqrt(default_kappa / double{g->width}));
  } else if (g->prefactor > 0.0f) {
    g->radius = std::sqrt(std::pow(g->prefactor, exponent) * kappa_of_one / g->width);
  }
}

void vi_set_gaussian_volume(Gsphere* g) {
  constexpr float pi_to_three_halves = 5.568328f;
  if (g->radius != 0.0f) {
    const double r = g->radius;
    g->volume = static_cast<float>(r * r * (r * sphere_volume));
  } else if (g->width != 0.0f) {
    const float w_cubed = g->width * g->width * g->width;
    const float at_unit_width = g->prefactor * pi_to_three_halves;
    g->volume = static_cast<float>(std::sqrt(1.0 / double{w_cubed}) * double{at_unit_width});
  }
}

float vi_gauss_rad(float prefactor, float width, float cutoff) {
  if (!(width > 0.0f) || prefactor == 0.0f || cutoff == 0.0f) return 0.0f;
  const float height = std::fabs(prefactor);
  const float level = std::fabs(cutoff);
  if (level > height) return 0.0f;
  const float squared = std::log(height / level) / width;
  return static_cast<float>(std::sqrt(double{squared}));
}

void vi_assign_gwid_from_rad_pre(const float* prefactors, float* radii, float* widths, int count) {
  // kappa = (p * 3 sqrt(pi)/4)^(2/3), the power taken through exp and log.
  constexpr float three_root_pi_over_four = 1.3293403f;
  constexpr float two_thirds = 0.6666667f;
  for (int i = 0; i < count; ++i) {
    const float p = prefactors[i];
    const float r = radii[i];
    widths[i] = p != 0.0f && r != 0.0f
                    ? std::exp(std::log(p * three_root_pi_over_four) * two_thirds) / (r * r)
                    : 0.0f;
  }
}

double VXGetKappa(double prefactor) {
  constexpr double three_over_four_pi = 0.238732414637843;
  constexpr double two_thirds = 0.6666666666666666;
  constexpr double pi = 3.141592653589793;
  return std::pow(prefactor * three_over_four_pi, two_thirds) * pi;
}

double VXGetPrefactor(double kappa) {
  constexpr double one_over_pi = 0.3183098861837907;
  const double t = kappa * one_over_pi;
  return std::sqrt(t) * t * sphere_volume;
}

double VXGetRadius(double prefactor, double width) {
  return std::sqrt(VXGetKappa(prefactor) / width);
}

double VXGetWidth(double kappa, double radius) {
  return kappa / (radius * radius);
}

}  // namespace VXCore
