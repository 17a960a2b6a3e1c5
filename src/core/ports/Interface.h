#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Error.h"
#include "core/locale/Localize.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// A field that can't be saved as it stands.
struct InvalidField {
  std::string message;  ///< which one it is
  std::string reason;   ///< what is wrong with it

  bool operator==(const InvalidField&) const = default;
};

/// A question to the user. A button without a title isn't there.
struct Alert {
  std::string message;
  std::string informativeText = {};
  std::string defaultTitle;
  std::string alternateTitle = {};
  std::string otherTitle = {};
  std::string cancelTitle = {};  ///< of a last one that does nothing, where the other three all do something
  /// The button that loses nothing: Return, Escape and the close button all press it. None: Return presses the first
  /// button, the others the last one that is there.
  std::optional<int> safeButton = {};
  std::string suppression = {};  ///< boolean key of `Defaults` for "don't ask again"; empty: not offered

  struct Button {
    std::string title;
    int answer;
  };
  /// Those that are there, in their order.
  std::vector<Button> buttons() const;
  /// What Return answers.
  int returnAnswer() const;
  /// What Escape answers, and the close button.
  int escapeAnswer() const;
};

/// A panel that asks for the place of a file to be written.
struct SavePanel {
  std::filesystem::path folder;  ///< shown first
  std::string name;              ///< suggested
  std::string allowedType;       ///< the one extension that the file may have
  bool canCreateDirectories = true;
};

/// A panel that asks for one file or folder that is there. Links are followed.
struct OpenPanel {
  bool choosesFolders = false;
  bool showsHiddenFiles = false;
  std::vector<std::string> allowedTypes = {};  ///< extensions; empty: any file
};

/// What the logic asks of the user; modally, where nothing else is said. For the main thread. The shell shows it, tests
/// answer it.
class Interface {
 public:
  /// Answers of an alert, in the order of its buttons.
  static constexpr int defaultButton = 1000;
  static constexpr int alternateButton = 1001;
  static constexpr int otherButton = 1002;
  static constexpr int cancelButton = 1003;

  Interface(Defaults& defaults, const Localize& localize) : m_defaults(defaults), m_localize(localize) {}
  virtual ~Interface() = default;
  Interface(const Interface&) = delete;
  Interface& operator=(const Interface&) = delete;

  /// Asks, and gives the button. If the user ticked "don't ask again", and didn't go back, the suppression key is set;
  /// not to ask then is the caller's part.
  int alert(const Alert& question);
  /// Takes back that a question isn't to come again: the user went back after all.
  void askAgain(const Alert& question);
  /// Asks in a sheet on the main window and goes on at once; `completion` gets the button, on the main thread. A sheet
  /// that ends with its window answers nothing.
  virtual void beginSheet(const Alert& question, std::function<void(int)> completion) = 0;
  /// Tells of a failure.
  virtual void error(const std::string& message, const std::string& informativeText) = 0;
  /// Tells of a failure of the system.
  void present(const Error& failure);
  /// The one general alert for a failed save.
  void saveError();
  /// The chosen path, with the allowed extension; none if the user cancels.
  virtual std::optional<std::filesystem::path> savePanel(const SavePanel& panel) = 0;
  /// The chosen file or folder; none if the user cancels.
  virtual std::optional<std::filesystem::path> openPanel(const OpenPanel& panel) = 0;

 protected:
  struct Answer {
    int button = defaultButton;
    bool isSuppressed = false;
  };
  virtual Answer showAlert(const Alert& question) = 0;
  /// Sets the suppression key of a question whose "don't ask again" was ticked, unless it was answered by going back.
  void remember(const Alert& question, int answer);

 private:
  Defaults& m_defaults;
  const Localize& m_localize;
};

}  // namespace mirvel
