#pragma once

#include <QApplication>
#include <QTest>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/scripts/ScriptModule.h"

namespace mirvel::ui {

/// The editors with which each test runs.
enum class EditorKind { Coloured, Plain };

inline std::string nameOf(const testing::TestParamInfo<EditorKind>& info) {
  return info.param == EditorKind::Coloured ? "Coloured" : "Plain";
}

/// A script in the module's editor, or in the one used without the module.
class ScriptTextFixture : public testdata::ProgramFixture, public testing::WithParamInterface<EditorKind> {
 protected:
  ScriptText* makeText(QWidget* parent = nullptr) {
    const auto module = GetParam() == EditorKind::Coloured ? scriptModule() : folder.path() / "none.so";
    return makeScriptText(console, foundation.localize, QStringLiteral("Script"), parent, module);
  }
  /// The inner widget, which has the focus.
  static QWidget& innerWidget(const ScriptText& text) { return *text.focusProxy(); }
  static void invoke(const ScriptText& text, const char* slot) {
    EXPECT_TRUE(QMetaObject::invokeMethod(text.focusProxy(), slot)) << slot;
  }
};

}  // namespace mirvel::ui

/// Instantiates the tests for both editors.
#define MIRVEL_TEST_EDITINGS(name) \
  INSTANTIATE_TEST_SUITE_P(, name, testing::Values(EditorKind::Coloured, EditorKind::Plain), nameOf)
