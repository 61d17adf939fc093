#include "base/Translation.h"

#include <gtest/gtest.h>

#include <QTranslator>

namespace snapvane {

namespace {

/// Answers for the program's own texts only.
class UpperCase : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char*, int) const override {
        return QByteArray(context) == "Snapvane" ? QString::fromUtf8(source).toUpper() : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

TEST(Translation, GivesTheSourceTextWithoutATranslator) {
    EXPECT_EQ(translated("Quit \u2192"), QStringLiteral("Quit \u2192"));
}

TEST(Translation, AsksTheInstalledTranslator) {
    UpperCase translator;
    QCoreApplication::installTranslator(&translator);
    const QString text = translated("Quit");
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(text, QStringLiteral("QUIT"));
}

} // namespace snapvane
