/// \file
/// The written table of type identifiers: one constant per class and per type of tagged data.
///
/// They are constants and never addresses of statics, so that the library and its callers agree
/// whatever the visibility of their symbols is. A number that is once given is never used again.
#ifndef VXGRID_TOOLKIT_CORE_TYPE_IDS_H
#define VXGRID_TOOLKIT_CORE_TYPE_IDS_H

#include <cstdint>  // for uint64_t

namespace VXCore {

/// What `GetDataType` answers and `IsDataType` asks for.
using TypeId = std::uint64_t;

/// Identifiers of classes, as `VXBase::GetDataType` gives them.
namespace type_ids {

inline constexpr TypeId base = 0x0001;
inline constexpr TypeId container = 0x0002;

inline constexpr TypeId grid_abstract_base = 0x0010;
inline constexpr TypeId grid_base = 0x0011;
inline constexpr TypeId fixed_grid_float = 0x0012;
inline constexpr TypeId fixed_grid_int = 0x0013;
inline constexpr TypeId grid_float = 0x0014;
inline constexpr TypeId grid_int = 0x0015;
inline constexpr TypeId fixed_multi_grid_float = 0x0016;
inline constexpr TypeId fixed_multi_grid_int = 0x0017;
inline constexpr TypeId multi_grid_float = 0x0018;
inline constexpr TypeId multi_grid_int = 0x0019;

inline constexpr TypeId scalar_grid = 0x0020;
inline constexpr TypeId skew_grid = 0x0021;
inline constexpr TypeId brio_grid = 0x0022;
inline constexpr TypeId ref_grid_ptr = 0x0023;

inline constexpr TypeId mol_base = 0x0030;
inline constexpr TypeId graph_mol = 0x0031;
inline constexpr TypeId mc_mol_base = 0x0032;
inline constexpr TypeId mc_mol = 0x0033;
inline constexpr TypeId conf_base = 0x0034;
inline constexpr TypeId atom_base = 0x0035;
inline constexpr TypeId bond_base = 0x0036;
inline constexpr TypeId group_base = 0x0037;
inline constexpr TypeId residue = 0x0038;

inline constexpr TypeId reflection = 0x0040;
inline constexpr TypeId gaussian = 0x0050;
inline constexpr TypeId gaussian_container = 0x0051;

}  // namespace type_ids

/// Identifiers of the stored types of tagged data, as `VXBaseData::GetDataType` gives them.
/// Types that are not listed get a hash with the highest bit set and never meet these.
namespace data_ids {

inline constexpr TypeId boolean = 0x1001;
inline constexpr TypeId integer = 0x1002;
inline constexpr TypeId unsigned_integer = 0x1003;
inline constexpr TypeId single_float = 0x1004;
inline constexpr TypeId double_float = 0x1005;
inline constexpr TypeId text = 0x1006;

inline constexpr TypeId vector_float = 0x1010;
inline constexpr TypeId vector_unsigned = 0x1011;
inline constexpr TypeId vector_int = 0x1012;
inline constexpr TypeId vector_double = 0x1013;
inline constexpr TypeId vector_text = 0x1014;
inline constexpr TypeId array_3_float = 0x1015;
inline constexpr TypeId array_6_float = 0x1016;

inline constexpr TypeId scalar_grid = 0x1020;
inline constexpr TypeId skew_grid = 0x1021;
inline constexpr TypeId brio_grid = 0x1022;
inline constexpr TypeId vector_scalar_grid = 0x1023;
inline constexpr TypeId vector_skew_grid = 0x1024;
inline constexpr TypeId vector_brio_grid = 0x1025;

inline constexpr TypeId graph_mol = 0x1030;
inline constexpr TypeId residue = 0x1031;
inline constexpr TypeId unknown_vxb = 0x1040;

}  // namespace data_ids
}  // namespace VXCore

#endif
