#include "ui/export/TaskBarProgress.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

namespace pointloom {

TaskBarProgress::TaskBarProgress(const ExportRunner& runner, QObject* parent)
    : QObject(parent)
    , m_runner(runner) {
    connect(&m_runner, &ExportRunner::changed, this, [this] {
        const QueueStatus status = m_runner.queue().status();
        tell(status.left, status.left > 0 ? static_cast<int>(status.fraction * 100) : 0);
    });
}

TaskBarProgress::~TaskBarProgress() {
    tell(0, 0);
}

void TaskBarProgress::tell(int left, int percent) {
    if (std::exchange(m_told, {left, percent}) == std::pair(left, percent))
        return;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage update = QDBusMessage::createSignal(QStringLiteral("/org/pointloom/Pointloom"),
                                                     QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                                     QStringLiteral("Update"));
    update << QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName())
           << QVariantMap{{QStringLiteral("progress"), percent / 100.0},
                          {QStringLiteral("progress-visible"), left > 0},
                          {QStringLiteral("count"), qint64{left}},
                          {QStringLiteral("count-visible"), left > 1}};
    bus.send(update);
}

}
