/// \file
/// A list of Gaussians as the moments take it: its terms, and the volume that each one counts with.
#ifndef VXGRID_SRC_GAUSSIAN_SIGNED_VOLUME_H
#define VXGRID_SRC_GAUSSIAN_SIGNED_VOLUME_H

#include <cmath>    // for fabs
#include <cstddef>  // for size_t
#include <span>     // for span

#include "vxgrid/gaussian/gsphere.h"

namespace VXCore::detail {

/// The terms of a call, none for a null pointer or a count that is not above 0.
inline std::span<const Gsphere> term_span(int count, const Gsphere* terms) {
  if (!terms || count <= 0) return {};
  return {terms, static_cast<std::size_t>(count)};
}

/// An overlap of an even number of atoms, which inclusion and exclusion subtracts.
inline bool is_subtracted(const Gsphere& term) {
  return term.level % 2 != 0;
}

/// |volume|, negated where the level is odd: the same for series that store the sign and for those
/// that do not.
inline float parity_volume(const Gsphere& term) {
  const float size = std::fabs(term.volume);
  return is_subtracted(term) ? -size : size;
}

/// The volume as it is, made negative where the level is odd.
inline float signed_volume(const Gsphere& term) {
  return is_subtracted(term) ? -std::fabs(term.volume) : term.volume;
}

}  // namespace VXCore::detail

#endif
