#include "base/Wipe.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

TEST(WipeTest, LeavesTextEmpty) {
    QString text = QString::fromUtf8("secret");
    wipe(text);
    EXPECT_TRUE(text.isEmpty());
}

TEST(WipeTest, LeavesBytesEmpty) {
    QByteArray bytes(6, 's');
    wipe(bytes);
    EXPECT_TRUE(bytes.isEmpty());
}

TEST(WipeTest, OverwritesTheBufferOfAText) {
    QString text = QString::fromUtf8("secret");
    const QString sharesIt = text;
    wipe(text);
    EXPECT_EQ(sharesIt, QString(6, QChar(0)));
}

TEST(WipeTest, OverwritesTheBufferOfBytes) {
    QByteArray bytes(6, 's');
    const QByteArray sharesIt = bytes;
    wipe(bytes);
    EXPECT_EQ(sharesIt, QByteArray(6, '\0'));
}

TEST(WipeTest, OverwritesWhatWasCutOff) {
    QByteArray bytes(100, 's');
    bytes.truncate(3);
    bytes.remove(0, 1);
    QByteArray sharesIt = bytes;
    const char* const begin = sharesIt.constData() - 1;
    wipe(bytes);
    EXPECT_EQ(QByteArray(begin, 100), QByteArray(100, '\0'));
}

TEST(WipeTest, LeavesOwnCopiesAlone) {
    QString text = QString::fromUtf8("secret");
    const QString copy(text.constData(), text.size());
    wipe(text);
    EXPECT_EQ(copy, u"secret"_s);
}

TEST(WipeTest, LeavesLiteralsAlone) {
    QString text = u"literal"_s;
    const QString again = text;
    wipe(text);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(again, u"literal"_s);
}

TEST(WipeTest, TakesNull) {
    QString text;
    QByteArray bytes;
    wipe(text);
    wipe(bytes);
    EXPECT_TRUE(text.isNull() && bytes.isNull());
}

TEST(WipeTest, TellsAnOnlyOwner) {
    QString text = QString::fromUtf8("secret");
    EXPECT_TRUE(isOnlyOwner(text));
    const QStringList sharesIt = {text};
    EXPECT_FALSE(isOnlyOwner(text));
    EXPECT_FALSE(isOnlyOwner(sharesIt.front()));
}

} // namespace

} // namespace snapvane
