#include "actions/CapturePreferences.h"

#include "CapturePreferencesSession.h"
#include "HomeFolder.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace snapvane {

namespace {

using testing::CapturePreferencesSession;
using ::testing::ElementsAre;
using testing::storedLine;

constexpr auto copyAction = AfterCaptureAction::copyToClipboard;
constexpr auto uploadAction = AfterCaptureAction::uploadFerrybox;
constexpr auto saveAction = AfterCaptureAction::saveToFolder;

class CapturePreferencesTest : public ::testing::Test {
protected:
    std::optional<QByteArray> stored(const char* key) const { return storedLine(m_file, key); }
    std::optional<QByteArray> storedActions() const { return stored("afterCaptureEnabledActions"); }
    /// What the next start of the program finds.
    AfterCaptureActions nextActions() const {
        return CapturePreferencesSession(m_file).preferences.enabledActions();
    }

    testing::HomeFolder m_home;
    PreferencesFile m_file;
    CapturePreferencesSession m_session{m_file};
    CapturePreferences& m_preferences = m_session.preferences;
};

/// Every set of actions with what stands in the file and in the menu for it.
struct SetCase {
    AfterCaptureActions actions;
    const char* stored;
    const char* title;
};

const SetCase sets[] = {
    {{}, "@Invalid()", "Saved defaults (none selected)"},
    {{copyAction}, "copyToClipboard", "Saved defaults (copy)"},
    {{uploadAction}, "uploadFerrybox", "Saved defaults (upload)"},
    {{saveAction}, "saveToFolder", "Saved defaults (save)"},
    {{copyAction, uploadAction},
     "copyToClipboard, uploadFerrybox",
     "Saved defaults (copy, upload)"},
    {{copyAction, saveAction}, "copyToClipboard, saveToFolder", "Saved defaults (copy, save)"},
    {{uploadAction, saveAction}, "saveToFolder, uploadFerrybox", "Saved defaults (upload, save)"},
    {{copyAction, uploadAction, saveAction},
     "copyToClipboard, saveToFolder, uploadFerrybox",
     "Saved defaults (copy, upload, save)"},
};

} // namespace

TEST_F(CapturePreferencesTest, StoreEverySetSorted) {
    for (const SetCase& c : sets) {
        SCOPED_TRACE(c.title);
        m_preferences.setEnabledActions(c.actions);
        EXPECT_EQ(m_preferences.enabledActions(), c.actions);
        EXPECT_EQ(storedActions(), c.stored);
        EXPECT_EQ(nextActions(), c.actions);
    }
}

TEST_F(CapturePreferencesTest, NameEverySetInTheMenu) {
    for (const SetCase& c : sets) {
        m_preferences.setEnabledActions(c.actions);
        EXPECT_EQ(m_preferences.savedDefaultsMenuTitle(), QString::fromLatin1(c.title));
    }
}

TEST_F(CapturePreferencesTest, StoreTheSameInWhateverOrderActionsAreEnabled) {
    auto order = allAfterCaptureActions;
    std::ranges::sort(order);
    do {
        m_preferences.setEnabledActions({});
        for (const AfterCaptureAction action : order) {
            m_preferences.setEnabled(action, true);
        }
        EXPECT_EQ(storedActions(), "copyToClipboard, saveToFolder, uploadFerrybox");
    } while (std::ranges::next_permutation(order).found);
}

TEST_F(CapturePreferencesTest, DisableOneAfterTheOther) {
    m_preferences.setEnabledActions({copyAction, uploadAction, saveAction});
    m_preferences.setEnabled(copyAction, false);
    EXPECT_EQ(storedActions(), "saveToFolder, uploadFerrybox");
    m_preferences.setEnabled(saveAction, false);
    EXPECT_EQ(storedActions(), "uploadFerrybox");
    m_preferences.setEnabled(uploadAction, false);
    EXPECT_EQ(m_preferences.enabledActions(), AfterCaptureActions());
    EXPECT_EQ(nextActions(), AfterCaptureActions());
}

TEST_F(CapturePreferencesTest, StoreAlsoWhatChangesNothing) {
    m_preferences.setEnabled(copyAction, false);
    EXPECT_EQ(storedActions(), "saveToFolder");
    m_preferences.setEnabled(saveAction, true);
    EXPECT_EQ(m_preferences.enabledActions(), AfterCaptureActions({saveAction}));
    EXPECT_EQ(storedActions(), "saveToFolder");
}

TEST_F(CapturePreferencesTest, StoreWhetherToAsk) {
    for (const bool ask : {true, false, true}) {
        m_preferences.setAskMeAfterCapture(ask);
        EXPECT_EQ(m_preferences.askMeAfterCapture(), ask);
        EXPECT_EQ(stored("askMeAfterCapture"), ask ? "true" : "false");
        EXPECT_EQ(CapturePreferencesSession(m_file).preferences.askMeAfterCapture(), ask);
    }
}

TEST_F(CapturePreferencesTest, StoreNothingElseBesideAChange) {
    m_preferences.setAskMeAfterCapture(false);
    EXPECT_EQ(storedActions(), std::nullopt);
    EXPECT_EQ(stored("saveFolderDisplayPath"), std::nullopt);
    m_preferences.setEnabled(copyAction, true);
    EXPECT_EQ(stored("afterCaptureMode"), std::nullopt);
    EXPECT_EQ(stored("saveFolderSecurityBookmark"), std::nullopt);
}

TEST_F(CapturePreferencesTest, LeaveTheOldModeWhereItIs) {
    const PreferencesFile file;
    file.write("[General]\nafterCaptureMode=askMe\n");
    CapturePreferencesSession session(file);
    session.preferences.setAskMeAfterCapture(false);
    session.preferences.setEnabled(copyAction, true);
    EXPECT_EQ(storedLine(file, "afterCaptureMode"), "askMe");
    EXPECT_EQ(storedLine(file, "afterCaptureEnabledActions"), "copyToClipboard, saveToFolder");
    EXPECT_FALSE(CapturePreferencesSession(file).preferences.askMeAfterCapture());
}

TEST_F(CapturePreferencesTest, AssigningTheLabelStoresNothing) {
    m_preferences.setSaveFolderDisplayPath(QStringLiteral("/somewhere"));
    EXPECT_EQ(m_preferences.saveFolderDisplayPath(), QStringLiteral("/somewhere"));
    EXPECT_EQ(stored("saveFolderDisplayPath"), std::nullopt);
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_home.path("Pictures/Snapvane"));
}

namespace {

/// What an observer finds when it hears of a change.
struct Sighting {
    AfterCaptureActions actions;
    bool ask;
    QString folder;
    std::optional<QByteArray> storedActions;
    std::optional<QByteArray> storedAsk;
    std::optional<QByteArray> storedFolder;
};

class CapturePreferencesObservedTest : public CapturePreferencesTest {
protected:
    CapturePreferencesObservedTest() {
        QObject::connect(
            &m_preferences, &CapturePreferences::objectWillChange, &m_preferences, [this] {
                seen.push_back({m_preferences.enabledActions(), m_preferences.askMeAfterCapture(),
                                m_preferences.saveFolderDisplayPath(), storedActions(),
                                stored("askMeAfterCapture"), stored("saveFolderDisplayPath")});
            });
    }

    std::vector<Sighting> seen;
};

} // namespace

TEST_F(CapturePreferencesObservedTest, AnnounceActionsBeforeTheyChange) {
    m_preferences.setEnabled(copyAction, true);
    m_preferences.setEnabledActions({uploadAction});
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].actions, AfterCaptureActions({saveAction}));
    EXPECT_EQ(seen[0].storedActions, std::nullopt);
    EXPECT_EQ(seen[1].actions, AfterCaptureActions({copyAction, saveAction}));
    EXPECT_EQ(seen[1].storedActions, "copyToClipboard, saveToFolder");
}

TEST_F(CapturePreferencesObservedTest, AnnounceAskingBeforeItChanges) {
    m_preferences.setAskMeAfterCapture(true);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_FALSE(seen[0].ask);
    EXPECT_EQ(seen[0].storedAsk, std::nullopt);
    EXPECT_TRUE(m_preferences.askMeAfterCapture());
}

TEST_F(CapturePreferencesObservedTest, AnnounceTheFolderBeforeItsLabelChanges) {
    m_home.makeFolder("chosen");
    m_preferences.setSaveFolder(m_home.path("chosen"));
    m_preferences.setSaveFolderDisplayPath(QStringLiteral("a label"));
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].folder, m_home.path("Pictures/Snapvane"));
    EXPECT_EQ(seen[0].storedFolder, std::nullopt);
    EXPECT_EQ(seen[1].folder, m_home.path("chosen"));
}

TEST_F(CapturePreferencesObservedTest, AnnounceAlsoWhatChangesNothing) {
    m_preferences.setEnabled(saveAction, true);
    m_preferences.setEnabled(copyAction, false);
    m_preferences.setAskMeAfterCapture(false);
    m_preferences.setSaveFolderDisplayPath(m_preferences.saveFolderDisplayPath());
    EXPECT_EQ(seen.size(), 4U);
}

} // namespace snapvane
