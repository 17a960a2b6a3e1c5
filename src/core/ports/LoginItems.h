#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/base/Result.h"

namespace mirvel {

class LoginItem;

/// The platform's lists of what starts when the user logs in.
class LoginItems {
 public:
  /// An entry of the user's own list. What an entry doesn't tell is absent.
  struct Listed {
    std::optional<std::string> name;
    std::optional<std::string> path;  ///< of what is started
    std::string kind = {};            ///< what the platform calls it, such as "Application"
    std::optional<Image> icon = {};   ///< where the entry names one
    std::string file = {};            ///< of the entry itself; empty: it has none of its own
  };
  /// What an application brings along.
  struct Bundled {
    std::string name;             ///< of the application
    std::string itemName;         ///< file name of the item
    std::string itemPath;         ///< of the item
    std::string applicationPath;  ///< of the application
    std::optional<Image> icon = {};
    std::string file = {};  ///< of the entry itself, which tells it from others; empty: the application
  };

  LoginItems() = default;
  virtual ~LoginItems() = default;
  LoginItems(const LoginItems&) = delete;
  LoginItems& operator=(const LoginItems&) = delete;

  /// Both are in the platform's order, empty where the platform doesn't answer, and may wait for it. For the fetch
  /// queue.
  virtual std::vector<Listed> listed() = 0;
  virtual std::vector<Bundled> bundled() = 0;
  /// Takes the entry from the user's own list; none there is no error. May wait. For the main thread.
  virtual Result<void> remove(const LoginItem& item) = 0;
};

}  // namespace mirvel
