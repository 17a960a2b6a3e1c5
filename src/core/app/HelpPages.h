#pragma once

#include <filesystem>
#include <string>

namespace mirvel {

class Interface;
class Localize;
class Workspace;

/// The help pages, which are installed with the program and opened in the browser. For the main thread.
class HelpPages {
 public:
  /// `folder` has the pages: "index.html" with all sections, and a small page for each section that leads there. Many
  /// programs that open files drop the fragment of an address, so each section has a file of its own.
  HelpPages(std::filesystem::path folder, Workspace& workspace, Interface& interface, const Localize& localize);

  /// Opens the section with this name, or the beginning if the name is empty or there is no such section. Tells the
  /// user if no program opens pages, and where they are.
  void open(const std::string& fragment) const;

 private:
  std::filesystem::path pageOf(const std::string& fragment) const;

  const std::filesystem::path m_folder;
  Workspace& m_workspace;
  Interface& m_interface;
  const Localize& m_localize;
};

}  // namespace mirvel
