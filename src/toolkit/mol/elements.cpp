// Symbols and kinds of the chemical elements, from gemmi's table.
#include "vxgrid/toolkit/mol/elements.h"

#include <gemmi/elem.hpp>

namespace VXMol {
namespace {

constexpr unsigned int last_element = 118;

gemmi::El element_of(unsigned int atomic_number) {
  return static_cast<gemmi::El>(atomic_number <= last_element ? atomic_number : 0);
}

}  // namespace

const char* VXGetAtomicSymbol(unsigned int atomicNumber) {
  return gemmi::element_name(element_of(atomicNumber));
}

unsigned int VXGetAtomicNum(const std::string& symbol) {
  if (symbol.empty() || symbol.size() > 2) return 0;
  return static_cast<unsigned int>(gemmi::Element(symbol).atomic_number());
}

bool VXIsMetal(unsigned int atomicNumber) {
  return gemmi::is_metal(element_of(atomicNumber));
}

float VXGetCovalentRadius(unsigned int atomicNumber) {
  return gemmi::covalent_radius(element_of(atomicNumber));
}

}  // namespace VXMol
