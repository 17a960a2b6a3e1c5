#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/base/Result.h"

// What the desktop starts at login.

namespace mirvel {

class LoginItem;

/// The lists of the platform. Implementations run tools or read folders, so calls can take seconds.
class LoginItems {
 public:
  /// An entry of the user's own list.
  struct Listed {
    std::string name;
    std::string path;                ///< of the program or document that is opened
    std::string kind = {};           ///< the platform's term for it, such as "Application"
    std::optional<Image> icon = {};  ///< only if the entry specifies one
    std::string file = {};           ///< the path of the entry itself; empty if it isn't a file
  };
  /// An item that is installed with an application.
  struct Bundled {
    std::string name;             ///< of the application
    std::string itemName;         ///< file name of the item
    std::string itemPath;         ///< of the item
    std::string applicationPath;  ///< of the application
    std::optional<Image> icon = {};
    std::string file = {};  ///< the path of the entry itself, which identifies it; empty: the application does
  };

  LoginItems() = default;
  virtual ~LoginItems() = default;
  LoginItems(const LoginItems&) = delete;
  LoginItems& operator=(const LoginItems&) = delete;

  /// Both return the items in the order of the platform, or nothing if it doesn't answer. They block; call them on the
  /// fetch queue.
  virtual std::vector<Listed> listed() = 0;
  virtual std::vector<Bundled> bundled() = 0;
  /// Removes the entry from the user's own list. Succeeds if there is no such entry. Blocks; for the main thread.
  virtual Result<void> remove(const LoginItem& item) = 0;
};

/// Enables and disables the background agent as a login item. For the main thread.
class AgentSwitch {
 public:
  AgentSwitch() = default;
  virtual ~AgentSwitch() = default;
  AgentSwitch(const AgentSwitch&) = delete;
  AgentSwitch& operator=(const AgentSwitch&) = delete;

  /// Whether the agent is started at login. `identifier` is its bundle identifier. False also if the user has switched
  /// it off in the settings of the desktop, or removed its entry.
  virtual bool isEnabled(std::string_view identifier) = 0;
  /// Has the agent started at login, or not any more, and starts or ends it now. Fails if the platform refuses.
  virtual Result<void> setEnabled(std::string_view identifier, bool isEnabled) = 0;
};

}  // namespace mirvel
