#include "core/actions/CommentedFile.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "core/actions/ActionTexts.h"
#include "core/actions/JobOnDisk.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/Reader.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// The time in UTC, without colons, which some file systems don't allow in a name.
std::string timeText(double secondsSince1970) {
  std::string text = propertylist::dateText(propertylist::dateSince1970(secondsSince1970));
  std::replace(text.begin(), text.end(), ':', '.');
  return text;
}

fs::path freshPath(const fs::path& folder, const std::string& name) {
  fs::path path = folder / (name + ".plist");
  std::error_code failure;
  for (int number = 2; fs::exists(fs::symlink_status(path, failure)); ++number) {
    path = folder / (name + ' ' + std::to_string(number) + ".plist");
  }
  return path;
}

bool isKept(const fs::path& folder, std::string_view bytes) {
  std::error_code failure;
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    std::error_code unreadable;
    if (entry->file_size(unreadable) != bytes.size()) continue;  // cheaper than reading every file
    const auto kept = readFile(entry->path(), JobFolder::largestFile);
    if (kept && *kept == bytes) return true;
  }
  return false;
}

bool mayCommentsGo(const Foundation& foundation, Interface& interface, const Launchd& job) {
  const Localize& localize = foundation.localize;
  const int answer = interface.alert({
      .message = ActionTexts(localize).savingRemovesComments(job.name),
      .informativeText = ActionTexts(localize).theFileWithItsCommentsIsKept(keptFilesFolder(foundation.roots).string()),
      .defaultTitle = ActionTexts(localize).saveWithoutComments(),
      .alternateTitle = localize.cancel(),
      .safeButton = Interface::alternateButton,
  });
  return answer == Interface::defaultButton;
}

}  // namespace

fs::path keptFilesFolder(const Roots& roots) {
  return roots.applicationSupport / "Kept Files";
}

Result<void> keepFile(const Roots& roots, const Clock& clock, const std::string& job, std::string_view bytes) {
  constexpr std::size_t longestName = 48;  // in characters, so that even 4-byte ones fit into a file name
  const fs::path folder = keptFilesFolder(roots);
  if (isKept(folder, bytes)) return {};
  if (auto made = makePrivateFolder(folder); !made) return made;
  const std::string name(String::firstCharacters(jobFileName(job), longestName));
  return replaceFile(freshPath(folder, name + ' ' + timeText(clock.secondsSince1970())), bytes, privateFile);
}

bool letCommentsGo(const Foundation& foundation, const Platform& platform, Editing& editing,
                   const std::shared_ptr<Launchd>& job) {
  if (job->isNewFile) return true;  // its URL may be that of the file it was copied from
  const auto bytes = readFile(job->url.path(), JobFolder::largestFile);
  if (!bytes || !propertylist::hasComments(*bytes)) return true;
  const std::string checksum = Checksum::ofFile(*bytes).text();
  if (editing.hasAgreed(job, checksum)) return true;
  if (!mayCommentsGo(foundation, platform.interface, *job)) return false;
  if (const auto kept = keepFile(foundation.roots, platform.clock, job->name, *bytes); !kept) {
    platform.interface.present(kept.error());
    return false;
  }
  editing.agreed(job, checksum);
  return true;
}

}  // namespace mirvel
