/// \file
/// What every floor needs of the toolkit, with the names of its sibling namespaces brought into
/// VXCore. The storage folders (vxb, json, pipe) are included where they are used.
#ifndef VXGRID_TOOLKIT_NAMES_H
#define VXGRID_TOOLKIT_NAMES_H

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/bit_vector.h"
#include "vxgrid/toolkit/core/color.h"
#include "vxgrid/toolkit/core/dimension.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/half_float.h"
#include "vxgrid/toolkit/core/host_grids.h"
#include "vxgrid/toolkit/core/iterators.h"
#include "vxgrid/toolkit/core/scratch.h"
#include "vxgrid/toolkit/core/stopwatch.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/core/tracer.h"
#include "vxgrid/toolkit/core/type_ids.h"
#include "vxgrid/toolkit/core/value_buffer.h"
#include "vxgrid/toolkit/host/files.h"
#include "vxgrid/toolkit/host/streams.h"
#include "vxgrid/toolkit/host/version.h"
#include "vxgrid/toolkit/legacy/eigen3.h"
#include "vxgrid/toolkit/legacy/messages.h"
#include "vxgrid/toolkit/legacy/numeric.h"
#include "vxgrid/toolkit/mol/conformers.h"
#include "vxgrid/toolkit/mol/elements.h"
#include "vxgrid/toolkit/mol/formal_charges.h"
#include "vxgrid/toolkit/mol/geometry.h"
#include "vxgrid/toolkit/mol/hydrogens.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/molecule_file.h"
#include "vxgrid/toolkit/mol/pdb_data.h"
#include "vxgrid/toolkit/mol/radii.h"
#include "vxgrid/toolkit/mol/residue.h"
#include "vxgrid/toolkit/mol/subset.h"

namespace VXCore {

using VXHost::VXCloseIStream;
using VXHost::vxendl;
using VXHost::vxerr;
using VXHost::VXFileTempDirectory;
using VXHost::VXGetRegisteredVersions;
using VXHost::vxifstream;
using VXHost::vxisstream;
using VXHost::vxistream;
using VXHost::vxofstream;
using VXHost::VXOpenIStream;
using VXHost::VXOpenOStream;
using VXHost::vxosstream;
using VXHost::vxostream;
using VXHost::VXRegisterVersion;
using VXHost::vxstream;
using VXHost::VXVersion;
using VXHost::VXVersionFunction;

using VXMol::VXAddPDBData;
using VXMol::VXAssignBondiVdWRadii;
using VXMol::VXAssignFormalCharges;
using VXMol::VXAtomBase;
using VXMol::VXAtomGetResidue;
using VXMol::VXAtomIsInResidue;
using VXMol::VXAtomSetResidue;
using VXMol::VXBondBase;
using VXMol::VXConfBase;
using VXMol::VXGetAtomicNum;
using VXMol::VXGetAtomicSymbol;
using VXMol::VXGetBondiVdWRadius;
using VXMol::VXGetCenterAndExtents;
using VXMol::VXGetCenterOfMass;
using VXMol::VXGetCovalentRadius;
using VXMol::VXGetFileExtension;
using VXMol::VXGetMMCIFData;
using VXMol::VXGetPDBData;
using VXMol::VXGetPDBDataPairs;
using VXMol::VXGetResidueAtomsImpl;
using VXMol::VXGetResiduesImpl;
using VXMol::VXGetResolutionCIF;
using VXMol::VXGraphMol;
using VXMol::VXHasMMCIFData;
using VXMol::VXHasResidue;
using VXMol::VXHasResidues;
using VXMol::VXIsMetal;
using VXMol::VXMCMol;
using VXMol::VXMCMolBase;
using VXMol::VXMolBase;
using VXMol::VXParseSymmetryCif;
using VXMol::VXPDBDataPair;
using VXMol::VXReadMolecule;
using VXMol::VXReadMoleculeText;
using VXMol::VXResidue;
using VXMol::VXRotate;
using VXMol::VXSameResidue;
using VXMol::VXSetMMCIFData;
using VXMol::VXSetPDBData;
using VXMol::VXSubsetMol;
using VXMol::VXSuppressHydrogens;
using VXMol::VXTranslate;
using VXMol::VXWriteMolecule;

using VXBrioMol::eigen_solve_3_by_3;
using VXBrioMol::get_roots_3;
using VXBrioMol::vi_exp_f;
using VXBrioMol::vi_fclose;
using VXBrioMol::vi_fopen;
using VXBrioMol::vi_IsZero;
using VXBrioMol::vi_nint;
using VXBrioMol::vi_sindex;
using VXBrioMol::vi_warning;
using VXBrioMol::vi_warning_print;
using VXBrioMol::vx_end_position_of_number_in_string;
using VXBrioMol::vx_free;
using VXBrioMol::vx_get_box_size;
using VXBrioMol::vx_make_rmat2;
using VXBrioMol::vx_malloc;
using VXBrioMol::vx_number_of_numbers_in_a_string;
using VXBrioMol::vx_printf;
using VXBrioMol::vx_quaternions_to_rotation_matrix;
using VXBrioMol::vx_rotation_matrix_to_quaternions;

}  // namespace VXCore

#endif
