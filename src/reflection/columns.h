// Doing one thing to all columns of a reflection set.
#ifndef VXGRID_SRC_REFLECTION_COLUMNS_H
#define VXGRID_SRC_REFLECTION_COLUMNS_H

#include "vxgrid/reflection/reflection_impl.h"

namespace VXCore {

template <class Visit>
void VXReflectionImpl::visit_columns(Visit&& visit) {
  for (IntColumn* column : {&h_, &k_, &l_, &centric_, &rfree_})
    visit(*column);
  for (FloatColumn* column : {&phase_, &phase_calc_, &fobs_, &fcalc_, &sigma_, &fom_, &hla_, &hlb_,
                              &hlc_, &hld_, &stolsq_, &fwt_, &fdelwt_, &phiwt_, &phidelwt_})
    visit(*column);
}

}  // namespace VXCore

#endif
