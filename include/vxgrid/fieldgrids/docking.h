/// \file
/// Smoothed maps of what a protein offers to atoms of a ligand, one for each kind of probe.
#ifndef VXGRID_FIELDGRIDS_DOCKING_H
#define VXGRID_FIELDGRIDS_DOCKING_H

#include <vector>  // for vector

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Makes a stack of maps around `count` atoms: plane p, N = xdim*ydim*zdim floats from p*N on, is
/// the field that a probe atom of radius probe_radii[p] feels at each point.
///
/// The first letter of an atom's name, behind a leading blank and the digits 1, 2, 3, 4 (each once,
/// in that order), gives its `type`, which is stored in the record, and its radius r in Angstrom:
/// C 0, 1.7; H 1, 1.0; O 2, 1.6; N 3, 1.65; F 5, 1.2; anything else 4, 1.9. The box of the atoms,
/// each widened by its radius, is centred in the grid, and dim = trunc((length + 15)/spacing).
///
/// Atoms and probes are Gaussians of the prefactor P = sqrt(0.4265795397863698*prefactor_scale),
/// with the widths a and b that stand in for spheres of their radii (vi_assign_gwid_from_rad_pre).
/// Of two, w = a*b/(a + b) is the width of their overlap by distance. With c = r + probe radius,
/// the distance of contact, an atom at the distance d adds
///
///     K * (1 + w*(d^2 - c^2)) * exp(-w*d^2)
///
/// where `flag` set means K = exp(w*c^2): each atom is worth at most 1, at contact, and less than 0
/// nearer than sqrt(c^2 - 1/w). Without `flag` K = P/(a + b)^(3/2), which leaves the depth of the
/// overlap integral in. An atom reaches to where K*exp(-w*d^2) is 0.001 (vi_gauss_grid_tegs, type
/// 1). Probe radii that are not above 0 leave their plane at 0.
///
/// With `add_potential` one more plane follows: the density of the atoms, the sum of
/// P*exp(-a'*d^2) out to 0.001 of height, divided by its largest value. a' belongs to the radius r
/// + `extra`, so that 1.4 shows the protein as far as water sees it, and 0 the atoms as they are;
/// atoms for which that is not above 0 are left out.
///
/// `floats` is a fresh malloc block, an earlier one is freed; `integers` is left alone, whatever
/// its size. Gives 1, or 0 with the record as it was for null or no atoms, no planes, null
/// `probe_radii` with probes, a spacing or prefactor_scale not above 0, scales for which K fits no
/// float, and a stack of more than 2^31 - 1 values or without memory.
VXGRID_API int vx_make_docking_grid(GridStruct* grid, PdbStruct* atoms, int count,
                                    float* probe_radii, int probes, float spacing,
                                    float prefactor_scale, float extra, int add_potential,
                                    int flag);

/// exp(-x) for x = 0, 0.01, 0.02, ... below `planes`, by which a host weighs the values of maps
/// without taking exponentials: 100 values for each unit of x, of which the first is exp(-x) and
/// each next one 0.99005 times the one before, then a single 0 for all larger x. The relative error
/// is below 2e-5 up to x = 87, where single precision begins to run out; from 104 on there is
/// nothing left, and the table ends there. Only the 0 for `planes` below 1.
VXGRID_API std::vector<float> docking_weight_table(int planes);

}  // namespace VXCore

#endif
