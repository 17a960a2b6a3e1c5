#include "core/editor/JobDetails.h"

#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/editor/EditorTexts.h"
#include "core/files/URL.h"
#include "core/locale/Localize.h"

namespace mirvel {

namespace {

using Row = JobDetails::Row;

std::string whenStarted(const Job& job, const Localize& localize) {
  if (job.kind.isLoginItem()) return EditorTexts(localize).atLogin();
  if (job.kind.isStartupItem()) return EditorTexts(localize).atSystemStart();
  return EditorTexts(localize).whenAClientAsks();
}

void add(std::vector<Row>& rows, std::string label, std::string text, Row::Style style = Row::Style::Text) {
  if (!text.empty()) rows.push_back({.label = std::move(label), .text = std::move(text), .style = style});
}

}  // namespace

std::vector<Row> JobDetails::rows(const Job& job, const Localize& localize, const std::string& home) {
  std::vector<Row> rows;
  if (job.summary != job.name) add(rows, localize.summary(), job.summary);
  add(rows, localize.when(), whenStarted(job, localize));
  if (const auto* tool = dynamic_cast<const PrivilegedHelperTool*>(&job)) {
    add(rows, EditorTexts(localize).identifier(), tool->identifier);
    add(rows, EditorTexts(localize).clients(), tool->clients, Row::Style::Code);
  }
  if (job.url.isFile()) {
    const std::string path = localizedDisplayPath(job.url.text(), home);
    add(rows, EditorTexts(localize).path(), path, Row::Style::Code);
  }
  return rows;
}

DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges) {
  if (!job) return DetailTab::NoSelection;
  if (job->kind.isLaunchd()) return hasUnsavedChanges ? DetailTab::LaunchdEdit : DetailTab::LaunchdDisplay;
  if (job->kind.isLoginItem()) return DetailTab::LoginItem;
  return job->kind.isStartupItem() ? DetailTab::StartupItem : DetailTab::PrivilegedHelperTool;
}

}  // namespace mirvel
