/// \file
/// The dielectric of a solute and its solvent on the edges of a lattice, for finite-difference
/// electrostatics.
///
/// Edge e of an axis leads from lattice point e, its base, to the next one along that axis. A mask
/// says where the solute is: 1 inside, 0 outside, with the surface at 0.5. A host fills the three
/// arrays from the mask (vi_grid_to_eps), finds the edges that the surface crosses (vi_find_cuts_f,
/// vi_find_cuts_i), moves the crossings to where the surface really is (vi_vert_repo_grid), and
/// corrects the edges that they lie on (vi_correct_eps_with_cuts).
#ifndef VXGRID_FIELDGRIDS_DIELECTRIC_H
#define VXGRID_FIELDGRIDS_DIELECTRIC_H

#include <vector>  // for vector

#include "vxgrid/fieldgrids/surface_records.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Dielectrics on the edges of a lattice: three arrays with one entry for each point. They stay the
/// caller's; a null one is passed over.
struct Dstruct {
  float* x_edges = nullptr;
  float* y_edges = nullptr;
  float* z_edges = nullptr;
};

/// Gives the three edges of each point the dielectric (inner - outer)*m + outer, in single
/// precision, where m is the point's float: `inner` for 1, `outer` for 0, linear between. Does
/// nothing on a record without points or floats.
VXGRID_API void vi_grid_to_eps(GridStruct g, Dstruct eps, float inner, float outer);

/// Finds the edges whose ends lie on different sides of 0.5, one below and the other not, by the
/// floats of a record. `cuts` becomes the middles of these edges and `count` (may be null) their
/// number: for each point from index 0 to dim-2 on all axes, x fastest, the edges along x, y and z
/// in turn, so that those within the last planes are not looked at. A value that is no number is
/// not below. None for a record without points or floats. The first argument is not used.
VXGRID_API void vi_find_cuts_f(int unused, GridStruct g, std::vector<PntStruct>& cuts, int* count);

/// The same by the integers: those below 1 are below 0.5.
VXGRID_API void vi_find_cuts_i(int unused, GridStruct g, std::vector<PntStruct>& cuts, int* count);

/// Corrects the edges on which surface points lie: the vertices when `vertex_count` is at least 1,
/// otherwise the cuts.
///
/// In spacings from the first lattice point, with f the place of a surface point on an axis, its
/// cell is trunc(f + 0.0001) and t = f - cell; the axis of the largest t (the first of equal ones)
/// names the edge. Which way the surface faces is read from the mask, the floats of the record or,
/// where there are none, its integers: outwards, away from the base, when the base is not below 0.5
/// and the other end is. Then the edge runs through the solute for t of its length and through the
/// solvent for the rest, and the dielectric that gives the flux along it, the harmonic mean, is
///
///     inner*outer / ((1 - t)*inner + t*outer)
///
/// and with the solvent first, inner*outer / ((1 - t)*outer + t*inner). With `flag` the edge is
/// simply given the dielectric of its middle: `inner` or `outer`, that of its base when the surface
/// lies within 0.0001 of the middle.
///
/// Of several points on an edge the last one holds. Passed over are points beyond the lattice and
/// on edges whose ends lie on the same side of 0.5. Nothing is done without points, without a mask
/// or with a spacing not above 0. An `inverse_spacing` of 0 stands for 1/spacing.
VXGRID_API void vi_correct_eps_with_cuts(Dstruct eps, GridStruct g, float inner, float outer,
                                         VrtStruct* vertices, int vertex_count, PntStruct* cuts,
                                         int cut_count, int flag);

}  // namespace VXCore

#endif
