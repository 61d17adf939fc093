#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QList>
#include <QMap>
#include <QString>

namespace snapvane::testing {

/// Another program on the bus that keeps secrets, by the protocol itself: it sees what a store left
/// behind, and can leave what a store would not. Throws std::runtime_error when the service
/// refuses. Test thread only.
class SecretServiceClient {
public:
    using Attributes = QMap<QString, QString>;

    struct Item {
        QString label;
        Attributes attributes;
        QByteArray value;
        QString contentType;
        /// The object path of the item, which starts with that of its collection.
        QString path;
    };

    explicit SecretServiceClient(const QString& busAddress);
    ~SecretServiceClient();
    SecretServiceClient(const SecretServiceClient&) = delete;
    SecretServiceClient& operator=(const SecretServiceClient&) = delete;

    /// Adds an item to the default collection, also where there is one like it.
    void put(const Attributes& attributes, const QByteArray& value);
    /// All that match and are not locked.
    [[nodiscard]] QList<Item> items(const Attributes& attributes);
    void lockDefaultCollection();
    /// Where the alias of the default collection leads.
    [[nodiscard]] QString defaultCollection();

    /// What the program's own key is found by.
    [[nodiscard]] static Attributes keyAttributes();
    /// The values of all items that are the program's key.
    [[nodiscard]] QList<QByteArray> keys();

private:
    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments);
    QVariant property(const QString& path, const QString& name);

    QString m_connectionName;
    QDBusConnection m_bus;
    QDBusObjectPath m_session;
};

} // namespace snapvane::testing
