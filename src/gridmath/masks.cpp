// Clearing values by a rule.
#include "vxgrid/gridmath/masks.h"

#include <algorithm>    // for max, min
#include <cstddef>      // for size_t
#include <string_view>  // for string_view

#include "gridmath/mask_rules.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

constexpr float default_threshold = 0.5f;

// Clears the values of every float field in use of `g` where the same element of `mask` is above,
// or below, the threshold.
int clear_fields(VXBrioGrid& g, const VXBrioGrid& mask, float threshold, bool above) {
  const std::size_t size = g.GetSize();
  const auto in_use = static_cast<unsigned int>(std::max(0, g.GetFloatsMultiple()));
  const unsigned int fields = std::min(in_use, g.GetFloats().GetNumGrids());
  if (mask.GetSize() < size || mask.GetFloats().GetNumGrids() < fields) return 0;
  for (unsigned int field = 0; field < fields; ++field) {
    float* const values = g.GetFloats().GetValues(field);
    const float* const limits = mask.GetFloats().GetValues(field);
    if (!values || !limits) continue;
    if (above) {
      detail::apply_rule(values, limits, size,
                         [=](float v, float m) { return m > threshold ? 0.0f : v; });
    } else {
      detail::apply_rule(values, limits, size,
                         [=](float v, float m) { return m < threshold ? 0.0f : v; });
    }
  }
  return 1;
}

// Tells "<prefix>+" from "<prefix>-"; false for any other text.
bool is_type(const char* type, std::string_view prefix, bool& above) {
  const std::string_view text = type ? type : "";
  if (text.size() != prefix.size() + 1 || text.substr(0, prefix.size()) != prefix) return false;
  above = text.back() == '+';
  return above || text.back() == '-';
}

}  // namespace

bool VXMaskGridValues(float* values, const float* mask, unsigned int count, unsigned int type) {
  return detail::apply_mask(values, mask, count, type, default_threshold);
}

int vx_mask_grid(VXBrioGrid& g, float value, const char* type) {
  bool above = false;
  return is_type(type, "value", above) ? clear_fields(g, g, value, above) : 0;
}

int vx_mask_grid(VXBrioGrid& g, const VXBrioGrid& other, float value, const char* type) {
  bool above = false;
  return is_type(type, "grid", above) ? clear_fields(g, other, value, above) : 0;
}

}  // namespace VXCore
