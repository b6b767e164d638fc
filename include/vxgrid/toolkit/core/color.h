/// \file
/// A 32-bit colour.
#ifndef VXGRID_TOOLKIT_CORE_COLOR_H
#define VXGRID_TOOLKIT_CORE_COLOR_H

#include <cstdint>  // for uint8_t

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Red, green, blue and opacity in one word, red in the lowest byte. The default is opaque black.
class VXGRID_API VXColor {
 public:
  constexpr VXColor() noexcept = default;
  constexpr explicit VXColor(unsigned int packed) noexcept : packed_(packed) {}
  constexpr VXColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                    std::uint8_t opacity = 255) noexcept
      : packed_(static_cast<unsigned int>(red) | static_cast<unsigned int>(green) << 8 |
                static_cast<unsigned int>(blue) << 16 | static_cast<unsigned int>(opacity) << 24) {}

  constexpr unsigned int GetPackedColor() const noexcept { return packed_; }
  constexpr unsigned int GetRed() const noexcept { return packed_ & 0xffu; }
  constexpr unsigned int GetGreen() const noexcept { return packed_ >> 8 & 0xffu; }
  constexpr unsigned int GetBlue() const noexcept { return packed_ >> 16 & 0xffu; }
  constexpr unsigned int GetOpacity() const noexcept { return packed_ >> 24; }

  friend constexpr bool operator==(VXColor a, VXColor b) noexcept { return a.packed_ == b.packed_; }
  friend constexpr bool operator!=(VXColor a, VXColor b) noexcept { return !(a == b); }

 private:
  unsigned int packed_ = 0xff000000u;
};

}  // namespace VXCore

#endif
