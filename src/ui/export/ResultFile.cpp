#include "ui/export/ResultFile.h"

#include "l10n/Format.h"
#include "ui/common/Dialogs.h"

#include <functional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <QWidget>

namespace pointloom {

namespace {

// Calls `onFailure` where nothing opens even the folder; `receiver` gets the failure while it lives.
void showInFileManager(const QString& path, QObject* receiver, const std::function<void()>& onFailure) {
    const auto openFolder = [folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath()), onFailure] {
        if (!QDesktopServices::openUrl(folder))
            onFailure();
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
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), receiver);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openFolder] {
        watcher->deleteLater();
        if (QDBusPendingReply<>(*watcher).isError())
            openFolder();
    });
}

void tellNothingOpens(const ResultFile& result) {
    const QFileInfo file(result.path);
    result.context.dialogs.alert(result.parent, result.context.text(L10nKey::exportNoOpenerTitle),
                                 format(result.context.text(L10nKey::exportNoOpener), file.fileName(),
                                        QDir::toNativeSeparators(file.absolutePath())));
}

}

void ResultFile::play() const {
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        tellNothingOpens(*this);
}

void ResultFile::showInFolder() const {
    showInFileManager(path, parent, [context = context, parent = parent, path = path] {
        tellNothingOpens({context, parent, path});
    });
}

}
