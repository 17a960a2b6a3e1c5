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

/// A field whose content prevents a save.
struct InvalidField {
  std::string message;  ///< names the field
  std::string reason;   ///< why its content is invalid

  bool operator==(const InvalidField&) const = default;
};

/// A question or message with up to four buttons. Buttons without a title are left out. All texts are localised.
struct Alert {
  std::string message;
  std::string informativeText = {};
  std::string defaultTitle;
  std::string alternateTitle = {};
  std::string otherTitle = {};
  std::string cancelTitle = {};  ///< of a fourth button that does nothing, if the other three all do something
  /// The answer that Return, Escape and the close button give, for questions where the wrong button would lose data.
  /// Default: Return presses the first button, Escape and the close button the last one.
  std::optional<int> safeButton = {};
  std::string suppression = {};  ///< key of the boolean setting for "don't ask again"; empty: not offered

  struct Button {
    std::string title;
    int answer;
  };
  /// The buttons with a title, in their order. There is at least one.
  std::vector<Button> buttons() const;
  /// The answer of the Return key.
  int returnAnswer() const;
  /// The answer of Escape and of the close button.
  int escapeAnswer() const;
};

/// A panel in which the user chooses where to write a file.
struct SavePanel {
  std::filesystem::path folder;  ///< the initial folder
  std::string name;              ///< the suggested file name
  std::string allowedType;       ///< the extension that the file gets, without dot
  bool canCreateDirectories = true;
};

/// A panel in which the user chooses an existing file or folder. Links are resolved.
struct OpenPanel {
  bool choosesFolders = false;
  bool showsHiddenFiles = false;
  std::vector<std::string> allowedTypes = {};  ///< extensions without dot; empty: any
};

/// Alerts and panels. All are modal unless stated otherwise: the call returns when the user has answered, and other
/// tasks of the run loop run meanwhile. The shell implements them with widgets, tests with prepared answers. For the
/// main thread.
class Interface {
 public:
  /// Answers of an alert, in the order of its buttons.
  static constexpr int defaultButton = 1000;
  static constexpr int alternateButton = 1001;
  static constexpr int otherButton = 1002;
  static constexpr int cancelButton = 1003;

  /// Both references must outlive this object.
  Interface(Defaults& defaults, const Localize& localize) : m_defaults(defaults), m_localize(localize) {}
  virtual ~Interface() = default;
  Interface(const Interface&) = delete;
  Interface& operator=(const Interface&) = delete;

  /// Shows an alert and returns the answer. If the user ticked "don't ask again" and didn't press the button of Escape,
  /// the suppression setting is set. The setting isn't consulted here: callers check it before they ask.
  int alert(const Alert& question);
  /// Resets the suppression setting, because the user cancelled after all in a later step.
  void askAgain(const Alert& question);
  /// Shows an alert as a sheet of the main window and returns immediately. `completion` is called with the answer on
  /// the main thread; not at all if the window is closed meanwhile.
  virtual void beginSheet(const Alert& question, std::function<void(int)> completion) = 0;
  /// Shows an error alert with one button.
  virtual void error(const std::string& message, const std::string& informativeText) = 0;
  /// Shows an error as an alert.
  void present(const Error& failure);
  /// Shows the general alert for a failed save.
  void saveError();
  /// Returns the chosen path, with the allowed extension; none if the user cancels. Overwriting has been confirmed.
  virtual std::optional<std::filesystem::path> savePanel(const SavePanel& panel) = 0;
  /// Returns the chosen file or folder; none if the user cancels.
  virtual std::optional<std::filesystem::path> openPanel(const OpenPanel& panel) = 0;

 protected:
  struct Answer {
    int button = defaultButton;
    bool isSuppressed = false;  ///< "don't ask again" was ticked
  };
  /// Shows a modal alert.
  virtual Answer showAlert(const Alert& question) = 0;
  /// Sets the suppression setting, unless the question was answered by cancelling.
  void remember(const Alert& question, int answer);

 private:
  Defaults& m_defaults;
  const Localize& m_localize;
};

}  // namespace mirvel
