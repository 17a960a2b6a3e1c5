#include "core/editor/JobDetails.h"

#include "core/base/Const.h"
#include "core/catalogue/KindTexts.h"
#include "core/catalogue/LoginItem.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/catalogue/StartupItem.h"
#include "core/editor/EditorTexts.h"
#include "core/editor/InfoTexts.h"
#include "core/files/RegularFile.h"
#include "core/files/URL.h"
#include "core/locale/Localize.h"
#include "core/scripts/SyntaxHelper.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

namespace {

using Row = JobDetails::Row;

// Code requirements and lists in the old-style format have the strings and comments of C.
constexpr SyntaxType syntaxOfLists = SyntaxType::javaScript;

std::string whenStarted(const Job& job, const Localize& localize) {
  if (job.kind.isLoginItem()) return EditorTexts(localize).atLogin();
  if (job.kind.isStartupItem()) return EditorTexts(localize).atSystemStart();
  return EditorTexts(localize).whenAClientAsks();
}

SyntaxType syntaxOfScript(std::string_view script) {
  return SyntaxHelper::syntaxOfText(script).value_or(SyntaxType::shell);
}

/// A string of a list in the old-style format as its program reads it.
std::string withoutEscapes(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '"' || text[i + 1] == '\\');
    result += text[isEscape ? ++i : i];
  }
  return result;
}

class RowList {
 public:
  RowList(const Job& job, const Localize& localize, const std::string& home)
      : m_job(job), m_localize(localize), m_home(home) {}

  std::vector<Row> rows() && { return std::move(m_rows); }

  void add(Row row) {
    if (!row.text.empty()) m_rows.push_back(std::move(row));
  }
  void addPath(std::string label, const std::string& path, Row::Button button) {
    add({.label = std::move(label),
         .text = localizedDisplayPath(path, m_home),
         .style = Row::Style::Code,
         .button = button,
         .path = path});
  }
  /// The job's own file or, without one, the group of its kind.
  void addWhere(KindTexts& kinds) {
    const std::string label = InfoTexts(m_localize).where();
    if (m_job.url.isFile()) return addPath(label, m_job.url.text(), Row::Button::Job);
    add({.label = label, .text = kinds.title(m_job.kind), .button = Row::Button::Job});
  }
  void addLoginItem(const LoginItem& item) {
    const auto* const own = std::get_if<LoginItem::SystemPreferences>(&item.subtype);
    add({.label = m_localize.kind(), .text = own ? own->kind : m_localize.application()});
    addPath(EditorTexts(m_localize).path(), item.path, Row::Button::Path);
  }
  void addScript(const StartupItem& item) {
    const auto script = item.script();
    if (!script) {
      return add({.label = m_localize.run(), .text = InfoTexts(m_localize).cantBeRead(script.error().text())});
    }
    add({.label = m_localize.run(), .text = *script, .style = Row::Style::Script, .syntax = syntaxOfScript(*script)});
  }
  void addTool(const PrivilegedHelperTool& tool) {
    add({.label = EditorTexts(m_localize).identifier(), .text = tool.identifier});
    add({.label = EditorTexts(m_localize).clients(),
         .text = withoutEscapes(tool.clients),
         .style = Row::Style::Script,
         .syntax = syntaxOfLists});
  }

 private:
  const Job& m_job;
  const Localize& m_localize;
  const std::string& m_home;
  std::vector<Row> m_rows;
};

/// The list embedded in a tool, or why there is none.
Result<std::string> embeddedList(const PrivilegedHelperTool& tool, const Localize& localize) {
  if (!tool.list.empty()) return tool.list;
  const auto file = RegularFile::open(tool.url.path());
  if (!file) return file.error();
  return Error{.code = Error::Code::NotFound, .message = InfoTexts(localize).noPropertyList()};
}

Result<std::string> textOf(const Job& job, const Localize& localize) {
  if (const auto* item = dynamic_cast<const StartupItem*>(&job)) return item->script();
  if (const auto* tool = dynamic_cast<const PrivilegedHelperTool*>(&job)) return embeddedList(*tool, localize);
  return std::string();
}

}  // namespace

std::vector<Row> JobDetails::rows(const Job& job, KindTexts& kinds, const Localize& localize, const std::string& home) {
  RowList rows(job, localize, home);
  if (job.summary != job.name) rows.add({.label = localize.summary(), .text = job.summary});
  rows.add({.label = localize.when(), .text = whenStarted(job, localize)});
  rows.addWhere(kinds);
  if (const auto* item = dynamic_cast<const LoginItem*>(&job)) rows.addLoginItem(*item);
  if (const auto* item = dynamic_cast<const StartupItem*>(&job)) rows.addScript(*item);
  if (const auto* tool = dynamic_cast<const PrivilegedHelperTool*>(&job)) rows.addTool(*tool);
  return std::move(rows).rows();
}

DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges) {
  if (!job) return DetailTab::NoSelection;
  if (job->kind.isLaunchd()) return hasUnsavedChanges ? DetailTab::LaunchdEdit : DetailTab::LaunchdDisplay;
  if (job->kind.isLoginItem()) return DetailTab::LoginItem;
  return job->kind.isStartupItem() ? DetailTab::StartupItem : DetailTab::PrivilegedHelperTool;
}

InfoSheet infoSheetFor(Kind kind) {
  if (kind.isLaunchd()) return InfoSheet::Launchd;
  if (kind.isLoginItem()) return InfoSheet::LoginItem;
  return kind.isStartupItem() ? InfoSheet::StartupItem : InfoSheet::PrivilegedHelperTool;
}

std::vector<Row> loginItemInfo(const LoginItem& item, const Localize& localize, const std::string& home) {
  RowList rows(item, localize, home);
  rows.add({.label = localize.name(), .text = item.name});
  rows.addLoginItem(item);
  return std::move(rows).rows();
}

InfoText infoText(const Job& job, const Localize& localize) {
  const std::string folder(job.kind.isStartupItem() ? Const::PathComponent::startupItems
                                                    : Const::PathComponent::privilegedHelperTool);
  InfoText result{.title = bidirectionalString({folder, job.name}, Const::separator, localize.isRightToLeft())};
  auto text = textOf(job, localize);
  if (!text) {
    result.problem = InfoTexts(localize).cantBeRead(text.error().text());
    return result;
  }
  result.syntax = job.kind.isStartupItem() ? syntaxOfScript(*text) : syntaxOfLists;
  result.text = *std::move(text);
  return result;
}

}  // namespace mirvel
