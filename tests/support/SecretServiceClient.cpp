#include "SecretServiceClient.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

/// As it goes over the bus, (oayays).
struct WireSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};

QDBusArgument& operator<<(QDBusArgument& argument, const WireSecret& secret) {
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WireSecret& secret) {
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

namespace {

const QString name = u"org.freedesktop.secrets"_s;
const QString servicePath = u"/org/freedesktop/secrets"_s;
const QString serviceInterface = u"org.freedesktop.Secret.Service"_s;
const QString itemInterface = u"org.freedesktop.Secret.Item"_s;
const QString collectionInterface = u"org.freedesktop.Secret.Collection"_s;

QString uniqueName() {
    static int count = 0;
    return u"secret client %1"_s.arg(++count);
}

} // namespace
} // namespace snapvane::testing

Q_DECLARE_METATYPE(snapvane::testing::WireSecret)

namespace snapvane::testing {

SecretServiceClient::SecretServiceClient(const QString& busAddress)
    : m_connectionName(uniqueName()),
      m_bus(QDBusConnection::connectToBus(busAddress, m_connectionName)) {
    qDBusRegisterMetaType<WireSecret>();
    qDBusRegisterMetaType<Attributes>();
    const QDBusMessage opened = call(servicePath, serviceInterface, u"OpenSession"_s,
                                     {u"plain"_s, QVariant::fromValue(QDBusVariant(QString()))});
    m_session = opened.arguments().at(1).value<QDBusObjectPath>();
}

SecretServiceClient::~SecretServiceClient() {
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void SecretServiceClient::put(const Attributes& attributes, const QByteArray& value) {
    const QVariantMap properties = {
        {itemInterface + u".Label"_s, u"of another program"_s},
        {itemInterface + u".Attributes"_s, QVariant::fromValue(attributes)}};
    const WireSecret secret = {m_session, {}, value, u"text/plain"_s};
    const bool replace = false;
    call(defaultCollection(), collectionInterface, u"CreateItem"_s,
         {properties, QVariant::fromValue(secret), replace});
}

QList<SecretServiceClient::Item> SecretServiceClient::items(const Attributes& attributes) {
    const QDBusMessage found =
        call(servicePath, serviceInterface, u"SearchItems"_s, {QVariant::fromValue(attributes)});
    QList<Item> items;
    for (const QDBusObjectPath& path :
         qdbus_cast<QList<QDBusObjectPath>>(found.arguments().at(0))) {
        const QDBusMessage answer =
            call(path.path(), itemInterface, u"GetSecret"_s, {QVariant::fromValue(m_session)});
        const auto secret = qdbus_cast<WireSecret>(answer.arguments().at(0));
        items.append({property(path.path(), u"Label"_s).toString(),
                      qdbus_cast<Attributes>(property(path.path(), u"Attributes"_s)), secret.value,
                      secret.contentType, path.path()});
    }
    return items;
}

void SecretServiceClient::lockDefaultCollection() {
    const QList<QDBusObjectPath> paths = {QDBusObjectPath(defaultCollection())};
    call(servicePath, serviceInterface, u"Lock"_s, {QVariant::fromValue(paths)});
}

QString SecretServiceClient::defaultCollection() {
    const QDBusMessage answer = call(servicePath, serviceInterface, u"ReadAlias"_s, {u"default"_s});
    return answer.arguments().at(0).value<QDBusObjectPath>().path();
}

SecretServiceClient::Attributes SecretServiceClient::keyAttributes() {
    return {{u"xdg:schema"_s, u"app.snapvane.Snapvane"_s},
            {u"service"_s, u"app.snapvane.Snapvane"_s},
            {u"account"_s, u"ferrybox"_s}};
}

QList<QByteArray> SecretServiceClient::keys() {
    QList<QByteArray> values;
    const QList<Item> found = items(keyAttributes());
    for (const Item& item : found) {
        values.append(item.value);
    }
    return values;
}

QVariant SecretServiceClient::property(const QString& path, const QString& propertyName) {
    const QDBusMessage answer =
        call(path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {itemInterface, propertyName});
    return answer.arguments().at(0).value<QDBusVariant>().variant();
}

QDBusMessage SecretServiceClient::call(const QString& path, const QString& interface,
                                       const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(name, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(message);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error((method + u": "_s + answer.errorMessage()).toStdString());
    }
    return answer;
}

} // namespace snapvane::testing
