// Progress reports.
#include "vxgrid/toolkit/core/tracer.h"

namespace VXCore {

VXTracerBase::~VXTracerBase() = default;
void VXNullTracer::Report(unsigned int, unsigned int) {}

}  // namespace VXCore
