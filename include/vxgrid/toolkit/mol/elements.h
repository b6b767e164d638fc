/// \file
/// Symbols and kinds of the chemical elements.
#ifndef VXGRID_TOOLKIT_MOL_ELEMENTS_H
#define VXGRID_TOOLKIT_MOL_ELEMENTS_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

/// "Fe" for 26, "X" for 0 and for numbers that no element has.
VXGRID_API const char* VXGetAtomicSymbol(unsigned int atomicNumber);
/// 26 for "Fe" in any letter case; D counts as hydrogen. 0 for a text that is no symbol.
VXGRID_API unsigned int VXGetAtomicNum(const std::string& symbol);
/// True for the metals, from lithium on, with germanium and antimony among them.
VXGRID_API bool VXIsMetal(unsigned int atomicNumber);
/// Covalent radius in Angstrom (Cordero et al., Dalton Trans. 2008, 2832, doi 10.1039/b801115j;
/// carbon 0.73).
VXGRID_API float VXGetCovalentRadius(unsigned int atomicNumber);

}  // namespace VXMol

#endif
