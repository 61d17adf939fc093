#include "HotKeyFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CenterAndSystem : public HotKeyFixture {
protected:
    bool isTaken(std::int64_t keyCode, std::int64_t modifiers) const {
        return m_center.isTakenBySystem(Shortcut::fromCarbon(keyCode, modifiers));
    }
};

} // namespace

TEST_F(CenterAndSystem, SkipsEntriesThatAreDisabledOrIncomplete) {
    m_system.symbolic = {{true, 35, 0x1200},        {false, 1, 0x100}, {true, std::nullopt, 0x100},
                         {true, 2, std::nullopt},   {true, {}, {}},    {true, 0, 0},
                         {false, std::nullopt, {}}, {true, -1, -1}};
    EXPECT_THAT(m_center.systemShortcuts(),
                ElementsAre(SystemHotKey{35, 0x1200}, SystemHotKey{0, 0}, SystemHotKey{-1, -1}));
}

TEST_F(CenterAndSystem, ReadsAnewOnEachCall) {
    EXPECT_THAT(m_center.systemShortcuts(), IsEmpty());
    m_system.symbolic = {{true, 35, 0x1200}};
    EXPECT_THAT(m_center.systemShortcuts(), ElementsAre(SystemHotKey{35, 0x1200}));
    EXPECT_TRUE(isTaken(35, 0x1200));
    m_system.symbolic.clear();
    EXPECT_FALSE(isTaken(35, 0x1200));
}

TEST_F(CenterAndSystem, TakenAreTheSystemsOwn) {
    m_system.symbolic = {{true, 123, 0x21000}, {false, 35, 0x1200}};
    EXPECT_TRUE(isTaken(123, 0x1000));
    EXPECT_FALSE(isTaken(35, 0x1200));
    EXPECT_FALSE(isTaken(124, 0x1000));
}

TEST_F(CenterAndSystem, TakenAreThoseOfOtherPrograms) {
    m_system.heldElsewhere = {{35, 0x1200}};
    EXPECT_TRUE(isTaken(35, 0x1200));
    EXPECT_FALSE(isTaken(35, 0x1000));
}

TEST_F(CenterAndSystem, OurOwnAreNotTaken) {
    const auto hotKey = registered(35, 0x1200);
    EXPECT_FALSE(isTaken(35, 0x1200));
}

TEST_F(CenterAndSystem, F12AloneIsNeverTaken) {
    m_system.symbolic = {{true, 111, 0}, {true, 111, 0x100}};
    m_system.heldElsewhere = {{111, 0}};
    EXPECT_FALSE(isTaken(111, 0));
    EXPECT_TRUE(isTaken(111, 0x100));
}

/// Such numbers may have been stored by hand.
TEST_F(CenterAndSystem, NumbersBeyond32BitsAreNotTaken) {
    EXPECT_FALSE(isTaken(-1, 0x100));
    EXPECT_FALSE(isTaken(INT64_MAX, 0x100));
}

} // namespace KeyboardShortcuts
