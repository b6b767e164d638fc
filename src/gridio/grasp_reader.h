// The reader of GRASP (DELPHI) potential maps that VXReadGrid uses.
#ifndef VXGRID_SRC_GRIDIO_GRASP_READER_H
#define VXGRID_SRC_GRIDIO_GRASP_READER_H

#include <cstddef>  // for size_t

#include "vxgrid/toolkit/host/streams.h"

namespace VXCore::detail {

/// Points along each axis of the one box that the format knows.
inline constexpr unsigned int grasp_dim = 65;
inline constexpr std::size_t grasp_size = std::size_t{grasp_dim} * grasp_dim * grasp_dim;

/// Reads a map: `values` takes grasp_size floats, x fastest, `scale` the points per Angstrom, `mid`
/// the three coordinates of the box's centre. It cannot fail: what a short file lacks is zero.
void read_grasp_map(VXHost::vxistream& in, float* values, float* scale, float* mid);

}  // namespace VXCore::detail

#endif
