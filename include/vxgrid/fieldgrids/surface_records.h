/// \file
/// Plain records of spheres and of points on their surface.
#ifndef VXGRID_FIELDGRIDS_SURFACE_RECORDS_H
#define VXGRID_FIELDGRIDS_SURFACE_RECORDS_H

namespace VXCore {

/// A point on an edge of a lattice, Angstrom.
struct PntStruct {
  float x = 0;
  float y = 0;
  float z = 0;
};
static_assert(sizeof(PntStruct) == 12, "arrays of the record are read as packed words");

/// A vertex of a surface, Angstrom; what else a host keeps about it is carried along unread.
struct VrtStruct {
  float x = 0;
  float y = 0;
  float z = 0;
  float carried[8] = {};
};
static_assert(sizeof(VrtStruct) == 44, "arrays of the record are read as packed words");

/// A sphere: centre and radius, Angstrom.
struct SphereStruct {
  float x = 0;
  float y = 0;
  float z = 0;
  float r = 0;
};
static_assert(sizeof(SphereStruct) == 16, "arrays of the record are read as packed words");

}  // namespace VXCore

#endif
