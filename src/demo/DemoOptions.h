#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>

#include "core/preferences/Themes.h"
#include "core/session/Mode.h"

namespace mirvel::demo {

/// The options of the demo's command line.
struct DemoOptions {
  std::optional<QString> picture;  ///< file for a picture of the window; the demo ends after writing it
  QSize size;                      ///< window size; invalid for the default
  std::optional<bool> isDark;      ///< nullopt for the desktop's scheme
  std::string locale;
  Mode mode = Mode::Grid;
  QString selected;            ///< label of the job to select; empty for none
  bool isEdited = false;       ///< opens the selected job in the editor
  QString key;                 ///< text in the editor's search for keys
  bool hasInfo = false;        ///< opens the information sheet of the selected job
  bool hasLog = false;         ///< opens the log of the selected job, of the last day
  bool hasTest = false;        ///< tests the selected job
  QString filter;              ///< text in the filter field
  QString newPage;             ///< page of the sheet for new jobs to open; empty for none
  bool hasScript = false;      ///< opens the script that the selected job runs
  QString pane;                ///< pane of the preferences to open, or "folders" for their sheet; empty for none
  std::optional<Theme> theme;  ///< of scripts

  /// The names of the panes of the preferences in their order, and of the sheet with folders.
  static QStringList paneNames();
  /// Ends the process on `--help`, `--version` and invalid options, after printing a message.
  static DemoOptions read(const QStringList& arguments);
};

}  // namespace mirvel::demo
