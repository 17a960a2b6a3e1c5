#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "core/base/Error.h"
#include "core/catalogue/Job.h"

namespace mirvel {

class Interface;
class Localize;
class Selection;
class Workspace;
struct Shell;

/// Sets and removes the custom icons of jobs, at once and without undo. Failures are shown to the user and leave the
/// icon unchanged. Jobs of kinds without custom icons are ignored. Main thread only.
class IconEditing {
 public:
  /// Called after the icon of a job has changed.
  using Changed = std::function<void(const std::shared_ptr<Job>& job)>;

  /// The pictures are stored below `applicationSupport`, in a folder that only the user can read. The references must
  /// outlive it.
  IconEditing(std::filesystem::path applicationSupport, Interface& interface, Workspace& workspace,
              const Localize& localize, const Selection& selection, const Shell& shell, Changed changed);

  /// `png` is the content of a PNG file, and isn't checked.
  void setIcon(const std::shared_ptr<Job>& job, const std::string& png);
  /// Deletes the picture. The job shows its default icon again.
  void removeIcon(const std::shared_ptr<Job>& job);

 private:
  void show(const std::shared_ptr<Job>& job);
  void report(const Error& failure);

  const std::filesystem::path m_applicationSupport;
  Interface& m_interface;
  Workspace& m_workspace;
  const Localize& m_localize;
  const Selection& m_selection;
  const Shell& m_shell;
  const Changed m_changed;
};

}  // namespace mirvel
