// Feeds arbitrary bytes as VXB records to an object of each class that has some; what comes out is
// written, and has to survive.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort
#include <string>   // for string

#include "vxgrid/gaussian/containers.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/serial/reflection_vxb.h"
#include "vxgrid/toolkit/names.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace {

using namespace VXCore;

VXBinaryIOHandler& handler() {
  static VXBinaryIOHandler made;
  static const bool is_filled = (VXInitReflectionHandlers(made), true);
  static_cast<void>(is_filled);
  return made;
}

// What records may not hold, an object that was read may have after all: one level or datum more.
bool write(const VXBase& object, std::string& bytes) {
  vxosstream out;
  if (!handler().WriteObject(out, object)) return false;
  bytes = out.str();
  return true;
}

template <class Object>
void survive(const std::string& bytes, std::string& again) {
  Object object;
  vxisstream in(bytes);
  if (handler().ReadObject(in, object) != VXBStatus::Success || !write(object, again)) std::abort();
}

// Written once, an object has lost what no grid keeps, a datum by the name of the placeholder.
template <class Object>
void round_trip(const char* bytes, std::size_t size) {
  Object object;
  vxisstream in(bytes, size);
  handler().ReadObject(in, object);
  std::string first;
  if (!write(object, first)) return;
  std::string second;
  survive<Object>(first, second);
  std::string third;
  survive<Object>(second, third);
  if (second != third) std::abort();
}

}  // namespace

// The first byte says of which class the object is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXThrow.SetSink([](VXErrorLevel, const std::string&) {});
  if (size == 0) return 0;
  const char* const bytes = reinterpret_cast<const char*>(data) + 1;
  --size;
  switch (data[0] % 8) {
    case 0:
      round_trip<VXScalarGrid>(bytes, size);
      break;
    case 1:
      round_trip<VXSkewGrid>(bytes, size);
      break;
    case 2:
      round_trip<VXBrioGrid>(bytes, size);
      break;
    case 3:
      round_trip<VXGaussian>(bytes, size);
      break;
    case 4:
      round_trip<VXGaussianContainer>(bytes, size);
      break;
    case 5:
      round_trip<VXReflection>(bytes, size);
      break;
    case 6:
      round_trip<VXMultiGrid<int>>(bytes, size);
      break;
    default:
      round_trip<VXContainer>(bytes, size);
      break;
  }
  return 0;
}
