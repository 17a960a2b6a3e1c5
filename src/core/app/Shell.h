#pragma once

#include <array>
#include <functional>
#include <map>
#include <string_view>

#include "core/actions/AnswerTypes.h"
#include "core/editor/DetailType.h"
#include "core/mainwindow/MainWindowType.h"
#include "core/mainwindow/Mode.h"
#include "core/support/URL.h"

namespace mirvel {

/// The parts of the program that are there only at times: whoever is one puts itself in, and takes itself out when it
/// goes. Null or empty: nobody to tell. For the main thread.
struct Shell {
  std::array<ModeType*, 4> modes{};  ///< by the number of `Mode`
  DetailType* detail = nullptr;
  EditType* edit = nullptr;
  MainWindowType* mainWindow = nullptr;
  TestType* test = nullptr;
  LogType* log = nullptr;
  std::map<std::string_view, std::function<void()>> segues;  ///< the sheets that can be shown, by name (`Segue.h`)
  std::function<void()> importJob;                           ///< asks which file
  std::function<void()> exportJob;                           ///< asks where to
  std::function<void(const URL& script)> editScript;         ///< opens it in the script editor
  std::function<void()> saveScript;                          ///< set while the front window edits a script: saves it
  std::function<void()> emptyIconCache;
  std::function<void(bool isManual)> checkForUpdate;
  std::function<void()> endPrivilegedConnection;  ///< set while such a connection is open
  std::function<void()> terminate;                ///< asks the application to quit
};

}  // namespace mirvel
