/// \file
/// The flat accessor layer over VXBrioGrid: getters, setters and queries that answer by int.
///
/// All take the grid last and give 1 on success and 0 on failure unless said otherwise. The
/// selected field is number multiple-1 (VXBrioGrid::GetFloatsMultiple, GetIntegersMultiple); where
/// there is no such field, what reads or writes it gives 0 (or null).
#ifndef VXGRID_GRID_BRIO_FLAT_H
#define VXGRID_GRID_BRIO_FLAT_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;

/// \name Dimensions, in points along the axis
/// Setting reallocates both stores, and gives 0 for a negative number.
///@{
VXGRID_API int vx_get_grid_x_dimension(int* dim, const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_y_dimension(int* dim, const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_z_dimension(int* dim, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_x_dimension(int dim, VXBrioGrid& grid);
VXGRID_API int vx_set_grid_y_dimension(int dim, VXBrioGrid& grid);
VXGRID_API int vx_set_grid_z_dimension(int dim, VXBrioGrid& grid);
///@}

/// \name Centre of the lattice, Angstrom
///@{
VXGRID_API int vx_get_grid_x_midpoint(float* mid, const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_y_midpoint(float* mid, const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_z_midpoint(float* mid, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_x_midpoint(float mid, VXBrioGrid& grid);
VXGRID_API int vx_set_grid_y_midpoint(float mid, VXBrioGrid& grid);
VXGRID_API int vx_set_grid_z_midpoint(float mid, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_x_midpoint_set(const VXBrioGrid& grid);
VXGRID_API int vx_is_grid_y_midpoint_set(const VXBrioGrid& grid);
VXGRID_API int vx_is_grid_z_midpoint_set(const VXBrioGrid& grid);
///@}

/// \name Distance of neighbouring points, Angstrom
///@{
VXGRID_API int vx_get_grid_spacing(float* spacing, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_spacing(float spacing, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_spacing_set(const VXBrioGrid& grid);
///@}

/// \name Title
/// The getter copies the title and its closing zero with no bound on the length.
///@{
VXGRID_API int vx_get_grid_name(char* name, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_name(const char* name, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_name_set(const VXBrioGrid& grid);
///@}

/// \name Orientation, nine floats, row by row
/// The getter gives 0 and leaves the matrix alone when none is set.
///@{
VXGRID_API int vx_get_grid_orientation(float* matrix, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_orientation(const float* matrix, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_orientation_set(const VXBrioGrid& grid);
///@}

/// \name Values of the selected field
/// Whole fields hold GetSize() values, x fastest. An element index below 0 or above the size gives
/// 0. An index equal to the size passes, as it always has: it reads as 0 and what is written there
/// is dropped. The length is the size times the number of fields in the store, at most 2^31 - 1.
///@{
VXGRID_API int vx_get_grid_floats(float* values, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_floats(const float* values, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_floats_set(const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_floats_element(float* value, int i, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_floats_element(float value, int i, VXBrioGrid& grid);
VXGRID_API int vx_get_grid_floats_length(const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_floats_multiple(int count, VXBrioGrid& grid);

VXGRID_API int vx_get_grid_integers(int* values, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_integers(const int* values, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_integers_set(const VXBrioGrid& grid);
VXGRID_API int vx_get_grid_integers_element(int* value, int i, const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_integers_element(int value, int i, VXBrioGrid& grid);
VXGRID_API int vx_get_grid_integers_length(const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_integers_multiple(int count, VXBrioGrid& grid);

/// Values of the selected field, null when there is none; valid until the grid is resized.
VXGRID_API float* vi_grid_floats(VXBrioGrid& grid);
VXGRID_API const float* vi_grid_floats(const VXBrioGrid& grid);
VXGRID_API int* vi_grid_integers(VXBrioGrid& grid);
VXGRID_API const int* vi_grid_integers(const VXBrioGrid& grid);

/// All fields of the store to 0.
VXGRID_API int vx_clear_grid_floats(VXBrioGrid& grid);
VXGRID_API int vx_clear_grid_integers(VXBrioGrid& grid);

/// The six outer planes of float field 0 to 0 (VXClearGridBoundary).
VXGRID_API int vx_clear_grid_boundary(VXBrioGrid& grid);
///@}

/// \name Reentrant flags: bit 0 x, bit 1 y, bit 2 z
///@{
VXGRID_API int vx_grid_reentrant(const VXBrioGrid& grid);    ///< the three bits
VXGRID_API int vx_grid_x_reentrant(const VXBrioGrid& grid);  ///< 1 or 0
VXGRID_API int vx_grid_y_reentrant(const VXBrioGrid& grid);
VXGRID_API int vx_grid_z_reentrant(const VXBrioGrid& grid);
VXGRID_API int vx_set_grid_reentrant(VXBrioGrid& grid);  ///< switches all three on
/// Switches on the axis of 'x', 'y' or 'z', in either case; gives the flags.
VXGRID_API int vx_set_grid_reentrant_direction(char axis, VXBrioGrid& grid);
///@}

/// \name Unit cell (Angstrom and degrees, with the grid intervals along its edges), space group
///@{
/// Fills a, b, c, alpha, beta, gamma.
VXGRID_API int vx_grid_get_unitcell(float* cell, const VXBrioGrid& grid);
/// VXBrioGrid::SetUnitCell; a negative interval count gives 0.
VXGRID_API int vx_grid_set_unitcell(float a, float b, float c, float alpha, float beta, float gamma,
                                    int nx, int ny, int nz, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_unitcell_set(const VXBrioGrid& grid);
VXGRID_API int vx_grid_get_spacegroup(const VXBrioGrid& grid);  ///< the number, 0 for none
VXGRID_API int vx_grid_set_spacegroup(int number, VXBrioGrid& grid);
VXGRID_API int vx_is_grid_spacegroup_set(const VXBrioGrid& grid);
///@}

/// \name Oriented coordinates
/// Points are n triples x, y, z, changed in place. Transforming takes lattice coordinates to
/// space, p' = M(p - c) + c, with the grid's orientation as M and its mid as c; untransforming is
/// its inverse.
///@{
/// 0 when the grid has no orientation.
VXGRID_API int vx_transform_coordinates_by_grid_orientation(float* xyz, int n,
                                                            const VXBrioGrid& grid);
VXGRID_API int vx_untransform_coordinates_by_grid_orientation(float* xyz, int n,
                                                              const VXBrioGrid& grid);
/// A null centre means the origin.
VXGRID_API int vx_transform_coordinates_by_orientation_matrix(float* xyz, int n,
                                                              const float* matrix,
                                                              const float* center);
/// 0, with the points as they were, when the determinant in single precision is exactly 0.
VXGRID_API int vx_untransform_coordinates_by_orientation_matrix(float* xyz, int n,
                                                                const float* matrix,
                                                                const float* center);

/// The outermost eight lattice points in space, as 24 floats: (lo,lo,lo), (hi,lo,lo), (lo,hi,lo),
/// (hi,hi,lo), and the same four at the upper z.
VXGRID_API int vx_get_corners_of_grid(float* corners, const VXBrioGrid& grid);
///@}

/// Reports through VXThrow at Info which items of the grid are set, one message a line. Gives 1.
VXGRID_API int vx_check_grid(const VXBrioGrid& grid);
/// The same report.
VXGRID_API int vx_print_grid_report(const VXBrioGrid& grid);

}  // namespace VXCore

#endif
