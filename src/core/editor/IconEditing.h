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

/// Gives jobs icons of the user's choice and takes them away again. Failures are shown to the user and leave the icon
/// as it was. For the main thread.
class IconEditing {
 public:
  /// Called after the icon of a job has changed.
  using Changed = std::function<void(const std::shared_ptr<Job>& job)>;

  /// The pictures are kept below `applicationSupport`. The references outlive it.
  IconEditing(std::filesystem::path applicationSupport, Interface& interface, Workspace& workspace,
              const Localize& localize, const Selection& selection, const Shell& shell, Changed changed);

  /// `png` holds the bytes of a PNG picture.
  void setIcon(const std::shared_ptr<Job>& job, const std::string& png);
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
