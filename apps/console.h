// Where a run of the program writes: results, messages, progress.
#ifndef VXGRID_APPS_CONSOLE_H
#define VXGRID_APPS_CONSOLE_H

#include <ostream>      // for ostream
#include <string>       // for string
#include <string_view>  // for string_view

#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

/// Results go to `out`, everything else to `err`; progress lines only where `terminal` is true.
struct Console {
  std::ostream& out;
  std::ostream& err;
  bool terminal = false;
  bool quiet = false;

  /// A remark on what was done; silent with --quiet.
  void note(std::string_view text) const;
  /// Why the run fails; returns false, for `return console.fail(...)`.
  bool fail(std::string_view text) const;
};

/// One "label: text" line of results, texts in one column.
void line(std::ostream& out, const std::string& label, const std::string& text);

/// While one stands, the library's messages from `level` on go to the console's `err`.
class MessageRoute {
 public:
  MessageRoute(const Console& console, VXCore::VXErrorLevel level);
  ~MessageRoute();
  MessageRoute(const MessageRoute&) = delete;
  MessageRoute& operator=(const MessageRoute&) = delete;
};

/// Shows the library's progress reports as one line that overwrites itself, on a terminal only.
class ProgressLine : public VXCore::VXTracerBase {
 public:
  ProgressLine(const Console& console, std::string_view what) : console_(console), what_(what) {}
  ~ProgressLine() override;
  void Report(unsigned int current, unsigned int total) override;

 private:
  const Console& console_;
  std::string_view what_;
  bool shown_ = false;
};

}  // namespace vxgrid_app

#endif
