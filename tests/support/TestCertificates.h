#pragma once

#include "TestHttpServer.h"

#include <QSslCertificate>
#include <QTemporaryDir>

namespace snapvane::testing {

/// A certificate authority and servers' certificates that exist for this test program alone, made
/// by the openssl command. Throws std::runtime_error when that fails. Test thread only.
class TestCertificates {
public:
    TestCertificates();

    /// What the program must trust for any of them to be worth something.
    [[nodiscard]] QSslCertificate authority() const;

    /// For loopback, from yesterday until tomorrow.
    [[nodiscard]] ServerIdentity valid() const;
    /// For loopback, until yesterday.
    [[nodiscard]] ServerIdentity expired() const;
    /// For loopback, from tomorrow.
    [[nodiscard]] ServerIdentity notYetValid() const;
    [[nodiscard]] ServerIdentity forAnotherHost() const;
    /// For loopback, vouched for by nobody else.
    [[nodiscard]] ServerIdentity selfSigned() const;

private:
    void run(const QStringList& arguments) const;
    ServerIdentity issue(const QString& name, const QString& alternativeName, int fromDay,
                         int toDay) const;
    [[nodiscard]] QString path(const QString& file) const { return m_folder.filePath(file); }
    [[nodiscard]] QByteArray contents(const QString& file) const;

    QTemporaryDir m_folder;
};

} // namespace snapvane::testing
