#include "ui/EventLoop.h"

#include <QCoreApplication>
#include <QTest>

namespace mirvel::testdata {

bool eventually(const std::function<bool()>& holds) {
  return QTest::qWaitFor(holds, 20'000);
}

void settle() {
  constexpr int idlePasses = 20;
  for (int pass = 0; pass < idlePasses; ++pass) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
  }
}

}  // namespace mirvel::testdata
