// vxgrid shape: volume, multipoles and inertial frame of a model.
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>   // for transform
#include <array>       // for array
#include <cmath>       // for isfinite, round
#include <functional>  // for negate, plus
#include <span>        // for span

#include <CLI/CLI.hpp>

#include "command.h"
#include "model_file.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

/// The moments of a model as the library lays them out, and their parts.
struct Shape {
  float volume() const { return multipoles[0]; }
  std::span<const float> quadrupoles() const { return std::span(multipoles).subspan(1, 3); }
  std::span<const float> octopoles() const { return std::span(multipoles).subspan(4, 10); }
  std::span<const float> axis(std::size_t k) const { return std::span(frame).subspan(3 * k, 3); }

  std::array<float, 14> multipoles{};
  std::array<float, 3> centre{};
  std::array<float, 9> frame{};
};

/// Moves the model to the origin, about which moments are summed in single precision: 150 Angstrom
/// away octopoles have no more than their first digit.
Shape shape_of(VXMolBase& model) {
  std::array<float, 3> mid{}, extents{}, to_origin{};
  VXGetCenterAndExtents(model, mid.data(), extents.data());
  std::transform(mid.begin(), mid.end(), to_origin.begin(), std::negate());
  VXTranslate(model, to_origin.data());
  Shape shape;
  Gaussian series;
  series.vx_calculate_shape_multipoles_and_inertial_frame_with_hydrogens(
      model, shape.multipoles.data(), "full", shape.centre.data(), shape.frame.data());
  std::transform(mid.begin(), mid.end(), shape.centre.begin(), shape.centre.begin(), std::plus());
  return shape;
}

/// Numbers to three places, and what they are in. None is -0.000, which rounding alone makes.
std::string list_text(std::span<const float> numbers, const std::string& unit = "") {
  constexpr double place = 1000.0;
  std::string text;
  for (const float number : numbers)
    text += format_text(text.empty() ? "%.3f" : " %.3f", std::round(number * place) / place + 0.0);
  return unit.empty() ? text : text + ' ' + unit;
}

class ShapeCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("MODEL", model_file_, model_file_help)->required();
    app.add_flag("-j,--json", json_, "Write JSON");
  }

  bool run(const Console& console) override {
    VXGraphMol model;
    if (!read_model(model_file_, model, console)) return false;
    const Shape shape = shape_of(model);
    if (!(shape.volume() > 0))
      return console.fail(model_file_ + ": its volume cannot be calculated");
    if (json_)
      write_json(console.out, shape);
    else
      write_lines(console.out, shape);
    return true;
  }

 private:
  static void write_lines(std::ostream& out, const Shape& shape) {
    constexpr std::size_t vector_part = 3;
    line(out, "Volume", format_text("%.2f A^3", shape.volume()));
    line(out, "Centre", list_text(shape.centre, "A"));
    line(out, "Quadrupoles", list_text(shape.quadrupoles(), "A^2"));
    line(out, "Octopoles", list_text(shape.octopoles().first(vector_part), "A^3"));
    line(out, "", list_text(shape.octopoles().subspan(vector_part), "A^3"));
    for (std::size_t k = 0; k < 3; ++k)
      line(out, format_text("Axis %zu", k + 1), list_text(shape.axis(k)));
  }

  void write_json(std::ostream& out, const Shape& shape) const {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    writer.SetIndent(' ', 2);
    writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
    const auto number = [&](float value) {
      if (!std::isfinite(value)) return writer.Null();
      const std::string text = format_text("%.7g", value);  // all digits that a float has
      return writer.RawValue(text.data(), text.size(), rapidjson::kNumberType);
    };
    const auto list = [&](std::span<const float> values) {
      writer.StartArray();
      for (const float value : values)
        number(value);
      writer.EndArray();
    };
    writer.StartObject();
    writer.Key("model");
    writer.String(model_file_.c_str(), static_cast<rapidjson::SizeType>(model_file_.size()));
    writer.Key("volume");
    number(shape.volume());
    writer.Key("centre");
    list(shape.centre);
    writer.Key("quadrupoles");
    list(shape.quadrupoles());
    writer.Key("octopoles");
    list(shape.octopoles());
    writer.Key("frame");
    writer.StartArray();
    for (std::size_t k = 0; k < 3; ++k)
      list(shape.axis(k));
    writer.EndArray();
    writer.EndObject();
    out << buffer.GetString() << '\n';
  }

  std::string model_file_;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> make_shape_command() {
  return std::make_unique<ShapeCommand>();
}

}  // namespace vxgrid_app
