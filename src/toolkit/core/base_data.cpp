// Hashed type identifiers, and the stored types that live in the library.
#include "vxgrid/toolkit/core/base_data.h"

namespace VXCore {

TypeId hashed_type_id(const char* mangled_name) {
  // FNV-1a, 64 bits (Fowler, Noll and Vo; draft-eastlake-fnv).
  TypeId hash = 14695981039346656037ull;
  for (const char* c = mangled_name; *c; ++c) {
    hash ^= static_cast<unsigned char>(*c);
    hash *= 1099511628211ull;
  }
  return hash | (TypeId{1} << 63);
}

VXBaseData::~VXBaseData() = default;

template class VXBaseDataT<bool>;
template class VXBaseDataT<int>;
template class VXBaseDataT<unsigned int>;
template class VXBaseDataT<float>;
template class VXBaseDataT<double>;
template class VXBaseDataT<std::string>;
template class VXBaseDataT<std::vector<float>>;
template class VXBaseDataT<std::vector<unsigned int>>;
template class VXBaseDataT<std::vector<int>>;
template class VXBaseDataT<std::vector<double>>;
template class VXBaseDataT<std::vector<std::string>>;
template class VXBaseDataT<std::array<float, 3>>;
template class VXBaseDataT<std::array<float, 6>>;

}  // namespace VXCore
