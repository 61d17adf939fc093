#include "capture/CaptureFilename.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QTimeZone>

#include <ctime>

namespace snapvane {

namespace {

/// The process's time zone and locale for one test.
class CaptureFilenameTest : public ::testing::Test {
public:
    ~CaptureFilenameTest() override {
        QLocale::setDefault(m_locale);
        setZone(m_zone);
    }

protected:
    static void setZone(const QByteArray& zone) {
        if (zone.isEmpty()) {
            qunsetenv("TZ");
        } else {
            qputenv("TZ", zone);
        }
        tzset();
    }

private:
    QLocale m_locale;
    QByteArray m_zone = qgetenv("TZ");
};

QDateTime local(int year, int month, int day, int hour, int minute, int second, int ms = 0) {
    return {QDate(year, month, day), QTime(hour, minute, second, ms)};
}

} // namespace

TEST_F(CaptureFilenameTest, SpellsTheLocalTime) {
    struct Case {
        QDateTime time;
        const char* name;
    };
    const Case cases[] = {
        {local(2025, 3, 2, 14, 3, 9), "Snapvane 2025-03-02 14.03.09.png"},
        {local(2025, 3, 9, 14, 5, 31), "Snapvane 2025-03-09 14.05.31.png"},
        {local(2025, 1, 1, 0, 0, 0), "Snapvane 2025-01-01 00.00.00.png"},
        {local(2025, 12, 31, 23, 59, 59, 999), "Snapvane 2025-12-31 23.59.59.png"},
        {local(2024, 2, 29, 12, 0, 0), "Snapvane 2024-02-29 12.00.00.png"},
        {local(987, 6, 5, 1, 2, 3), "Snapvane 0987-06-05 01.02.03.png"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CaptureFilename::pngFilename(c.time), QString::fromLatin1(c.name));
    }
}

TEST_F(CaptureFilenameTest, UsesPlainDigitsAnd24HoursInEveryLocale) {
    for (const char* name : {"ar_EG", "fa_IR", "hi_IN", "my_MM", "en_US", "de_DE", "th_TH"}) {
        SCOPED_TRACE(name);
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
        EXPECT_EQ(CaptureFilename::pngFilename(local(2025, 3, 2, 14, 3, 9)),
                  QStringLiteral("Snapvane 2025-03-02 14.03.09.png"));
    }
}

TEST_F(CaptureFilenameTest, ShowsAnInstantInTheProcesssTimeZone) {
    const QDateTime instant(QDate(2025, 3, 2), QTime(14, 3, 9), Qt::UTC);
    struct Case {
        const char* zone;
        const char* name;
    };
    const Case cases[] = {
        {"UTC0", "Snapvane 2025-03-02 14.03.09.png"},
        {"<+0530>-5:30", "Snapvane 2025-03-02 19.33.09.png"},
        {"<-11>11", "Snapvane 2025-03-02 03.03.09.png"},
        {"<+14>-14", "Snapvane 2025-03-03 04.03.09.png"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "Snapvane 2025-03-02 15.03.09.png"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.zone);
        setZone(c.zone);
        EXPECT_EQ(CaptureFilename::pngFilename(instant), QString::fromLatin1(c.name));
        EXPECT_EQ(CaptureFilename::pngFilename(instant.toOffsetFromUtc(7 * 3600)),
                  QString::fromLatin1(c.name));
    }
}

TEST_F(CaptureFilenameTest, FollowsSummerTime) {
    setZone("CET-1CEST,M3.5.0,M10.5.0/3");
    const QDateTime summer(QDate(2025, 7, 1), QTime(22, 30, 0), Qt::UTC);
    EXPECT_EQ(CaptureFilename::pngFilename(summer),
              QStringLiteral("Snapvane 2025-07-02 00.30.00.png"));
}

TEST_F(CaptureFilenameTest, LooksLikeItsPattern) {
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(CaptureFilename::pngFilenamePattern().pattern()));
    for (const char* name : {"ar_EG", "en_US", "th_TH"}) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
        for (const QDateTime& time : {local(2025, 3, 2, 14, 3, 9), local(987, 6, 5, 1, 2, 3),
                                      local(9999, 12, 31, 23, 59, 59)}) {
            EXPECT_TRUE(pattern.match(CaptureFilename::pngFilename(time)).hasMatch());
        }
    }
}

TEST_F(CaptureFilenameTest, OtherNamesDoNotLookLikeThePattern) {
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(CaptureFilename::pngFilenamePattern().pattern()));
    ASSERT_TRUE(pattern.isValid());
    for (const char* name :
         {"", "Snapvane.png", "Snapvane 2025-03-02 14.03.09", "Snapvane 2025-03-02 14.03.09.PNG",
          "Snapvane 2025-03-02 14.03.09.jpg", "Snapvane 2025-03-02 14.03.09xpng",
          "Snapvane 2025-03-02 14.03.09 (1).png", "snapvane 2025-03-02 14.03.09.png",
          "My Snapvane 2025-03-02 14.03.09.png", "Snapvane 2025-03-02 14:03:09.png",
          "Snapvane 2025-03-02 14-03-09.png", "Snapvane 2025-3-2 14.03.09.png",
          "Snapvane 25-03-02 14.03.09.png", "Snapvane  2025-03-02 14.03.09.png",
          "Snapvane 2025-03-02 14.03.09.png\n"}) {
        EXPECT_FALSE(pattern.match(QString::fromLatin1(name)).hasMatch()) << name;
    }
    EXPECT_FALSE(
        pattern.match(QStringLiteral("Snapvane \u0662\u0660\u0662\u0665-03-02 14.03.09.png"))
            .hasMatch());
}

} // namespace snapvane
