/// \file
/// Which amplitude and phase make up a map: the map types and their names.
#ifndef VXGRID_REFLECTION_MAP_TYPES_H
#define VXGRID_REFLECTION_MAP_TYPES_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Map types, as the unsigned words that MakeMap and its kin take. Behind each type stand the
/// amplitude and phase of a map coefficient in terms of the columns of a VXReflection. The SigmaA
/// types read their amplitudes from the Hendrickson-Lattman columns A and B, where they are
/// carried.
namespace VXMTZMapType {
inline constexpr unsigned int Fo = 0;             ///< fobs, phase
inline constexpr unsigned int Fc = 1;             ///< fcalc, phase_calc
inline constexpr unsigned int TwoFoFc = 2;        ///< 2 fobs - fcalc, phase_calc
inline constexpr unsigned int FoFc = 3;           ///< fobs - fcalc, phase_calc
inline constexpr unsigned int ThreeFoTwoFc = 4;   ///< 3 fobs - 2 fcalc, phase_calc
inline constexpr unsigned int FiveFoThreeFc = 5;  ///< 5 fobs - 3 fcalc, phase_calc
inline constexpr unsigned int TwoFoFcSigmaA = 6;  ///< hla, phase (SigmaA amplitudes)
inline constexpr unsigned int FoFcSigmaA = 7;     ///< hlb, phase
inline constexpr unsigned int FoFo = 8;           ///< fobs squared, phase: a Patterson-like map
inline constexpr unsigned int FoFOM = 9;          ///< fom times fobs, phase
inline constexpr unsigned int Fwt = 10;           ///< fwt, phiwt
inline constexpr unsigned int Fdelwt = 11;        ///< fdelwt, phidelwt
inline constexpr unsigned int FcAuto = 12;        ///< for VXMTZ::MakeMap alone
inline constexpr unsigned int None = 13;          ///< no map
}  // namespace VXMTZMapType

/// The map type of a name, compared exactly: "Fo", "Fc", "2Fo-Fc", "Fo-Fc", "3Fo-2Fc", "5Fo-3Fc",
/// "2Fo-Fc(SigmaA)", "Fo-Fc(SigmaA)", "Fo*Fo", "Fo*FOM", "Fwt", "Fdelwt" give 0 to 11 and anything
/// else 13.
VXGRID_API unsigned int VXMTZMapTypeFromString(const std::string& name);

/// The name of a map type; empty for FcAuto and for values that are no map type. The name of
/// FoFcSigmaA comes out as "Fo-Fc (SigmaA)", with a blank, which VXMTZMapTypeFromString does not
/// take back.
VXGRID_API std::string VXMTZMapTypeToString(unsigned int maptype);

}  // namespace VXCore

#endif
