#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/scripts/SyntaxType.h"
#include "core/session/DetailType.h"

namespace mirvel {

class KindTexts;
class Localize;
class LoginItem;

/// The read-only details of login items, startup items and helper tools, in addition to those that all jobs have.
struct JobDetails {
  struct Row {
    enum class Style { Text, Code, Script };
    /// What the button beside the text reveals.
    enum class Button { None, Job, Path };

    std::string label;  ///< localized, without a colon
    std::string text;
    Style style = Style::Text;
    SyntaxType syntax = SyntaxType::none;  ///< of a script
    Button button = Button::None;
    std::string path = {};  ///< in full if the text abbreviates it

    bool operator==(const Row&) const = default;
  };

  /// Paths below `home` are abbreviated with a tilde. Empty values have no row. Reads the script of a startup item; if
  /// that fails, the row has the reason.
  static std::vector<Row> rows(const Job& job, KindTexts& kinds, const Localize& localize, const std::string& home);
};

/// The tab of the details pane for a job: that of its kind, or the editor for a launchd job with unsaved changes. `job`
/// may be null.
DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges);

/// The sheet with information about a job.
enum class InfoSheet { Launchd, LoginItem, StartupItem, PrivilegedHelperTool };
InfoSheet infoSheetFor(Kind kind);

/// The rows of the sheet of a login item: name, kind and path. Empty values have none.
std::vector<JobDetails::Row> loginItemInfo(const LoginItem& item, const Localize& localize, const std::string& home);

/// The content of the sheet of a startup item or helper tool.
struct InfoText {
  std::string title;                     ///< the name of the folder and that of the job
  std::string text = {};                 ///< a script, or the property list embedded in a tool
  SyntaxType syntax = SyntaxType::none;  ///< of the text
  std::string problem = {};              ///< localized; why there is no text
};
/// Reads the file.
InfoText infoText(const Job& job, const Localize& localize);

}  // namespace mirvel
