// Feeds arbitrary bytes to the reader of structure-factor files in mmCIF.
#include "reflection_probe.h"
#include "vxgrid/reflection/cif.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  probe_text_reader(VXCore::VXReadReflectionCIF, data, size);
  return 0;
}
