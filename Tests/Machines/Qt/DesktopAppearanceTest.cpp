// The desktop's preference for light or dark, over a message bus of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>

#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto group = "org.freedesktop.appearance";
constexpr auto key = "color-scheme";

constexpr unsigned noPreference = 0;
constexpr unsigned prefersDark = 1;
constexpr unsigned prefersLight = 2;

/// One for the whole process, which reads the bus's address only once.
class SessionBus : public testing::Environment {
 public:
  void TearDown() override {
    daemon.terminate();
    daemon.waitForFinished();
  }

  const std::string& address() {
    if (!busAddress.empty()) return busAddress;
    daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    EXPECT_TRUE(daemon.waitForReadyRead()) << "package dbus-daemon";
    busAddress = daemon.readLine().trimmed().toStdString();
    return busAddress;
  }

 private:
  QProcess daemon;
  std::string busAddress;
};
SessionBus& sessionBus = *new SessionBus;
const testing::Environment* const ending = testing::AddGlobalTestEnvironment(&sessionBus);

/// The desktop's portal; old ones wrap their answers in another variant.
class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(unsigned firstScheme) : scheme(firstScheme) {
    EXPECT_TRUE(bus.registerVirtualObject(path, this));
    EXPECT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
  }
  ~Portal() override { QDBusConnection::disconnectFromBus("portal"); }
  Portal(const Portal&) = delete;
  Portal& operator=(const Portal&) = delete;

  void choose(unsigned newScheme) {
    scheme = newScheme;
    tell(key, newScheme);
  }
  void tell(const char* changedKey, unsigned value) {
    auto signal = QDBusMessage::createSignal(path, interface, "SettingChanged");
    signal << group << changedKey << QVariant::fromValue(QDBusVariant(value));
    EXPECT_TRUE(bus.send(signal));
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.arguments() != QVariantList{group, key}) return false;
    const QDBusVariant wrapped(QVariant::fromValue(QDBusVariant(scheme)));
    return connection.send(message.createReply(QVariant::fromValue(wrapped)));
  }

 private:
  unsigned scheme;
  QDBusConnection bus =
      QDBusConnection::connectToBus(QString::fromStdString(sessionBus.address()), "portal");
};

class DesktopAppearanceTest : public testing::Test {
 public:
  ~DesktopAppearanceTest() override { QtBench::drop(); }

 protected:
  void begin() {
    Application& application =
        QtBench::renewed({.sessionBus = sessionBus.address()}).frame().application();
    observation = application.observeEffectiveAppearance(
        [this, &application] { reported.push_back(application.effectiveAppearance()); });
  }
  bool comes(Appearance appearance) {
    QtBench& bench = QtBench::shared();
    return bench.runUntil(
        [&] { return bench.frame().application().effectiveAppearance() == appearance; });
  }

  std::vector<Appearance> reported;
  Observation observation;
};

TEST_F(DesktopAppearanceTest, ThePortalsPreferenceAppliesAsSoonAsItHasAnswered) {
  Portal portal(prefersDark);
  begin();
  EXPECT_TRUE(comes(Appearance::dark));
  EXPECT_THAT(reported, ElementsAre(Appearance::dark));
}

TEST_F(DesktopAppearanceTest, EachChangeAppliesAndWithoutAPreferenceTheDesktopsColoursDecide) {
  Portal portal(noPreference);
  begin();
  portal.choose(prefersDark);
  EXPECT_TRUE(comes(Appearance::dark));
  portal.choose(noPreference);
  EXPECT_TRUE(comes(Appearance::light)) << "its colours are light";
  portal.choose(prefersDark);
  EXPECT_TRUE(comes(Appearance::dark));
  portal.choose(prefersLight);
  EXPECT_TRUE(comes(Appearance::light));
  EXPECT_THAT(reported, ElementsAre(Appearance::dark, Appearance::light, Appearance::dark,
                                    Appearance::light));
}

TEST_F(DesktopAppearanceTest, OtherSettingsAreIgnored) {
  Portal portal(prefersDark);
  begin();
  EXPECT_TRUE(comes(Appearance::dark));
  portal.tell("contrast", prefersLight);
  portal.choose(prefersLight);
  EXPECT_TRUE(comes(Appearance::light));
  EXPECT_EQ(reported.size(), 2u);
}

TEST_F(DesktopAppearanceTest, WithoutAPortalTheColoursDecide) {
  begin();
  QtBench::shared().settle();
  EXPECT_EQ(QtBench::shared().frame().application().effectiveAppearance(), Appearance::light);
  EXPECT_THAT(reported, IsEmpty());
}

}  // namespace
}  // namespace brivane
