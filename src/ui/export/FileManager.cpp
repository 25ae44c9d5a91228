#include "ui/export/FileManager.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace pointloom {

void showInFileManager(const QString& path) {
    const auto openFolder = [folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath())] {
        QDesktopServices::openUrl(folder);
    };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder();
        return;
    }
    const QString service = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/FileManager1"), service, QStringLiteral("ShowItems"));
    const QStringList items{QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded())};
    message.setArguments({items, QString()});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openFolder] {
        if (QDBusPendingReply<>(*watcher).isError())
            openFolder();
        watcher->deleteLater();
    });
}

}
