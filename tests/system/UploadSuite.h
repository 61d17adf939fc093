#pragma once

#include "AfterCaptureSuite.h"
#include "ClipboardReader.h"
#include "FerryboxServer.h"
#include "NoticeText.h"
#include "SecretServiceClient.h"
#include "SecretServiceDaemon.h"

namespace snapvane::testing {

/// A desktop with a keyring that holds the service's key, and the program built for a service on
/// loopback, which each test starts as it needs it.
class UploadSuite : public AfterCaptureSuite {
protected:
    static constexpr QRect area = {100, 100, 200, 100};
    /// Nothing else looks like it.
    static constexpr char key[] = "fbx-5f3e9c1d7a-geheim";

    static void SetUpTestSuite();
    static void TearDownTestSuite();
    /// For suites whose user has no key.
    static void startDesktopWithEmptyKeyring();
    /// Takes the place of the keyring there was.
    static void restartKeyring(KeyringUser user);
    static void storeKey();
    static const SecretServiceDaemon& keyring() { return *s_keyring; }

    void TearDown() override;

    /// The one service that the program knows; throws std::runtime_error when its port is taken.
    FerryboxServer& startService(FerryboxServer::Faults faults = {});
    FerryboxServer& service() { return *m_service; }
    void startLoopbackAgent(const QByteArray& actions);
    void endLoopbackAgent() { endAgent(); }

    /// What the notice says once it says nothing else.
    static bool waitForText(const QString& regularExpression);
    static QStringList shownTexts() { return s_text->shown(); }
    static ClipboardReader clipboard() { return ClipboardReader(desktop().display()); }

    /// A fault that answers so.
    static FerryboxServer::Handler always(const HttpPlan& plan) {
        return [plan](const RecordedRequest&) { return plan; };
    }

private:
    static std::unique_ptr<SecretServiceDaemon> s_keyring;
    static std::unique_ptr<NoticeText> s_text;
    std::unique_ptr<FerryboxServer> m_service;
};

} // namespace snapvane::testing
