// Where a run of the program writes: results, messages, progress.
#include "console.h"

namespace vxgrid_app {

namespace {

std::string_view label(VXCore::VXErrorLevel level) {
  switch (level) {
    case VXCore::VXErrorLevel::Error:
      return "error: ";
    case VXCore::VXErrorLevel::Warning:
      return "warning: ";
    default:
      return "";
  }
}

}  // namespace

void Console::note(std::string_view text) const {
  if (!quiet) err << "vxgrid: " << text << '\n';
}

bool Console::fail(std::string_view text) const {
  err << "vxgrid: error: " << text << '\n';
  return false;
}

void line(std::ostream& out, const std::string& label, const std::string& text) {
  constexpr std::size_t column = 14;
  const std::string mark = label.empty() ? "" : label + ':';
  out << mark << std::string(mark.size() < column ? column - mark.size() : 1, ' ') << text << '\n';
}

MessageRoute::MessageRoute(const Console& console, VXCore::VXErrorLevel level) {
  VXCore::VXThrow.SetLevel(level);
  VXCore::VXThrow.SetSink([&console](VXCore::VXErrorLevel of, const std::string& text) {
    console.err << "vxgrid: " << label(of) << text << '\n';
  });
}

MessageRoute::~MessageRoute() {
  VXCore::VXThrow.SetSink({});
  VXCore::VXThrow.SetLevel(VXCore::VXErrorLevel::Info);
}

ProgressLine::~ProgressLine() {
  if (shown_) console_.err << '\n';
}

void ProgressLine::Report(unsigned int current, unsigned int total) {
  if (!console_.terminal || console_.quiet) return;
  console_.err << '\r' << what_ << ' ' << current + 1 << " of " << total << std::flush;
  shown_ = true;
}

}  // namespace vxgrid_app
