// Conversion of 16-bit floats.
#include "vxgrid/toolkit/core/half_float.h"

#include <bit>      // for bit_cast
#include <cmath>    // for ldexp
#include <cstdint>  // for uint32_t

namespace VXCore {
namespace {

// Drops the lowest bits of a whole number, rounding to the nearest, ties to even.
std::uint32_t shift_to_nearest(std::uint32_t value, unsigned int bits) {
  const std::uint32_t kept = value >> bits;
  const std::uint32_t rest = value & ((1u << bits) - 1u);
  const std::uint32_t half = 1u << (bits - 1u);
  return kept + (rest > half || (rest == half && (kept & 1u)) ? 1u : 0u);
}

std::uint16_t to_half(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t sign = bits >> 16 & 0x8000u;
  const std::uint32_t magnitude = bits & 0x7fffffffu;
  std::uint32_t half = 0;
  if (magnitude > 0x7f800000u) {
    half = 0x7e00u;  // NaN
  } else if (magnitude >= 0x477ff000u) {
    half = 0x7c00u;  // 65520 and above
  } else if (magnitude >= 0x38800000u) {
    // 2^-14 and above: the exponent changes its bias from 127 to 15, and a carry out of the
    // rounded fraction rightly raises it.
    half = shift_to_nearest(magnitude - (112u << 23), 13);
  } else if (magnitude >= 0x33000000u) {
    // Subnormal: the fraction with its leading one, in units of 2^-24.
    const std::uint32_t exponent = magnitude >> 23;
    half = shift_to_nearest((magnitude & 0x7fffffu) | 0x800000u, 126u - exponent);
  }
  return static_cast<std::uint16_t>(sign | half);
}

}  // namespace

VXHalfFloat::VXHalfFloat(float value) noexcept : bits_(to_half(value)) {}

VXHalfFloat::operator float() const noexcept {
  const std::uint32_t sign = (bits_ & 0x8000u) << 16;
  const std::uint32_t exponent = bits_ >> 10 & 0x1fu;
  const std::uint32_t fraction = bits_ & 0x3ffu;
  if (exponent == 0x1f) return std::bit_cast<float>(sign | 0x7f800000u | fraction << 13);
  if (exponent == 0) {
    const float magnitude = std::ldexp(static_cast<float>(fraction), -24);
    return sign ? -magnitude : magnitude;
  }
  return std::bit_cast<float>(sign | (exponent + 112u) << 23 | fraction << 13);
}

}  // namespace VXCore
