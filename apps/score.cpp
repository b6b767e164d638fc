// vxgrid score: a model against a map, as a whole and per residue.
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cmath>     // for isfinite
#include <optional>  // for optional

#include <CLI/CLI.hpp>

#include "command.h"
#include "density_input.h"
#include "length_option.h"
#include "model_file.h"
#include "reflection_input.h"
#include "vxgrid/density/model_density.h"
#include "vxgrid/density/real_space_scores.h"
#include "vxgrid/density/resolution.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

/// The scores of one residue; empty where a score could not be computed.
struct ResidueScore {
  VXResidue residue;
  std::size_t atoms = 0;
  std::optional<double> rscc;
  std::optional<double> rsr;
};

/// The library answers -1 for a correlation or residual that could not be computed; a residual
/// over an empty map is not a number.
std::optional<double> valid_score(double score) {
  if (score == -1.0 || !std::isfinite(score)) return std::nullopt;
  return score;
}

std::string score_text(const std::optional<double>& score) {
  return score ? format_text("%.3f", *score) : "-";
}

/// Gives atoms without a B-factor or occupancy the usual ones: the density of an atom at B = 0 is
/// infinitely sharp.
void fill_in_scatter_defaults(VXMolBase& model, const Console& console) {
  constexpr double bfactor = 20.0, occupancy = 1.0;
  unsigned int changed = 0;
  for (const VXAtomBase* atom : model.GetAtoms()) {
    const VXResidue& residue = VXAtomGetResidue(atom);
    if (residue.GetBFactor() == 0.0f || residue.GetOccupancy() == 0.0f) ++changed;
  }
  VXSetScatterDefaults(model, bfactor, occupancy, scatter_keep_bfactor | scatter_keep_occupancy);
  if (changed != 0)
    console.note(format_text("%u atoms had no B-factor or no occupancy; taken as %.0f and %.0f",
                             changed, bfactor, occupancy));
}

class ScoreCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("MODEL", model_file_, model_file_help)->required();
    app.add_option("MAP", map_file_, "Map file, or reflection file to make a map from")->required();
    app.add_option("-t,--type", type_, "Map coefficients, when MAP is a reflection file")
        ->check(CLI::IsMember(map_type_names()))
        ->capture_default_str();
    app.add_option("-c,--calc", calc_,
                   "Compare with the model's density in real space, or with the map of its\n"
                   "structure factors, for which MAP has to be a reflection file")
        ->check(CLI::IsMember({"density", "sf"}))
        ->capture_default_str();
    app.add_option("-r,--radius", radius_,
                   "Radius around atoms (Angstrom); the default follows from the resolution")
        ->check(is_length());
    app.add_flag("-p,--per-residue", per_residue_, "Score each residue as well");
    app.add_flag("-j,--json", json_, "Write JSON");
    app.footer(
        "Symmetry mates of the model take part in the calculated density. The copy in its own\n"
        "place is counted among them once more, so that per residue, where the calculated map\n"
        "covers the whole cell, residues that cross a cell face score low.");
  }

  bool run(const Console& console) override {
    VXGraphMol model;
    if (!read_model(model_file_, model, console)) return false;
    VXSkewGrid map;
    if (!read_density(map_file_, type_, map, console)) return false;
    if (!choose_radius(model, map, console)) return false;
    fill_in_scatter_defaults(model, console);
    std::optional<VXSkewGrid> calculated;
    if (calc_ == "sf") {
      if (!is_reflection_file(map_file_))
        return console.fail(map_file_ + ": --calc sf needs a reflection file");
      if (!make_model_map(map_file_, type_, model, calculated.emplace(), console)) return false;
    }

    const std::optional<double> rscc = valid_score(
        calculated ? VXRSCC(map, *calculated, model, radius_) : VXRSCC(map, model, radius_));
    const std::optional<double> rsr = valid_score(
        calculated ? VXRSR(map, *calculated, model, radius_) : VXRSR(map, model, radius_));
    std::vector<ResidueScore> residues;
    if (per_residue_) residues = score_residues(map, calculated, model, console);
    if (json_)
      write_json(console.out, rscc, rsr, residues);
    else
      write_table(console.out, rscc, rsr, residues);
    return rscc ? true : console.fail("the model could not be scored against this map");
  }

 private:
  bool choose_radius(const VXGraphMol& model, const VXSkewGrid& map, const Console& console) {
    if (radius_ > 0) return true;
    double resolution = 0;
    if (!(VXGetResolution(resolution, model) && resolution > 0) &&
        !(VXGetResolution(resolution, map) && resolution > 0))
      return console.fail(
          "neither the model nor the map tells a resolution to take the radius from; give "
          "--radius");
    radius_ = VXGetEDSRadius(resolution);
    console.note(format_text("radius %.3f A, from a resolution of %.2f A", radius_, resolution));
    return true;
  }

  std::vector<ResidueScore> score_residues(const VXSkewGrid& map,
                                           const std::optional<VXSkewGrid>& calculated,
                                           VXGraphMol& model, const Console& console) const {
    {
      ProgressLine progress(console, "RSCC: residue");
      if (calculated)
        VXResidueRSCC(map, *calculated, model, radius_, progress);
      else
        VXResidueRSCC(map, model, radius_, progress);
    }
    {
      ProgressLine progress(console, "RSR: residue");
      if (calculated)
        VXResidueRSR(map, *calculated, model, radius_, progress);
      else
        VXResidueRSR(map, model, radius_, progress);
    }
    std::vector<ResidueScore> scores;
    for (const VXResidue& residue : VXGetResiduesImpl(model)) {
      const std::vector<VXAtomBase*> atoms = VXGetResidueAtomsImpl(model, residue);
      if (atoms.empty()) continue;
      scores.push_back({residue, atoms.size(), valid_score(atoms[0]->GetFloatData("rscc")),
                        valid_score(atoms[0]->GetFloatData("rsr"))});
    }
    return scores;
  }

  void write_table(std::ostream& out, const std::optional<double>& rscc,
                   const std::optional<double>& rsr,
                   const std::vector<ResidueScore>& residues) const {
    if (per_residue_) out << "chain  number  name  atoms    RSCC     RSR\n";
    for (const ResidueScore& score : residues) {
      std::string number = std::to_string(score.residue.GetResidueNumber());
      if (score.residue.GetInsertCode() != ' ') number += score.residue.GetInsertCode();
      out << format_text("%-5s  %6s  %-4s  %5zu  %6s  %6s\n", score.residue.GetChainID().c_str(),
                         number.c_str(), score.residue.GetName().c_str(), score.atoms,
                         score_text(score.rscc).c_str(), score_text(score.rsr).c_str());
    }
    if (per_residue_ && calc_ == "density")
      out << "(calculated density counts the model's own place once more among its symmetry "
             "mates)\n";
    out << "radius " << format_text("%.3f", radius_) << " A\n";
    out << "RSCC " << score_text(rscc) << "\nRSR " << score_text(rsr) << '\n';
  }

  void write_json(std::ostream& out, const std::optional<double>& rscc,
                  const std::optional<double>& rsr,
                  const std::vector<ResidueScore>& residues) const {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    writer.SetIndent(' ', 2);
    const auto text = [&](const char* key, const std::string& value) {
      writer.Key(key);
      writer.String(value.c_str(), static_cast<rapidjson::SizeType>(value.size()));
    };
    const auto number = [&](const char* key, const std::optional<double>& value) {
      writer.Key(key);
      if (value)
        writer.Double(*value);
      else
        writer.Null();
    };
    writer.StartObject();
    text("model", model_file_);
    text("map", map_file_);
    text("calc", calc_);
    number("radius", radius_);
    number("rscc", rscc);
    number("rsr", rsr);
    if (per_residue_) {
      writer.Key("residues");
      writer.StartArray();
      for (const ResidueScore& score : residues) {
        writer.StartObject();
        text("chain", score.residue.GetChainID());
        writer.Key("number");
        writer.Int(score.residue.GetResidueNumber());
        const char code = score.residue.GetInsertCode();
        text("insertion_code", code == ' ' ? std::string() : std::string(1, code));
        text("name", score.residue.GetName());
        writer.Key("atoms");
        writer.Uint64(score.atoms);
        number("rscc", score.rscc);
        number("rsr", score.rsr);
        writer.EndObject();
      }
      writer.EndArray();
    }
    writer.EndObject();
    out << buffer.GetString() << '\n';
  }

  std::string model_file_;
  std::string map_file_;
  std::string type_ = "Fwt";
  std::string calc_ = "density";
  double radius_ = 0;
  bool per_residue_ = false;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> make_score_command() {
  return std::make_unique<ScoreCommand>();
}

}  // namespace vxgrid_app
