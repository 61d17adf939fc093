#include "platform/xdg/KdeShortcuts.h"

#include "platform/xdg/FakeBusService.h"
#include "platform/xdg/KdeShortcutInfo.h"
#include "platform/xdg/SessionEnvironment.h"
#include "platform/xdg/UsKeys.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <map>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::Combination;
using ::snapvane::testing::combinations;
using ::snapvane::testing::FakeBusService;
using ::snapvane::testing::KdeShortcutInfo;
using ::snapvane::testing::KdeShortcutInfos;
using ::snapvane::testing::SessionEnvironment;
using ::snapvane::testing::usKeyOfSymbol;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

const QString name = u"org.kde.kglobalaccel"_s;

constexpr int metaA = static_cast<int>(Qt::MetaModifier) | Qt::Key_A;
constexpr int ctrlPrint = static_cast<int>(Qt::ControlModifier) | Qt::Key_Print;
constexpr int altF4 = static_cast<int>(Qt::AltModifier) | Qt::Key_F4;

const Combination ofMetaA = {0, CarbonModifier::command};
const Combination ofCtrlPrint = {105, CarbonModifier::control};
const Combination ofAltF4 = {118, CarbonModifier::option};

/// What each component answers, by its path. One without an answer stays silent.
using Components = std::map<QString, QVariant>;

QVariant shortcutsWith(const QList<QList<int>>& keysOfEach) {
    KdeShortcutInfos infos;
    for (const QList<int>& keys : keysOfEach) {
        infos.append(KdeShortcutInfo{.keys = keys, .defaultKeys = {Qt::Key_Z}});
    }
    return QVariant::fromValue(infos);
}

bool asksForComponents(const QDBusMessage& message) {
    return message.path() == u"/kglobalaccel"_s &&
           message.interface() == u"org.kde.KGlobalAccel"_s &&
           message.member() == u"allComponents"_s && message.arguments().isEmpty();
}

bool asksForShortcuts(const QDBusMessage& message) {
    return message.interface() == u"org.kde.kglobalaccel.Component"_s &&
           message.member() == u"allShortcutInfos"_s && message.arguments().isEmpty();
}

QVariant pathsOf(const Components& components) {
    QList<QDBusObjectPath> paths;
    for (const auto& [path, answer] : components) {
        paths.append(QDBusObjectPath(path));
    }
    return QVariant::fromValue(paths);
}

FakeBusService::Handler serviceWith(const Components& components) {
    return [components](const QDBusMessage& message, const QDBusConnection& connection) {
        if (asksForComponents(message)) {
            connection.send(message.createReply(pathsOf(components)));
            return;
        }
        const auto found = components.find(message.path());
        if (!asksForShortcuts(message) || found == components.end()) {
            connection.send(message.createErrorReply(QDBusError::UnknownMethod, message.member()));
        } else if (found->second.isValid()) {
            connection.send(message.createReply(found->second));
        }
    };
}

class KdeShortcutsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { testing::registerKdeTypes(); }

    static std::vector<Combination> shortcuts() {
        return combinations(kdeShortcuts(usKeyOfSymbol));
    }
};

TEST_F(KdeShortcutsTest, AreThoseOfAllComponents) {
    const FakeBusService service(
        name, serviceWith({{u"/component/kwin"_s, shortcutsWith({{metaA}, {altF4}})},
                           {u"/component/spectacle"_s, shortcutsWith({{ctrlPrint}})}}));
    EXPECT_THAT(shortcuts(), UnorderedElementsAre(ofMetaA, ofAltF4, ofCtrlPrint));
}

TEST_F(KdeShortcutsTest, EveryCombinationOfAShortcutCounts) {
    const FakeBusService service(
        name, serviceWith({{u"/component/kwin"_s, shortcutsWith({{metaA, ctrlPrint}})}}));
    EXPECT_THAT(shortcuts(), ElementsAre(ofMetaA, ofCtrlPrint));
}

TEST_F(KdeShortcutsTest, EntriesWithoutKeysAreLeftOut) {
    const FakeBusService service(
        name, serviceWith({{u"/component/kwin"_s, shortcutsWith({{}, {0}, {0, altF4}, {0, 0}})},
                           {u"/component/none"_s, shortcutsWith({})}}));
    EXPECT_THAT(shortcuts(), ElementsAre(ofAltF4));
}

TEST_F(KdeShortcutsTest, CombinationsWithoutTranslationAreLeftOut) {
    const FakeBusService service(
        name,
        serviceWith({{u"/component/kwin"_s, shortcutsWith({{Qt::Key_LaunchMail}, {metaA}})}}));
    EXPECT_THAT(shortcuts(), ElementsAre(ofMetaA));
}

TEST_F(KdeShortcutsTest, AreReadAnewOnEachCall) {
    {
        const FakeBusService service(
            name, serviceWith({{u"/component/kwin"_s, shortcutsWith({{metaA}})}}));
        EXPECT_THAT(shortcuts(), ElementsAre(ofMetaA));
    }
    const FakeBusService service(name,
                                 serviceWith({{u"/component/kwin"_s, shortcutsWith({{altF4}})}}));
    EXPECT_THAT(shortcuts(), ElementsAre(ofAltF4));
}

TEST_F(KdeShortcutsTest, AllComponentsAreAskedBeforeOneHasAnswered) {
    const Components components = {{u"/component/a"_s, shortcutsWith({{metaA}})},
                                   {u"/component/b"_s, shortcutsWith({{altF4}})},
                                   {u"/component/c"_s, shortcutsWith({{ctrlPrint}})}};
    const auto answer = serviceWith(components);
    std::vector<QDBusMessage> waiting; // touched by the service's thread only
    const FakeBusService service(
        name, [&](const QDBusMessage& message, const QDBusConnection& connection) {
            if (asksForComponents(message)) {
                answer(message, connection);
                return;
            }
            waiting.push_back(message);
            if (waiting.size() == components.size()) {
                for (const QDBusMessage& question : waiting) {
                    answer(question, connection);
                }
            }
        });
    EXPECT_THAT(shortcuts(), UnorderedElementsAre(ofMetaA, ofAltF4, ofCtrlPrint));
}

TEST_F(KdeShortcutsTest, NobodyWaitsForAServiceThatNeverAnswers) {
    const FakeBusService service(name, [](const QDBusMessage&, const QDBusConnection&) {});
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(shortcuts(), IsEmpty());
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(KdeShortcutsTest, TheOthersCountWhenOneComponentNeverAnswers) {
    const FakeBusService service(name, serviceWith({{u"/component/a"_s, QVariant()},
                                                    {u"/component/b"_s, shortcutsWith({{altF4}})},
                                                    {u"/component/c"_s, QVariant()}}));
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(shortcuts(), ElementsAre(ofAltF4));
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(KdeShortcutsTest, ManySilentComponentsTakeNoLongerThanOne) {
    Components components;
    for (int i = 0; i < 40; ++i) {
        components[u"/component/c%1"_s.arg(i)] = QVariant();
    }
    const FakeBusService service(name, serviceWith(components));
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(shortcuts(), IsEmpty());
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(KdeShortcutsTest, NothingOfOursHappensMeanwhile) {
    const FakeBusService service(name, [](const QDBusMessage&, const QDBusConnection&) {});
    QObject receiver;
    bool happened = false;
    QMetaObject::invokeMethod(
        &receiver, [&happened] { happened = true; }, Qt::QueuedConnection);
    shortcuts();
    EXPECT_FALSE(happened);
    QCoreApplication::processEvents();
    EXPECT_TRUE(happened);
}

TEST_F(KdeShortcutsTest, ComponentsOfOtherTypesAreSkipped) {
    const FakeBusService service(
        name, serviceWith({{u"/component/a"_s, u"text"_s},
                           {u"/component/b"_s, shortcutsWith({{metaA}})},
                           {u"/component/c"_s, QStringList{u"text"_s}},
                           {u"/component/d"_s, QVariant::fromValue(QList<int>{altF4})},
                           {u"/component/e"_s, 17}}));
    EXPECT_THAT(shortcuts(), ElementsAre(ofMetaA));
}

TEST_F(KdeShortcutsTest, ComponentsThatAnswerNothingTooMuchOrAnErrorAreSkipped) {
    const Components components = {{u"/component/a"_s, QVariant()},
                                   {u"/component/b"_s, QVariant()},
                                   {u"/component/c"_s, QVariant()},
                                   {u"/component/d"_s, shortcutsWith({{metaA}})}};
    const auto answer = serviceWith(components);
    const FakeBusService service(
        name, [&answer](const QDBusMessage& message, const QDBusConnection& connection) {
            if (message.path() == u"/component/a"_s) {
                connection.send(message.createReply());
            } else if (message.path() == u"/component/b"_s) {
                connection.send(message.createErrorReply(QDBusError::Failed, u"no"_s));
            } else if (message.path() == u"/component/c"_s) {
                connection.send(message.createReply({shortcutsWith({{altF4}}), u"more"_s}));
            } else {
                answer(message, connection);
            }
        });
    EXPECT_THAT(shortcuts(), ElementsAre(ofMetaA));
}

class KdeComponentLists : public ::testing::TestWithParam<QVariant> {};

TEST_P(KdeComponentLists, OfOtherTypesAreNone) {
    testing::registerKdeTypes();
    const auto answer = serviceWith({{u"/component/kwin"_s, shortcutsWith({{metaA}})}});
    const FakeBusService service(
        name, [&answer](const QDBusMessage& message, const QDBusConnection& connection) {
            if (asksForComponents(message)) {
                connection.send(message.createReply(GetParam()));
            } else {
                answer(message, connection);
            }
        });
    EXPECT_THAT(combinations(kdeShortcuts(usKeyOfSymbol)), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, KdeComponentLists,
    ::testing::Values(QVariant(u"/component/kwin"_s), QVariant(QStringList{u"/component/kwin"_s}),
                      QVariant(17), QVariant(QVariantList{u"/component/kwin"_s}),
                      QVariant::fromValue(QDBusObjectPath(u"/component/kwin"_s))));

TEST_F(KdeShortcutsTest, AServiceThatDoesNotRunIsNotStarted) {
    EXPECT_THAT(shortcuts(), IsEmpty());
    SessionEnvironment::letTheBusStartAnother();
    EXPECT_FALSE(SessionEnvironment::wasStarted(name));
    EXPECT_FALSE(QDBusConnection::sessionBus().interface()->isServiceRegistered(name).value());
}

} // namespace

} // namespace snapvane::xdg
