// Feeds arbitrary bytes to the reader of PHS phase files.
#include "reflection_probe.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  probe_text_reader(VXCore::VXReadReflectionPHS, data, size);
  return 0;
}
