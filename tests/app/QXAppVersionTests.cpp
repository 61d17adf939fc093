#include "app/QXAppVersion.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

const QString versionKey = QStringLiteral("CFBundleShortVersionString");
const QString buildKey = QStringLiteral("CFBundleVersion");

TEST(QXAppVersion, ValuesThatAreThere) {
    const QVariantMap information = {{versionKey, QStringLiteral("3.1.4")},
                                     {buildKey, QStringLiteral("159")}};
    EXPECT_EQ(QXAppVersion::shortVersion(information), QStringLiteral("3.1.4"));
    EXPECT_EQ(QXAppVersion::buildNumber(information), QStringLiteral("159"));
}

TEST(QXAppVersion, AbsentValues) {
    EXPECT_EQ(QXAppVersion::shortVersion({}), QStringLiteral("1.0"));
    EXPECT_EQ(QXAppVersion::buildNumber({}), QStringLiteral("1"));
    EXPECT_EQ(QXAppVersion::shortVersion({{buildKey, QStringLiteral("7")}}), QStringLiteral("1.0"));
    EXPECT_EQ(QXAppVersion::buildNumber({{versionKey, QStringLiteral("7")}}), QStringLiteral("1"));
}

TEST(QXAppVersion, ValuesThatAreNoText) {
    for (const QVariant& value : {QVariant(2), QVariant(2.5), QVariant(true), QVariant(),
                                  QVariant(QStringList{QStringLiteral("2.0")})}) {
        EXPECT_EQ(QXAppVersion::shortVersion({{versionKey, value}}), QStringLiteral("1.0"));
        EXPECT_EQ(QXAppVersion::buildNumber({{buildKey, value}}), QStringLiteral("1"));
    }
}

TEST(QXAppVersion, EmptyTextIsText) {
    EXPECT_EQ(QXAppVersion::shortVersion({{versionKey, QString()}}), QString());
}

TEST(QXAppVersion, TheProgramsOwn) {
    EXPECT_EQ(QXAppVersion::shortVersion(), QStringLiteral(SNAPVANE_VERSION));
    EXPECT_FALSE(QXAppVersion::buildNumber().isEmpty());
}

} // namespace

} // namespace snapvane
