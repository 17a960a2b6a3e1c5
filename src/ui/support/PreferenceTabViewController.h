#pragma once

#include <QString>
#include <QWidget>
#include <string>
#include <utility>

namespace mirvel::ui {

/// A pane of the preferences window. Subclasses fill it in their constructor.
class PreferenceTabViewController : public QWidget {
 public:
  /// `image` is the name of a symbol, see `IconLoader::symbol`; `helpFragment` the section of the help pages that
  /// describes the pane.
  PreferenceTabViewController(QString label, std::string image, std::string helpFragment)
      : m_label(std::move(label)), m_image(std::move(image)), m_helpFragment(std::move(helpFragment)) {}

  const QString& tabLabel() const { return m_label; }
  const std::string& tabImage() const { return m_image; }
  const std::string& helpFragment() const { return m_helpFragment; }

 private:
  QString m_label;
  std::string m_image;
  std::string m_helpFragment;
};

}  // namespace mirvel::ui
