#include "ui/editor/MaskControl.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cstddef>

#include "core/base/Const.h"
#include "core/editor/EditorTexts.h"
#include "core/text/Bidirectional.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

MaskControl::MaskControl(QLineEdit& text, const std::string& name, std::string_view help, const Localize& localize)
    : m_localize(localize), m_boxes{}, m_preview(new SecondaryLabel(QString())) {
  auto* const grid = new QGridLayout;
  addBoxes(*grid, name, help);
  m_preview->setWordWrap(true);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&text);
  layout->addLayout(grid);
  layout->addWidget(m_preview);
  setFocusProxy(&text);
}

void MaskControl::addBoxes(QGridLayout& grid, const std::string& name, std::string_view help) {
  const EditorTexts texts(m_localize);
  const std::array classes = {texts.user(), texts.group(), texts.others()};
  const std::array permissions = {texts.read(), texts.write(), texts.execute()};
  grid.addWidget(new SecondaryLabel(qt(texts.withheld())), 0, 0);
  for (std::size_t i = 0; i < classes.size(); ++i) {
    grid.addWidget(new SecondaryLabel(qt(classes[i])), 0, static_cast<int>(i) + 1, Qt::AlignHCenter);
    grid.addWidget(new QLabel(qt(permissions[i])), static_cast<int>(i) + 1, 0);
  }
  grid.setColumnStretch(static_cast<int>(classes.size()) + 1, 1);
  for (std::size_t permission = 0; permission < permissions.size(); ++permission) {
    for (std::size_t user = 0; user < classes.size(); ++user) {
      auto* const box = new CheckBox;
      box->setAccessibleName(qt(bidirectionalString({name, classes[user], permissions[permission]}, Const::separator,
                                                    m_localize.isRightToLeft())));
      setHelp(*box, help);
      connect(box, &QCheckBox::clicked, this, [this] { clicked(mask()); });
      grid.addWidget(box, static_cast<int>(permission) + 1, static_cast<int>(user) + 1, Qt::AlignHCenter);
      m_boxes[user][permission] = box;
    }
  }
}

Octal::Mask MaskControl::mask() const {
  Octal::Mask result;
  for (std::size_t i = 0; i < result.size(); ++i) {
    const auto& [read, write, execute] = m_boxes[i];
    result[i] = {.read = read->isChecked(), .write = write->isChecked(), .execute = execute->isChecked()};
  }
  return result;
}

void MaskControl::setMask(std::int64_t mask, bool isValid) {
  const Octal::Mask withheld = Octal::mask(mask);
  for (std::size_t i = 0; i < withheld.size(); ++i) {
    m_boxes[i][0]->setChecked(withheld[i].read);
    m_boxes[i][1]->setChecked(withheld[i].write);
    m_boxes[i][2]->setChecked(withheld[i].execute);
  }
  m_preview->setText(qt(EditorTexts(m_localize).newFilesAndFolders(Octal::newFile(mask), Octal::newFolder(mask))));
  m_preview->setVisible(isValid);
}

}  // namespace mirvel::ui
