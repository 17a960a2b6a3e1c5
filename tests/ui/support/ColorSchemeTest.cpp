#include "ui/support/ColorScheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>
#include <QStandardPaths>
#include <QStyle>
#include <memory>

#include "support/TestData.h"
#include "ui/EventLoop.h"

namespace mirvel::ui {

using testdata::eventually;

namespace {

constexpr char configuration[] = R"(<busconfig><type>session</type><listen>unix:dir=%1</listen>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>)";

/// A message bus that nobody else is on.
class PrivateBus {
 public:
  PrivateBus() {
    const QString text = QString::fromLatin1(configuration).arg(QString::fromStdString(m_folder.path().string()));
    const auto file = m_folder.write("bus.conf", text.toStdString());
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--config-file=%1").arg(QString::fromStdString(file))});
    if (m_daemon.waitForReadyRead()) m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
  }
  ~PrivateBus() {
    m_daemon.kill();
    m_daemon.waitForFinished();
  }
  const QString& address() const { return m_address; }

 private:
  testdata::TemporaryFolder m_folder;
  QProcess m_daemon;
  QString m_address;
};

}  // namespace

/// A settings portal whose user has one preference.
class Portal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  uint preference = 0;
  int reads = 0;

 public Q_SLOTS:
  QDBusVariant Read(const QString& group, const QString& key) {
    ++reads;
    const bool isKnown = group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? preference : 0)));
  }
};

class ColorSchemeTest : public testing::Test {
 protected:
  void SetUp() override {
    if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) GTEST_SKIP() << "no dbus-daemon";
    m_bus = std::make_unique<PrivateBus>();
    ASSERT_TRUE(connection("program").isConnected());
    ASSERT_EQ(schemeOf(QApplication::palette()), Scheme::Light) << "what the platform has here";
    m_scheme = std::make_unique<ColorScheme>(connection("program"));
  }
  void TearDown() override {
    m_scheme.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("program"));
    QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    QApplication::setPalette(QPalette());
  }
  QDBusConnection connection(const char* name) const {
    return QDBusConnection::connectToBus(m_bus->address(), QString::fromLatin1(name));
  }
  void openPortal(uint preference) {
    m_portal.preference = preference;
    QDBusConnection bus = connection("portal");
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &m_portal,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
  }
  void change(const char* group, const char* key, uint value) {
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                   QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    signal << QString::fromLatin1(group) << QString::fromLatin1(key) << QVariant::fromValue(QDBusVariant(value));
    EXPECT_TRUE(connection("portal").send(signal));
  }
  static bool becomes(Scheme scheme) {
    return eventually([scheme] { return schemeOf(QApplication::palette()) == scheme; });
  }

  std::unique_ptr<PrivateBus> m_bus;
  std::unique_ptr<ColorScheme> m_scheme;
  Portal m_portal;
};

TEST_F(ColorSchemeTest, FollowsThePreferenceOfTheDesktop) {
  openPortal(1);
  m_scheme->follow();
  EXPECT_EQ(schemeOf(QApplication::palette()), Scheme::Light) << "asks without waiting";
  EXPECT_TRUE(becomes(Scheme::Dark));
  EXPECT_EQ(QApplication::style()->name(), QStringLiteral("fusion"));

  change("org.freedesktop.appearance", "color-scheme", 2);
  EXPECT_TRUE(becomes(Scheme::Light));
  change("org.freedesktop.appearance", "color-scheme", 1);
  EXPECT_TRUE(becomes(Scheme::Dark));
  change("org.freedesktop.appearance", "accent-color", 2);
  change("org.gnome.desktop.interface", "color-scheme", 2);
  change("org.freedesktop.appearance", "color-scheme", 0);
  EXPECT_TRUE(becomes(Scheme::Light)) << "no preference: the platform's own";
}

TEST_F(ColorSchemeTest, KeepsAForcedScheme) {
  openPortal(2);
  m_scheme->follow();
  m_scheme->force(Scheme::Dark);
  EXPECT_EQ(schemeOf(QApplication::palette()), Scheme::Dark);
  EXPECT_TRUE(eventually([this] { return m_portal.reads > 0; })) << "its answer comes too late";
  change("org.freedesktop.appearance", "color-scheme", 2);
  testdata::settle();
  EXPECT_EQ(schemeOf(QApplication::palette()), Scheme::Dark);

  m_scheme->follow();
  EXPECT_TRUE(becomes(Scheme::Light));
}

TEST_F(ColorSchemeTest, LeavesAllAsItIsWithoutAPortal) {
  const QPalette before = QApplication::palette();
  m_scheme->follow();
  ColorScheme lone{QDBusConnection(QStringLiteral("never connected"))};
  lone.follow();
  testdata::settle();
  EXPECT_EQ(QApplication::palette(), before);
}

}  // namespace mirvel::ui

#include "ColorSchemeTest.moc"
