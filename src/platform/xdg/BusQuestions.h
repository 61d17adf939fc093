#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDeadlineTimer>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <optional>

namespace snapvane::xdg {

/// How long a desktop's service may keep a user waiting who has pressed a key.
inline constexpr std::chrono::milliseconds servicePatience{250};

/// What the readers of a desktop's shortcuts ask a service of the session bus, all of it until one
/// deadline. Reading an answer blocks the calling thread, without an event loop: nothing of ours
/// happens in between. The service is never started for a question.
class BusQuestions {
public:
    BusQuestions(const QString& service, QDeadlineTimer deadline)
        : m_service(service), m_deadline(deadline) {}

    /// Waits. False without a bus.
    [[nodiscard]] bool isServiceRunning() const {
        if (!m_bus.isConnected()) {
            return false;
        }
        const auto owned =
            answer(send(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                       QStringLiteral("/org/freedesktop/DBus"),
                                                       QStringLiteral("org.freedesktop.DBus"),
                                                       QStringLiteral("NameHasOwner")),
                        {m_service}),
                   QLatin1String("b"));
        return owned && owned->toBool();
    }

    /// Does not wait.
    [[nodiscard]] QDBusPendingCall ask(const QString& path, const QString& interface,
                                       const QString& method,
                                       const QVariantList& arguments = {}) const {
        return send(QDBusMessage::createMethodCall(m_service, path, interface, method), arguments);
    }

    /// Waits. Nothing when the answer is an error, of other types than these, or late.
    [[nodiscard]] static std::optional<QVariant> answer(QDBusPendingCall question,
                                                        QLatin1String signature) {
        question.waitForFinished();
        const QDBusMessage reply = question.reply();
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != signature) {
            return std::nullopt;
        }
        return reply.arguments().constFirst();
    }

private:
    [[nodiscard]] QDBusPendingCall send(QDBusMessage question,
                                        const QVariantList& arguments) const {
        question.setArguments(arguments);
        question.setAutoStartService(false);
        // Zero and less would stand for half a minute.
        const auto timeLeft = std::max<qint64>(1, m_deadline.remainingTime());
        return m_bus.asyncCall(question, static_cast<int>(timeLeft));
    }

    QString m_service;
    QDeadlineTimer m_deadline;
    QDBusConnection m_bus = QDBusConnection::sessionBus();
};

} // namespace snapvane::xdg
