/// \file
/// The 16-bit float of IEEE 754.
#ifndef VXGRID_TOOLKIT_CORE_HALF_FLOAT_H
#define VXGRID_TOOLKIT_CORE_HALF_FLOAT_H

#include <cstdint>  // for uint16_t

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// A number of 11 significant bits (IEEE 754-2008, binary16): exact to float, and from float to the
/// nearest, ties to even; 65520 and above become infinite.
class VXGRID_API VXHalfFloat {
 public:
  constexpr VXHalfFloat() noexcept = default;
  VXHalfFloat(float value) noexcept;
  static constexpr VXHalfFloat FromBits(std::uint16_t bits) noexcept {
    VXHalfFloat half;
    half.bits_ = bits;
    return half;
  }

  operator float() const noexcept;
  constexpr std::uint16_t GetBits() const noexcept { return bits_; }

 private:
  std::uint16_t bits_ = 0;
};

}  // namespace VXCore

#endif
