#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/files/URL.h"
#include "core/messages/Requests.h"

namespace mirvel {

/// One request to a helper, which alone writes job files and loads jobs, and what the program does with its outcome.
/// Held for as long as the request is in flight. For the main thread.
class Action {
 public:
  using Shared = std::shared_ptr<Action>;
  using Kind = messages::Kind;

  explicit Action(Kind theKind) : kind(theKind) {}
  static Shared unload(std::optional<std::string> label, URL url);
  static Shared load(URL url);
  static Shared delete_(URL url, std::string label);
  static Shared write(URL url, std::string string, std::string label);
  static Shared test(URL testURL, URL testOutputURL, std::string string, std::string label);
  static Shared log(messages::LogQuery query);

  Kind kind;
  bool presentError = true;  ///< show a failure to the user
  bool cleanUp = true;       ///< on success, show what has changed; a save does that itself
  bool privileged = false;   ///< sent to the helper that acts as root
  std::optional<URL> url = {};
  std::optional<URL> deleteURL = {};
  std::optional<URL> testURL = {};
  std::optional<URL> testOutputURL = {};
  std::optional<std::string> label = {};                 ///< an empty one isn't sent
  std::optional<std::string> localAgentUnloadPath = {};  ///< unloaded in the user's session once root has removed it
  std::string string = {};                               ///< the whole content of a file
  std::optional<int> mode = {};                          ///< permissions that a new file has at most
  messages::LogQuery logQuery = {};
  std::function<void(bool isDone)> ended = {};  ///< called once if the request was sent, with its outcome

  /// What is sent, with the authorisation if there is one. The path of `url` is that of the file that links lead to.
  messages::Request request(const std::optional<std::string>& authData) const;

 private:
  messages::RequestContent content() const;
};

}  // namespace mirvel
