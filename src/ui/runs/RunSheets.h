#pragma once

#include "ui/editor/EditorContext.h"

class QWidget;

namespace mirvel::ui {

/// Registers the sheets about the runs of a job with the shell, and unregisters them in its destructor.
class RunSheets final {
 public:
  /// Both must outlive this object, as must everything that the context refers to.
  RunSheets(const EditorContext& context, QWidget& window);
  ~RunSheets();
  RunSheets(const RunSheets&) = delete;
  RunSheets& operator=(const RunSheets&) = delete;

 private:
  void showLog();
  void showTest();

  const EditorContext m_context;
  QWidget& m_window;
};

}  // namespace mirvel::ui
