// vxgrid sf: structure factors of a model, and how they agree with observed amplitudes.
#include <cmath>     // for fabs, isfinite, sqrt
#include <optional>  // for optional
#include <vector>    // for vector

#include <CLI/CLI.hpp>

#include "command.h"
#include "model_file.h"
#include "reflection_input.h"
#include "vxgrid/reflection/formats.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

/// Observed against calculated amplitudes, the latter brought to the scale of the former.
struct Agreement {
  std::size_t count = 0;
  double scale = 0;
  double r_factor = 0;
  double correlation = 0;
};

/// Over the reflections that have an observed amplitude; empty when there are less than two, or
/// when the amplitudes of either kind do not vary.
std::optional<Agreement> compare_amplitudes(const VXReflection& reflections) {
  const unsigned int n = reflections.GetCount();
  std::vector<float> observed(n), calculated(n);
  if (!reflections.GetFobs(observed.data()) || !reflections.GetFcalc(calculated.data()))
    return std::nullopt;
  Agreement agreement;
  double o = 0, c = 0, oo = 0, cc = 0, oc = 0;
  const auto is_observed = [&](unsigned int i) { return std::isfinite(observed[i]); };
  for (unsigned int i = 0; i < n; ++i) {
    if (!is_observed(i)) continue;
    const double fo = observed[i], fc = calculated[i];
    ++agreement.count;
    o += fo;
    c += fc;
    oo += fo * fo;
    cc += fc * fc;
    oc += fo * fc;
  }
  const auto count = static_cast<double>(agreement.count);
  agreement.scale = oc / cc;
  agreement.correlation =
      (count * oc - o * c) / std::sqrt((count * oo - o * o) * (count * cc - c * c));
  for (unsigned int i = 0; i < n; ++i) {
    if (is_observed(i))
      agreement.r_factor += std::fabs(observed[i] - agreement.scale * calculated[i]) / o;
  }
  if (!std::isfinite(agreement.correlation) || !std::isfinite(agreement.r_factor))
    return std::nullopt;
  return agreement;
}

class StructureFactorCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("MODEL", model_file_, model_file_help)->required();
    app.add_option("REFLECTIONS", reflections_file_, reflection_file_help)->required();
    app.add_option("-o,--output", output_, "Reflection file to write (.vxx, .fob, .cv or .phs)")
        ->required();
  }

  bool run(const Console& console) override {
    const ReflectionFormat* format = find_reflection_format(output_);
    if (!format || !format->writable)
      return console.fail(output_ +
                          ": the extension names no reflection format that can be written");
    VXGraphMol model;
    if (!read_model(model_file_, model, console)) return false;
    VXReflection reflections;
    if (!read_reflections(reflections_file_, reflections, console)) return false;
    if (!calculate_structure_factors(reflections, model, console)) return false;
    if (!VXIsWritableReflection(output_, reflections))
      return console.fail(output_ + ": the reflections lack columns that " + format->name +
                          " files have");
    if (!VXWriteReflection(output_, reflections))
      return console.fail(output_ + ": cannot be written");

    line(console.out, "Reflections", std::to_string(reflections.GetCount()));
    if (const std::optional<Agreement> agreement = compare_amplitudes(reflections)) {
      line(console.out, "Observed", std::to_string(agreement->count));
      line(console.out, "Scale", format_text("%.3f", agreement->scale));
      line(console.out, "R factor", format_text("%.3f", agreement->r_factor));
      line(console.out, "Correlation", format_text("%.3f", agreement->correlation));
    } else {
      console.note("there are no observed and calculated amplitudes to compare");
    }
    return true;
  }

 private:
  std::string model_file_;
  std::string reflections_file_;
  std::string output_;
};

}  // namespace

std::unique_ptr<Command> make_structure_factor_command() {
  return std::make_unique<StructureFactorCommand>();
}

}  // namespace vxgrid_app
