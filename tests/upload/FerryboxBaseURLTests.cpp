#include "upload/FerryboxBaseURL.h"

#include "support/QtPrinting.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

/// The addresses of that kind in the table that the build's own check is tested with as well.
std::vector<QByteArray> addresses(const QByteArray& kind) {
    QFile table(QStringLiteral(SNAPVANE_BASE_URLS));
    std::vector<QByteArray> found;
    if (table.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : table.readAll().trimmed().split('\n')) {
            if (line.split(' ').value(0) == kind) {
                found.push_back(line.mid(kind.size() + 1));
            }
        }
    }
    return found;
}

class GoodBaseURLs : public ::testing::TestWithParam<QByteArray> {};
class BadBaseURLs : public ::testing::TestWithParam<QByteArray> {};

} // namespace

TEST_P(GoodBaseURLs, AreTakenAsTheyAre) {
    const auto url = parsedFerryboxBaseURL(QString::fromUtf8(GetParam()));
    ASSERT_TRUE(url.has_value()) << GetParam().constData();
    EXPECT_EQ(url->toEncoded(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Addresses, GoodBaseURLs, ::testing::ValuesIn(addresses("good")),
                         [](const auto& row) { return std::to_string(row.index); });

TEST_P(BadBaseURLs, AreRefused) {
    EXPECT_EQ(parsedFerryboxBaseURL(QString::fromUtf8(GetParam())), std::nullopt)
        << GetParam().constData();
}

INSTANTIATE_TEST_SUITE_P(Addresses, BadBaseURLs, ::testing::ValuesIn(addresses("bad")),
                         [](const auto& row) { return std::to_string(row.index); });

TEST(FerryboxBaseURL, IsWhatTheProgramWasBuiltWith) {
    EXPECT_EQ(ferryboxBaseURL().toEncoded(), SNAPVANE_FERRYBOX_URL);
}

} // namespace snapvane
