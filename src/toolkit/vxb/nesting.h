// How deep the records lie that this thread is writing or reading.
#ifndef VXGRID_SRC_TOOLKIT_VXB_NESTING_H
#define VXGRID_SRC_TOOLKIT_VXB_NESTING_H

namespace VXCore::detail {

/// Goes one record deeper while it stands.
class NestingLevel {
 public:
  NestingLevel() { enter(); }
  ~NestingLevel() { leave(); }
  NestingLevel(const NestingLevel&) = delete;
  NestingLevel& operator=(const NestingLevel&) = delete;

  static void enter() noexcept;
  static void leave() noexcept;
  /// False when there are more records around than may be.
  static bool is_allowed() noexcept;
};

}  // namespace VXCore::detail

#endif
