#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "core/app/Program.h"
#include "core/documents/ScriptDocuments.h"
#include "ui/EventLoop.h"
#include "ui/documents/EditScriptViewController.h"
#include "ui/documents/ScriptWindowController.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel::testdata {

/// Opens a script of a running program, and waits until its window is active.
inline ui::ScriptWindowController& openScript(Program& program, const std::filesystem::path& file) {
  const auto& documents = program.documents.documents();
  const std::size_t before = documents.size();
  program.shell.editScript(URL::file(file));
  EXPECT_TRUE(eventually([&] { return documents.size() > before && !documents.back()->isLoading(); })) << file;
  auto& window = static_cast<ui::ScriptWindowController&>(documents.back()->view());
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  return window;
}

/// Types at the insertion point of a script's window, which is activated.
inline void typeInto(ui::ScriptWindowController& window, const char* keys) {
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  window.content().text().setFocus();
  QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(keys));
}

/// Answers questions of the program as they are shown, one after another.
class Answers {
 public:
  /// Presses a button of a question, by its text. A question without that button fails the test, and is rejected.
  void add(const QString& button) {
    m_buttons.append(button);
    if (m_buttons.size() == 1) wait(0);
  }
  const QString& lastQuestion() const { return m_question; }
  bool areGiven() const { return m_buttons.isEmpty(); }

 private:
  void wait(int milliseconds) {
    QTimer::singleShot(milliseconds, &m_context, [this] { answer(); });
  }
  void answer() {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (m_buttons.isEmpty()) return;
    if (!box) return wait(5);
    m_question = box->text();
    const QString wanted = m_buttons.takeFirst();
    if (!m_buttons.isEmpty()) wait(5);
    for (QAbstractButton* each : box->buttons()) {
      if (each->text().remove(QLatin1Char('&')) == wanted) return each->click();
    }
    ADD_FAILURE() << m_question.toStdString() << " has no button " << wanted.toStdString();
    box->reject();
  }

  QObject m_context;
  QStringList m_buttons;
  QString m_question;
};

}  // namespace mirvel::testdata
