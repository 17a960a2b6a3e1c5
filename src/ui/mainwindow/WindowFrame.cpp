#include "ui/mainwindow/WindowFrame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "ui/support/SheetViewController.h"

namespace mirvel::ui {

namespace {

/// The part of a screen that is available to a window's contents, below its title bar.
QRect roomOn(const QScreen& screen, const QMainWindow& window) {
  const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
  return screen.availableGeometry().adjusted(0, titleBar, 0, 0);
}

/// The screen that shows most of the window's top edge, by which the window can be moved; null if no screen shows
/// enough of it.
const QScreen* screenOf(const QRect& frame) {
  constexpr int handle = 64;
  const QRect top(frame.topLeft(), QSize(frame.width(), handle));
  const QScreen* found = nullptr;
  int widest = handle - 1;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry().intersected(top);
    if (seen.height() < handle / 2 || seen.width() <= widest) continue;
    found = screen;
    widest = seen.width();
  }
  return found;
}

}  // namespace

QRect fitted(const QRect& frame, const QRect& place) {
  QRect result(frame.topLeft(), frame.size().boundedTo(place.size()));
  result.moveLeft(std::clamp(result.left(), place.left(), place.right() - result.width() + 1));
  result.moveTop(std::clamp(result.top(), place.top(), place.bottom() - result.height() + 1));
  return result;
}

void resizeToFit(QMainWindow& window, QSize wished) {
  window.resize(wished.boundedTo(roomOn(*window.screen(), window).size()));
}

bool restoreFrame(QMainWindow& window, QSplitter& splitter, const Defaults& defaults) {
  const QList<int> sizes = numbersIn(defaults.text(Defaults::Key::splitFrames));
  if (sizes.size() == splitter.count()) splitter.setSizes(sizes);
  const QList<int> numbers = numbersIn(defaults.text(Defaults::Key::windowFrame));
  if (numbers.size() < 4) return false;
  const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
  const QScreen* const screen = frame.width() > 0 && frame.height() > 0 ? screenOf(frame) : nullptr;
  if (!screen) return false;
  window.setGeometry(fitted(frame, roomOn(*screen, window)));
  return true;
}

void saveFrame(const QMainWindow& window, const QSplitter& splitter, Defaults& defaults) {
  const QRect frame = window.normalGeometry();
  (void)defaults.setText(Defaults::Key::windowFrame, textOf({frame.x(), frame.y(), frame.width(), frame.height()}));
  (void)defaults.setText(Defaults::Key::splitFrames, textOf(splitter.sizes()));
}

}  // namespace mirvel::ui
