// Numbers in a text, positions of labels, boxes of points.
#include "vxgrid/toolkit/legacy/numeric.h"

#include <algorithm>  // for min, max
#include <cstddef>    // for size_t
#include <cstring>    // for strstr

namespace VXBrioMol {

namespace {

// Tests of our own, since those of the C library depend on the locale.
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
bool is_word_part(char c) {
  return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.';
}
bool is_sign(char c) {
  return c == '+' || c == '-';
}

const char* skip_digits(const char* at) {
  while (is_digit(*at))
    ++at;
  return at;
}

// The place behind the number that begins at `at`, `at` itself when none does.
const char* number_end(const char* at) {
  const char* p = at + (is_sign(*at) ? 1 : 0);
  const char* const digits = p;
  p = skip_digits(p);
  bool any = p != digits;
  if (*p == '.') {
    const char* const fraction = p + 1;
    const char* const behind = skip_digits(fraction);
    any = any || behind != fraction;
    p = behind;
  }
  if (!any) return at;
  if (*p == 'e' || *p == 'E') {
    const char* const exponent = p + 1 + (is_sign(p[1]) ? 1 : 0);
    if (is_digit(*exponent)) p = skip_digits(exponent);
  }
  return p;
}

// The place behind the next number from `at` on, null when there is no more. Words are stepped over
// whole, with the signs in them, so that no number begins inside one.
const char* next_number_end(const char* at) {
  while (*at != '\0') {
    const char* const end = number_end(at);
    if (end != at) return end;
    if (!is_word_part(*at)) {
      ++at;
      continue;
    }
    while (is_word_part(*at) || is_sign(*at))
      ++at;
  }
  return nullptr;
}

}  // namespace

int vi_sindex(const char* text, const char* label) {
  if (!text || !label) return 0;
  const char* const found = std::strstr(text, label);
  return found ? static_cast<int>(found - text) + 1 : 0;
}

int vx_number_of_numbers_in_a_string(const char* text) {
  if (!text) return 0;
  int count = 0;
  for (const char* end = next_number_end(text); end; end = next_number_end(end))
    ++count;
  return count;
}

int vx_end_position_of_number_in_string(const char* text) {
  const char* const end = text ? next_number_end(text) : nullptr;
  return end ? static_cast<int>(end - text) : 0;
}

void vx_get_box_size(const float* coords, int count, float* low, float* high) {
  for (int axis = 0; axis < 3; ++axis) {
    low[axis] = high[axis] = count > 0 ? coords[axis] : 0.0f;
  }
  for (std::ptrdiff_t i = 1; i < count; ++i) {
    for (int axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], coords[3 * i + axis]);
      high[axis] = std::max(high[axis], coords[3 * i + axis]);
    }
  }
}

}  // namespace VXBrioMol
