#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptView.h"

namespace mirvel::testdata {

/// A window without widgets.
class FakeScriptView final : public ScriptView {
 public:
  explicit FakeScriptView(ScriptDocument& theDocument) : document(theDocument) {}

  ScriptDocument& document;
  std::string shown;
  bool modified = false;
  int timesInFront = 0;
  std::function<void()> filled;  ///< to be called when the text counts as loaded; only with `loadsLater`
  bool loadsLater = false;

  /// As the user types: replaces the whole text.
  void type(const std::string& text) {
    shown = text;
    modified = true;
    document.textChanged();
  }

  std::string text() const override { return shown; }
  void setText(std::shared_ptr<const std::string> text, std::function<void()> done) override {
    shown = *text;
    modified = false;
    if (!loadsLater) return done();
    filled = std::move(done);
  }
  void replaceText(const std::string& text) override { type(text); }
  bool isModified() const override { return modified; }
  void setModified(bool isModified) override { modified = isModified; }
  void refresh() override {}
  void bringToFront() override { ++timesInFront; }
};

}  // namespace mirvel::testdata
