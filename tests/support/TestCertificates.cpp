#include "TestCertificates.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString loopback = u"IP:127.0.0.1,DNS:localhost"_s;
const QString anotherHost = u"DNS:elsewhere.example"_s;
const QStringList newKey = {u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:prime256v1"_s,
                            u"-nodes"_s};

constexpr char authorityRules[] = R"([ca]
default_ca = test
[test]
database = index
new_certs_dir = .
rand_serial = yes
default_md = sha256
policy = names
copy_extensions = copy
unique_subject = no
[names]
commonName = supplied
)";

QString day(int fromToday) {
    return QDateTime::currentDateTimeUtc().addDays(fromToday).toString(u"yyyyMMddHHmmss'Z'"_s);
}

void write(const QString& path, const QByteArray& contents) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

} // namespace

TestCertificates::TestCertificates() {
    write(path(u"rules"_s), authorityRules);
    write(path(u"index"_s), {});
    run(QStringList{u"req"_s, u"-x509"_s} + newKey +
        QStringList{u"-subj"_s, u"/CN=Authority for tests"_s, u"-days"_s, u"2"_s, u"-addext"_s,
                    u"keyUsage=critical,keyCertSign"_s, u"-keyout"_s, u"authority.key"_s, u"-out"_s,
                    u"authority.pem"_s});
}

QSslCertificate TestCertificates::authority() const {
    return QSslCertificate(contents(u"authority.pem"_s));
}

ServerIdentity TestCertificates::valid() const {
    return issue(u"valid"_s, loopback, -1, 1);
}

ServerIdentity TestCertificates::expired() const {
    return issue(u"expired"_s, loopback, -3, -1);
}

ServerIdentity TestCertificates::notYetValid() const {
    return issue(u"early"_s, loopback, 1, 3);
}

ServerIdentity TestCertificates::forAnotherHost() const {
    return issue(u"other"_s, anotherHost, -1, 1);
}

ServerIdentity TestCertificates::selfSigned() const {
    run(QStringList{u"req"_s, u"-x509"_s} + newKey +
        QStringList{u"-subj"_s, u"/CN=127.0.0.1"_s, u"-days"_s, u"2"_s, u"-addext"_s,
                    u"subjectAltName="_s + loopback, u"-keyout"_s, u"self.key"_s, u"-out"_s,
                    u"self.pem"_s});
    return {QSslCertificate(contents(u"self.pem"_s)), QSslKey(contents(u"self.key"_s), QSsl::Ec)};
}

void TestCertificates::run(const QStringList& arguments) const {
    QProcess openssl;
    openssl.setWorkingDirectory(m_folder.path());
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.start(u"openssl"_s, arguments);
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        throw std::runtime_error("openssl " + arguments.join(u' ').toStdString() +
                                 " failed: " + openssl.readAll().toStdString());
    }
}

ServerIdentity TestCertificates::issue(const QString& name, const QString& alternativeName,
                                       int fromDay, int toDay) const {
    const QString key = name + u".key"_s;
    const QString wish = name + u".request"_s;
    const QString certificate = name + u".pem"_s;
    run(QStringList{u"req"_s} + newKey +
        QStringList{u"-subj"_s, u"/CN="_s + name, u"-addext"_s,
                    u"subjectAltName="_s + alternativeName, u"-keyout"_s, key, u"-out"_s, wish});
    run({u"ca"_s, u"-batch"_s, u"-config"_s, u"rules"_s, u"-cert"_s, u"authority.pem"_s,
         u"-keyfile"_s, u"authority.key"_s, u"-in"_s, wish, u"-out"_s, certificate, u"-notext"_s,
         u"-startdate"_s, day(fromDay), u"-enddate"_s, day(toDay)});
    return {QSslCertificate(contents(certificate)), QSslKey(contents(key), QSsl::Ec)};
}

QByteArray TestCertificates::contents(const QString& file) const {
    QFile opened(path(file));
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

} // namespace snapvane::testing
