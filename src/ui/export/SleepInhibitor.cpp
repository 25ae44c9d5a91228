#include "ui/export/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace pointloom {

namespace {

constexpr int patience = 1000; // milliseconds

QDBusMessage call(const QDBusConnection& bus, const QString& service, const QString& path,
                  const QString& interface, const QString& method, const QVariantList& arguments) {
    if (!bus.isConnected())
        return {};
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false); // what does not run has nothing to keep awake
    return bus.call(message, QDBus::Block, patience);
}

QDBusMessage callScreenSaver(const QString& method, const QVariantList& arguments) {
    const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
    return call(QDBusConnection::sessionBus(), service, QStringLiteral("/org/freedesktop/ScreenSaver"),
                service, method, arguments);
}

QDBusMessage callLogin(const QString& method, const QVariantList& arguments) {
    return call(QDBusConnection::systemBus(), QStringLiteral("org.freedesktop.login1"),
                QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
                method, arguments);
}

std::optional<QVariant> answerOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return reply.arguments().first();
}

}

SleepInhibitor::SleepInhibitor(const QString& reason) {
    const QString who = QStringLiteral("Pointloom");
    if (const auto cookie = answerOf(callScreenSaver(QStringLiteral("Inhibit"), {who, reason})))
        m_screenSaverCookie = cookie->toUInt();
    if (const auto lock = answerOf(callLogin(
            QStringLiteral("Inhibit"), {QStringLiteral("sleep:idle"), who, reason, QStringLiteral("block")})))
        m_loginLock = lock->value<QDBusUnixFileDescriptor>();
}

SleepInhibitor::~SleepInhibitor() {
    if (m_screenSaverCookie)
        callScreenSaver(QStringLiteral("UnInhibit"), {*m_screenSaverCookie});
}

}
