/// \file
/// Moving the vertices of a surface to where the surface is.
///
/// The surface is that of the union of spheres, each of the radius r + probe in Angstrom: with the
/// radius of a solvent molecule as the probe, the surface that the solvent can reach with its
/// centre. Spheres with a coordinate or radius that is not finite, and those whose r + probe is not
/// above 0, are left out; where none is left, and for a vertex that is not finite, nothing moves.
#ifndef VXGRID_FIELDGRIDS_SURFACE_VERTICES_H
#define VXGRID_FIELDGRIDS_SURFACE_VERTICES_H

#include "vxgrid/fieldgrids/surface_records.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Moves surface points along the edges of a lattice, onto the surface: the vertices when
/// `vertex_count` is at least 1, otherwise the cuts, as vi_correct_eps_with_cuts takes them.
///
/// Each point lies on the edge that vi_correct_eps_with_cuts finds for it, and goes to where that
/// edge, a straight piece of one spacing, passes through the surface: to the nearest such place
/// when there are several. A vertex whose edge does not meet the surface, or that lies on no edge
/// of the lattice, goes as in vi_vert_repo_Free; a cut, which has to be on an edge, stays.
///
/// `out[out_count]`, which may be null, gets the new places of the first points. A `mode` of 0
/// moves the points themselves too; any other leaves them where they are.
VXGRID_API void vi_vert_repo_grid(int mode, GridStruct g, VrtStruct* vertices, int vertex_count,
                                  PntStruct* cuts, int cut_count, SphereStruct* spheres,
                                  int sphere_count, PntStruct* out, int out_count, float probe);

/// The same without a lattice. With D_i = |p - c_i| - R_i the distance of a vertex p from sphere i,
/// and i the sphere of the smallest D_i (the first of equal ones), the vertex moves along the line
/// from c_i through p: to c_i + R_i*(p - c_i)/|p - c_i|, which for a vertex outside all spheres is
/// the nearest point of the surface, and from there on outwards to the first place that is inside
/// no sphere. A vertex at the centre c_i itself has no such line: "zero dist encountered\n" is
/// printed, and it goes along +x.
VXGRID_API void vi_vert_repo_Free(int mode, GridStruct g, VrtStruct* vertices, int vertex_count,
                                  PntStruct* cuts, int cut_count, SphereStruct* spheres,
                                  int sphere_count, PntStruct* out, int out_count, float probe);

/// Moves each vertex onto the nearest of the `points` of a surface that lies within `a` Angstrom of
/// it (the first of equally near ones), and stores in `moved`, which may be null, how many vertices
/// found one. The points are looked up by a proximity grid (vx_make_proximity_grid) of the spacing
/// `b`, made wider where it would be fine beyond use; results do not depend on it.
///
/// When there is no such grid (`a` below 0 or `b` not above 0, no points, coordinates that are not
/// finite, no memory) "danger, kit marlow!\n" is printed and nothing moves. No vertices are no
/// reason for that.
VXGRID_API void vi_vert_repo_exhaust(VrtStruct* vertices, int vertex_count, PntStruct* points,
                                     int point_count, float a, float b, int* moved);

}  // namespace VXCore

#endif
