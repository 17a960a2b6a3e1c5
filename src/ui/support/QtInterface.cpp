#include "ui/support/QtInterface.h"

#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <system_error>
#include <utility>

#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

constexpr char answerProperty[] = "answer";

/// The role determines where the desktop places the button: as the accepting one, the rejecting one (Escape), or
/// another.
QMessageBox::ButtonRole roleOf(int answer, const Alert& question) {
  const bool isOnlyOne = question.buttons().size() == 1;
  if (answer == question.escapeAnswer() && !isOnlyOne) return QMessageBox::RejectRole;
  return answer == Interface::defaultButton ? QMessageBox::AcceptRole : QMessageBox::DestructiveRole;
}

void addButtons(QMessageBox& box, const Alert& question) {
  for (const auto& [title, answer] : question.buttons()) {
    QPushButton* button = box.addButton(qt(title), roleOf(answer, question));
    button->setProperty(answerProperty, answer);
    if (answer == question.returnAnswer()) box.setDefaultButton(button);
    if (answer == question.escapeAnswer()) box.setEscapeButton(button);
  }
}

/// Prevents file names from being interpreted as markup.
void usePlainText(QMessageBox& box) {
  box.setTextFormat(Qt::PlainText);
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
}

/// The answer of the button that was pressed, or that of Escape if the box was closed without one.
int answerOf(const QMessageBox& box) {
  const QAbstractButton* button = box.clickedButton() ? box.clickedButton() : box.escapeButton();
  return button ? button->property(answerProperty).toInt() : Interface::defaultButton;
}

bool isTicked(const QMessageBox& box) {
  return box.checkBox() && box.checkBox()->isChecked();
}

/// Closes a sheet without an answer when its window closes.
class SheetEnd final : public QObject {
 public:
  SheetEnd(QWidget& window, QMessageBox& sheet) : QObject(&sheet), m_sheet(sheet) { window.installEventFilter(this); }

  bool eventFilter(QObject* /*window*/, QEvent* event) override {
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
      m_sheet.disconnect(this);  // the answer is connected with this object as context
      m_sheet.reject();
    }
    return false;
  }

 private:
  QMessageBox& m_sheet;
};

}  // namespace

QtInterface::QtInterface(Defaults& defaults, const Localize& localize)
    : Interface(defaults, localize), m_localize(localize) {}

void QtInterface::beginSheet(const Alert& question, std::function<void(int)> completion) {
  QMessageBox* box = makeBox(question, m_window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::WindowModal);
  QObject* context = m_window ? new SheetEnd(*m_window, *box) : static_cast<QObject*>(box);
  QObject::connect(box, &QDialog::finished, context, [this, box, question, completion = std::move(completion)] {
    const int button = answerOf(*box);
    if (isTicked(*box)) remember(question, button);
    const auto answer = completion;  // a copy, since the call may destroy the box
    answer(button);
  });
  box->open();
}

void QtInterface::error(const std::string& message, const std::string& informativeText) {
  (void)showAlert({.message = message, .informativeText = informativeText, .defaultTitle = m_localize.ok()});
}

Interface::Answer QtInterface::showAlert(const Alert& question) {
  // The parent may be destroyed, together with the box, while the alert is open.
  const QPointer<QMessageBox> box = makeBox(question, activeWindow());
  box->exec();
  if (!box) return {.button = question.escapeAnswer()};
  const Answer answer{.button = answerOf(*box), .isSuppressed = isTicked(*box)};
  delete box;
  return answer;
}

std::optional<fs::path> QtInterface::savePanel(const SavePanel& panel) {
  const std::string extension = panel.allowedType.empty() ? "" : "." + panel.allowedType;
  const auto hasExtension = [&](const fs::path& file) { return extension.empty() || file.extension() == extension; };

  QFileDialog dialog(activeWindow());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::ReadOnly, !panel.canCreateDirectories);
  if (const auto folder = qtPath(panel.folder)) dialog.setDirectory(*folder);
  if (!extension.empty()) {
    dialog.setNameFilter(QLatin1Char('*') + qt(extension));
    dialog.setDefaultSuffix(qt(panel.allowedType));
  }
  dialog.selectFile(qt(hasExtension(panel.name) ? panel.name : panel.name + extension));

  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    fs::path chosen = path(dialog.selectedFiles().constFirst());
    if (hasExtension(chosen)) return chosen;
    chosen += extension;
    std::error_code failure;
    if (fs::symlink_status(chosen, failure).type() == fs::file_type::not_found) return chosen;
    dialog.selectFile(displayText(chosen));  // the dialog hasn't asked yet whether to replace that file
  }
  return std::nullopt;
}

std::optional<fs::path> QtInterface::openPanel(const OpenPanel& panel) {
  QFileDialog dialog(activeWindow());
  dialog.setFileMode(panel.choosesFolders ? QFileDialog::Directory : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::ShowDirsOnly, panel.choosesFolders);
  if (panel.showsHiddenFiles) dialog.setFilter(dialog.filter() | QDir::Hidden);
  if (!panel.allowedTypes.empty()) {
    QStringList patterns;
    for (const std::string& type : panel.allowedTypes) patterns.append(QStringLiteral("*.") + qt(type));
    dialog.setNameFilter(patterns.join(QLatin1Char(' ')));
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  const fs::path chosen = path(dialog.selectedFiles().constFirst());
  std::error_code failure;
  fs::path resolved = fs::canonical(chosen, failure);
  return failure ? chosen : resolved;
}

QMessageBox* QtInterface::makeBox(const Alert& question, QWidget* parent) const {
  auto* box = new QMessageBox(parent);
  box->setIcon(question.buttons().size() > 1 ? QMessageBox::Question : QMessageBox::Warning);
  box->setWindowTitle(QGuiApplication::applicationDisplayName());
  box->setText(qt(question.message));
  box->setInformativeText(qt(question.informativeText));
  usePlainText(*box);
  addButtons(*box, question);
  if (!question.suppression.empty()) box->setCheckBox(new CheckBox(qt(m_localize.format("Don’t ask again", {}))));
  return box;
}

QWidget* QtInterface::activeWindow() const {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  if (QWidget* active = QApplication::activeWindow()) return active;
  return m_window;
}

}  // namespace mirvel::ui
