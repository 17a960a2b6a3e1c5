#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <string>

#include "core/documents/FakeScriptView.h"
#include "support/ProgramFixture.h"

namespace mirvel::testdata {

/// A program whose scripts have windows without widgets. The user's answers are prepared one by one.
class DocumentFixture : public ProgramFixture {
 protected:
  ScriptDocuments& documents() {
    program().documents.setMakeView([this](ScriptDocument& document) {
      auto view = std::make_unique<FakeScriptView>(document);
      view->loadsLater = loadsLater;
      return view;
    });
    return program().documents;
  }
  /// Opens a script, and waits until it is there. Null if it isn't.
  ScriptDocument* open(const std::filesystem::path& file) {
    documents().open(URL::file(file));
    settleAll();
    const auto& all = documents().documents();
    return all.empty() ? nullptr : all.back().get();
  }
  static FakeScriptView& view(ScriptDocument& document) { return static_cast<FakeScriptView&>(document.view()); }
  std::filesystem::path script(const std::string& name, const std::string& content) const {
    return folder.write(name, content);
  }

  /// Runs everything that is due now on all queues.
  void settleAll() {
    for (int i = 0; i < 20; ++i) {
      fileQueue.runAll();
      checkQueue.runAll();
      queue.runDue();
    }
  }
  void answer(int button) { interface.answer = {.button = button}; }
  std::size_t copies() const {
    std::error_code none;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(roots.applicationSupport / "Scripts", none)) {
      if (entry.path().extension() == ".copy") ++count;
    }
    return count;
  }

  bool loadsLater = false;
};

}  // namespace mirvel::testdata
