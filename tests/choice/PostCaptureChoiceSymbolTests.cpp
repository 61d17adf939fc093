#include "choice/PostCaptureChoiceSymbol.h"

#include "base/Symbols.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

struct Named {
    PostCaptureChoiceSymbol symbol;
    const char* name;
};

// In the order of the cases.
constexpr Named table[] = {{PostCaptureChoiceSymbol::clipboard, "doc.on.clipboard"},
                           {PostCaptureChoiceSymbol::upload, "arrow.up.doc"},
                           {PostCaptureChoiceSymbol::folder, "folder"},
                           {PostCaptureChoiceSymbol::savedDefaults, "square.stack.3d.up"},
                           {PostCaptureChoiceSymbol::cancel, "xmark.circle"}};

} // namespace

TEST(PostCaptureChoiceSymbol, HasTheNamesOfItsDrawings) {
    ASSERT_EQ(allPostCaptureChoiceSymbols.size(), std::size(table));
    for (std::size_t i = 0; i < std::size(table); ++i) {
        const QString name = QString::fromUtf8(table[i].name);
        EXPECT_EQ(allPostCaptureChoiceSymbols[i], table[i].symbol) << table[i].name;
        EXPECT_EQ(rawValue(table[i].symbol), name);
        EXPECT_EQ(postCaptureChoiceSymbol(name), table[i].symbol);
        EXPECT_TRUE(Symbols::exists(name)) << table[i].name;
    }
}

TEST(PostCaptureChoiceSymbol, IsNothingByAnyOtherName) {
    EXPECT_EQ(postCaptureChoiceSymbol(u"clipboard"_s), std::nullopt);
    EXPECT_EQ(postCaptureChoiceSymbol(u"Folder"_s), std::nullopt);
    EXPECT_EQ(postCaptureChoiceSymbol(QString()), std::nullopt);
}

} // namespace snapvane
