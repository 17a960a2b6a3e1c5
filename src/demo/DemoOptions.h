#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>

#include "core/session/Mode.h"

namespace mirvel::demo {

/// What the demo was asked for on its command line.
struct DemoOptions {
  std::optional<QString> picture;  ///< a file to write a picture of the window to, instead of staying
  QSize size;                      ///< of the window; invalid: as usual
  std::optional<bool> isDark;      ///< none: as the desktop
  std::string locale;
  Mode mode = Mode::grid;
  QString selected;       ///< label of a job to select; empty: none
  bool isEdited = false;  ///< the selected job, in the editor
  QString filter;         ///< text of the search field
  QString newPage;        ///< of the sheet that makes a new job; empty: it isn't shown

  /// Ends the process after `--help`, `--version` and wrong use, with words.
  static DemoOptions read(const QStringList& arguments);
};

}  // namespace mirvel::demo
