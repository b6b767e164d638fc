// Feeds arbitrary bytes to the reader of HKL reflection lists.
#include "reflection_probe.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  probe_text_reader(VXCore::VXReadReflectionHKL, data, size);
  return 0;
}
