#include "platform/xdg/XdgMotionPreference.h"

#include "platform/xdg/GnomeSettings.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace snapvane::xdg {

namespace {

constexpr char desktopVariable[] = "XDG_CURRENT_DESKTOP";

void setGnomeAnimations(bool enabled) {
    const GnomeSchema schema = findGnomeSchema("org.gnome.desktop.interface");
    ASSERT_TRUE(schema);
    const GnomeSettings settings = gnomeSettings(*schema, nullptr);
    ASSERT_TRUE(g_settings_set_boolean(settings.get(), "enable-animations", enabled));
}

QString kdeFile() {
    return QDir::home().filePath(QStringLiteral(".config/kdeglobals"));
}

void setKdeFile(const QByteArray& text) {
    ASSERT_TRUE(QDir::home().mkpath(QStringLiteral(".config")));
    QFile file(kdeFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

class MotionPreferenceTest : public ::testing::Test {
public:
    ~MotionPreferenceTest() override {
        qunsetenv(desktopVariable);
        QFile::remove(kdeFile());
        setGnomeAnimations(true);
    }

protected:
    bool isReduced() const { return m_preference.isReduced(); }

private:
    XdgMotionPreference m_preference;
};

TEST_F(MotionPreferenceTest, ThingsMoveWhereNoDesktopIsKnown) {
    setGnomeAnimations(false);
    setKdeFile("[KDE]\nAnimationDurationFactor=0\n");
    EXPECT_FALSE(isReduced());
    qputenv(desktopVariable, "XFCE");
    EXPECT_FALSE(isReduced());
}

TEST_F(MotionPreferenceTest, GnomeSaysWhetherThingsMove) {
    qputenv(desktopVariable, "ubuntu:GNOME");
    EXPECT_FALSE(isReduced());
    setGnomeAnimations(false);
    EXPECT_TRUE(isReduced());
    setGnomeAnimations(true);
    EXPECT_FALSE(isReduced());
}

struct KdeFile {
    const char* name;
    const char* text;
    bool reduced;
};

class KdeMotion : public MotionPreferenceTest, public ::testing::WithParamInterface<KdeFile> {};

INSTANTIATE_TEST_SUITE_P(
    MotionPreference, KdeMotion,
    ::testing::Values(KdeFile{"Instant", "[KDE]\nAnimationDurationFactor=0\n", true},
                      KdeFile{"Quick", "[KDE]\nAnimationDurationFactor=0.35\n", false},
                      KdeFile{"Usual", "[KDE]\nAnimationDurationFactor=1\n", false},
                      KdeFile{"NoNumber", "[KDE]\nAnimationDurationFactor=often\n", false},
                      KdeFile{"Nothing", "[General]\nName=x\n", false}),
    [](const auto& file) { return file.param.name; });

TEST_P(KdeMotion, IsWhatTheFactorSays) {
    qputenv(desktopVariable, "KDE");
    EXPECT_FALSE(isReduced());
    setKdeFile(GetParam().text);
    EXPECT_EQ(isReduced(), GetParam().reduced);
}

} // namespace

} // namespace snapvane::xdg
