/// \file
/// What a mask value does to a grid value.
#ifndef VXGRID_SRC_GRIDMATH_MASK_RULES_H
#define VXGRID_SRC_GRIDMATH_MASK_RULES_H

#include <cmath>    // for exp
#include <cstddef>  // for size_t

#include "vxgrid/gridmath/masks.h"

namespace VXCore::detail {

inline bool is_mask_type(unsigned int type) {
  return type >= mask_gaussian && type <= mask_gaussian_smooth_inverse;
}

/// Puts rule(value, mask value) in the place of each value.
template <class Rule>
void apply_rule(float* values, const float* mask, std::size_t count, Rule rule) {
  for (std::size_t i = 0; i < count; ++i)
    values[i] = rule(values[i], mask[i]);
}

/// Applies one of the mask types at the threshold t; false, with nothing changed, for any other
/// type and for a null array.
inline bool apply_mask(float* values, const float* mask, std::size_t count, unsigned int type,
                       float t) {
  if (!values || !mask) return false;
  switch (type) {
    case mask_gaussian:
      apply_rule(values, mask, count, [t](float g, float m) { return m > t ? 0.0f : g; });
      return true;
    case mask_gaussian_inverse:
      apply_rule(values, mask, count, [t](float g, float m) { return m < t ? 0.0f : g; });
      return true;
    case mask_gaussian_smooth:
      apply_rule(values, mask, count, [t](float g, float m) { return g * std::exp(-t * m); });
      return true;
    case mask_gaussian_smooth_inverse:
      apply_rule(values, mask, count,
                 [t](float g, float m) { return g * (1.0f - std::exp(-t * m)); });
      return true;
    default:
      return false;
  }
}

}  // namespace VXCore::detail

#endif
