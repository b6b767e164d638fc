/// \file
/// The library's own table of space groups, with the symmetry operators of each as matrices.
#ifndef VXGRID_CRYSTAL_SPACE_GROUPS_H
#define VXGRID_CRYSTAL_SPACE_GROUPS_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Values of sglibT::system.
namespace crystal_system {
inline constexpr int triclinic = 1;
inline constexpr int monoclinic = 2;
inline constexpr int orthorhombic = 3;
inline constexpr int tetragonal = 4;
inline constexpr int trigonal = 5;
inline constexpr int hexagonal = 6;
inline constexpr int cubic = 7;
}  // namespace crystal_system

/// One setting of a space group.
///
/// An operator is a 4 by 4 matrix, row by row, for row vectors of fractional coordinates: the
/// rotation in elements 0-2, 4-6 and 8-10, the translation (multiples of 1/12 in [0, 1)) in 12-14,
/// 1 in element 15. Operator 0 is the identity. The operators come as one block of the point
/// group, followed by the same block once more for each centring vector, in the same order; the one
/// row that does not do so is 1023. The first letter of the names tells the vectors, except in row
/// 1008, "B 1 1 m", which has (1/2, 1/2, 0).
struct sglibT {
  unsigned int number;      ///< 1 to 230; above 1000 for further settings of number modulo 1000.
  const char* short_name;   ///< Hermann-Mauguin symbol without blanks, "P212121".
  const char* long_name;    ///< The symbol with blanks between its parts, "P 21 21 21".
  int system;               ///< One of crystal_system.
  int op_count;             ///< Operators in use, 1 to 192.
  float matrices[268][16];  ///< The operators; zero beyond op_count.
};

/// Rows of sglib.
inline constexpr int space_group_count = 268;

/// All space groups and settings. The order has a meaning: of rows that share a number or a name
/// the first one is meant. Constant data, made from data/space_groups.txt when the library is
/// built; no initialiser runs for it, and any thread may read it.
extern VXGRID_API const sglibT sglib[space_group_count];

/// Row of `sglib` for a group number, or -1. A number that no row has is tried again modulo 1000,
/// so that 2003 finds 3.
VXGRID_API int find_space_group(unsigned int number);

/// Row of `sglib` for a long or short name, or -1. Letter case does not count; if no row agrees
/// blank for blank, blanks do not count either ("p1211" finds "P 1 21 1"). A name that is not found
/// is reported as the information message "sgname |name|".
VXGRID_API int find_space_group(const std::string& name);

}  // namespace VXCore

#endif
