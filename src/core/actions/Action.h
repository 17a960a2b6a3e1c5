#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "core/files/URL.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// A deed that the program asks of a helper, which alone writes job files and loads jobs. Held for as long as
/// the request runs; whoever else looks on holds it weakly. For the main thread.
class Action {
 public:
  using Shared = std::shared_ptr<Action>;

  /// The number goes over the wire. 7 is reserved.
  enum class Kind {
    write = 0,
    writeAndLoad = 1,
    delete_ = 2,
    quitHelper = 3,
    unload = 4,
    load = 5,
    test = 6,
    uninstallHelpers = 8,
    log = 9,
    startHost = 32  ///< makes sure that the user's jobs run
  };

  explicit Action(Kind theKind) : kind(theKind) {}
  static Shared unload(std::optional<std::string> label, URL url);
  static Shared load(URL url);
  static Shared delete_(URL url, std::string label);
  static Shared write(URL url, std::optional<std::string> string, std::string label);
  static Shared test(URL testURL, URL testOutputURL, std::string string, std::string label);
  static Shared log(std::map<std::string, std::string> query);

  Kind kind;
  bool presentError = true;  ///< show an error reply to the user
  bool cleanUp = true;       ///< on success, show what has changed; a save sees to that itself
  bool privileged = false;   ///< it goes to the helper that acts as root
  std::optional<URL> url = {};
  std::optional<URL> deleteURL = {};
  std::optional<URL> testURL = {};
  std::optional<URL> testOutputURL = {};
  std::optional<std::string> label = {};                 ///< an empty one isn't sent
  std::optional<std::string> localAgentUnloadPath = {};  ///< unloaded in the user's session once root has removed it
  std::optional<std::string> string = {};                ///< mostly the whole file
  std::optional<int> mode = {};                          ///< that a file which is new is to have at most
  std::optional<std::map<std::string, std::string>> logQuery = {};
  std::function<void(bool isDone)> ended = {};  ///< called once if the request went out, with what came of it

  /// The request as it goes over the wire, with the authorisation if there is one. The path of `url` is that of the
  /// file that links lead to.
  propertylist::Dictionary dictionary(const std::optional<std::string>& authData) const;
};

}  // namespace mirvel
