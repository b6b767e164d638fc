/// \file
/// Progress reports of long calculations.
#ifndef VXGRID_TOOLKIT_CORE_TRACER_H
#define VXGRID_TOOLKIT_CORE_TRACER_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Derive from it to hear how far a calculation is.
class VXGRID_API VXTracerBase {
 public:
  virtual ~VXTracerBase();
  virtual void Report(unsigned int current, unsigned int total) = 0;
};

/// Hears and says nothing.
class VXGRID_API VXNullTracer : public VXTracerBase {
 public:
  void Report(unsigned int current, unsigned int total) override;
};

}  // namespace VXCore

#endif
