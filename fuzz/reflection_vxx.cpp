// Feeds arbitrary bytes to the reader of VXX reflection sets.
#include "reflection_probe.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace VXCore;
  VXThrow.SetSink([](VXErrorLevel, const std::string&) {});
  VXReflection set;
  vxisstream in(reinterpret_cast<const char*>(data), size);
  const bool is_read = VXReadReflectionVXX(in, set) == 0;
  // Once more into what is there, as a caller may.
  vxisstream again(reinterpret_cast<const char*>(data), size);
  VXReadReflectionVXX(again, set);
  if (is_read && set.GetCount() <= 1000) probe_round_trip(set);
  if (set.GetCount() <= 1000) probe_writers(set);
  return 0;
}
