#include "UploadSuite.h"

#include "Wait.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

std::unique_ptr<SecretServiceDaemon> UploadSuite::s_keyring;
std::unique_ptr<NoticeText> UploadSuite::s_text;

void UploadSuite::SetUpTestSuite() {
    startDesktopWithEmptyKeyring();
    storeKey();
}

void UploadSuite::storeKey() {
    SecretServiceClient(desktop().busAddress()).put(SecretServiceClient::keyAttributes(), key);
}

void UploadSuite::startDesktopWithEmptyKeyring() {
    startDesktop();
    s_text = std::make_unique<NoticeText>(desktop());
    restartKeyring(KeyringUser::Absent);
}

void UploadSuite::restartKeyring(KeyringUser user) {
    s_keyring.reset();
    s_keyring =
        std::make_unique<SecretServiceDaemon>(desktop().environment(), desktop().folders(), user);
}

void UploadSuite::TearDownTestSuite() {
    s_keyring.reset();
    s_text.reset();
    AfterCaptureSuite::TearDownTestSuite();
}

void UploadSuite::TearDown() {
    AfterCaptureSuite::TearDown();
    m_service.reset();
}

FerryboxServer& UploadSuite::startService(FerryboxServer::Faults faults) {
    m_service.reset();
    m_service = std::make_unique<FerryboxServer>(
        std::move(faults), FerryboxServer::Options{.port = SNAPVANE_LOOPBACK_PORT});
    return *m_service;
}

void UploadSuite::startLoopbackAgent(const QByteArray& actions) {
    AgentOptions options;
    options.program = QStringLiteral(SNAPVANE_LOOPBACK_PROGRAM);
    options.variables = {{QLatin1String(NoticeText::switchVariable), u"1"_s}};
    startAgent(actionsPreference(actions), options);
}

bool UploadSuite::waitForText(const QString& regularExpression) {
    const QRegularExpression expression(QRegularExpression::anchoredPattern(regularExpression));
    return waitUntil(
        [&] {
            const QStringList texts = shownTexts();
            return texts.size() == 1 && expression.match(texts.front()).hasMatch();
        },
        std::chrono::seconds(5));
}

} // namespace snapvane::testing
