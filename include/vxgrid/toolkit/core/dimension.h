/// \file
/// The rule that turns the extent of a box and a spacing into a number of grid points.
#ifndef VXGRID_TOOLKIT_CORE_DIMENSION_H
#define VXGRID_TOOLKIT_CORE_DIMENSION_H

#include <cstdint>  // for int64_t

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Points along one axis: (extent + 1e-5)/spacing + 1 in single precision, truncated. The 1e-5
/// keeps an extent that is a whole number of spacings from losing its last point to rounding.
///
/// The result has to lie within +-16777216, the whole numbers that a float tells apart. Otherwise
/// (a NaN counts as too great) a Warning "Unable to make dimension from extent because of ..." goes
/// out, the dimension is left alone and the result is false.
VXGRID_API bool dimension_from_extent(float extent, float spacing, std::int64_t& dimension);

/// The rule for three axes at once. False also, without a message, when a dimension is negative;
/// then, as after a warning, nothing is written.
VXGRID_API bool dimensions_from_extents(const float* extents, float spacing,
                                        unsigned int* dimensions);

}  // namespace VXCore

#endif
