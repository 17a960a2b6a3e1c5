#include <gtest/gtest.h>

#include <QApplication>
#include <QByteArray>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef MIRVEL_FONTS
  qputenv("FONTCONFIG_FILE", MIRVEL_FONTS);
#endif
  qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");  // tests don't affect the desktop of their user
  ::testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
