#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the start, the end and updates.
class AppTexts : public Texts {
 public:
  using Texts::Texts;

  std::string couldntLookForUpdates() const { return text("Couldn’t look for a new version"); }
  std::string newVersion(const std::string& version) const { return format("Mirvel %@ is available", {version}); }
  std::string ownFileCantBeRead() const { return text("Mirvel can’t read one of its own files"); }
  std::string ownFileCantBeWritten() const { return text("Mirvel can’t write one of its own files"); }
  std::string ownFileIsLeftAlone(const std::string& reason) const {
    return format("%@. The file is left as it is, and what would be written to it is kept until you quit.", {reason});
  }
  std::string ownFileStaysInMemory(const std::string& reason) const {
    return format("%@. What would be written to it is kept until you quit.", {reason});
  }
  std::string ownFileWasDamaged() const { return text("One of Mirvel’s own files was damaged"); }
  std::string ownFileWasMoved(const std::string& reason, const std::string& rescue) const {
    return format("%1$@. It is now called %2$@, and Mirvel goes on without what it held.", {reason, rescue});
  }
  std::string youHaveVersion(const std::string& version) const { return format("You have version %@.", {version}); }
  std::string yourVersionIsTheLatest() const { return text("Your version is the latest"); }
};

}  // namespace mirvel
