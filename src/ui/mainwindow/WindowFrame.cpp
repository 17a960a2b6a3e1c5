#include "ui/mainwindow/WindowFrame.h"

#include <QGuiApplication>
#include <QScreen>

#include "ui/support/FrameNumbers.h"

namespace mirvel::ui {

namespace {

/// Whether enough of the window's top can be seen to take hold of it.
bool isWithinReach(const QRect& frame) {
  constexpr int handle = 64;
  const QRect top(frame.topLeft(), QSize(frame.width(), handle));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry().intersected(top);
    if (seen.width() >= handle && seen.height() >= handle / 2) return true;
  }
  return false;
}

}  // namespace

bool restoreFrame(QMainWindow& window, QSplitter& splitter, const Defaults& defaults) {
  const QList<int> sizes = numbersIn(defaults.text(Defaults::Key::splitFrames));
  if (sizes.size() == splitter.count()) splitter.setSizes(sizes);
  const QList<int> numbers = numbersIn(defaults.text(Defaults::Key::windowFrame));
  if (numbers.size() < 4) return false;
  const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
  if (frame.width() <= 0 || frame.height() <= 0 || !isWithinReach(frame)) return false;
  window.setGeometry(frame);
  return true;
}

void saveFrame(const QMainWindow& window, const QSplitter& splitter, Defaults& defaults) {
  const QRect frame = window.normalGeometry();
  (void)defaults.setText(Defaults::Key::windowFrame, textOf({frame.x(), frame.y(), frame.width(), frame.height()}));
  (void)defaults.setText(Defaults::Key::splitFrames, textOf(splitter.sizes()));
}

}  // namespace mirvel::ui
