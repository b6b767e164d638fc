/// \file
/// Small helpers of the flat interface: rounding, exponentials, numbers in a text, boxes of points.
#ifndef VXGRID_TOOLKIT_LEGACY_NUMERIC_H
#define VXGRID_TOOLKIT_LEGACY_NUMERIC_H

#include <cmath>  // for exp, fabs, round

#include "vxgrid/toolkit/core/export.h"

namespace VXBrioMol {

/// The nearest integer, halves away from zero; 0 for what is no number or fits no int.
inline int vi_nint(float value) {
  const float rounded = std::round(value);
  // 2^31 is the first float above the range of int, -2^31 the last in it.
  return rounded >= -2147483648.0f && rounded < 2147483648.0f ? static_cast<int>(rounded) : 0;
}

/// The exponential in single precision.
inline float vi_exp_f(float value) {
  return std::exp(value);
}

/// True when the value is within 1e-6 of zero; false for what is no number.
inline bool vi_IsZero(float value) {
  return std::fabs(value) <= 1.0e-6f;
}

/// Where `label` first stands in `text`, counted from 1, so that 1 says that the text begins with
/// it; 0 when it is not there or either is null. An empty label is at 1.
VXGRID_API int vi_sindex(const char* text, const char* label);

/// How many decimal numbers stand in a text. A number has an optional sign, digits with or without
/// a point, and an optional exponent; it does not begin inside a word ("map1" has none), and two
/// that touch are told apart by the second one's sign ("-10-12" has two). Null has none.
VXGRID_API int vx_number_of_numbers_in_a_string(const char* text);

/// The index just behind the first such number; 0 when there is none.
VXGRID_API int vx_end_position_of_number_in_string(const char* text);

/// The box of `count` points, x, y, z of each in turn: its lowest corner to `low[3]`, its highest
/// to `high[3]`. Without points both are zero.
VXGRID_API void vx_get_box_size(const float* coords, int count, float* low, float* high);

}  // namespace VXBrioMol

#endif
