#include "ui/style/Motion.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace pointloom {

namespace {

const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString plasma = QStringLiteral("org.kde.kdeglobals.KDE");
const QString freedesktop = QStringLiteral("org.freedesktop.appearance");

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalSettings = QStringLiteral("org.freedesktop.portal.Settings");

}

bool asksForLessMotion(const DesktopSettings& settings) {
    const QVariant animations = settings.value(gnome).value(QStringLiteral("enable-animations"));
    if (animations.isValid() && !animations.toBool())
        return true;
    if (settings.value(freedesktop).value(QStringLiteral("reduced-motion")).toUInt() == 1)
        return true;
    bool isNumber = false;
    const QVariant factor = settings.value(plasma).value(QStringLiteral("AnimationDurationFactor"));
    return factor.toDouble(&isNumber) == 0 && isNumber;
}

Motion& Motion::shared() {
    static Motion motion;
    return motion;
}

void Motion::followDesktop() {
    qDBusRegisterMetaType<DesktopSettings>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portal, portalPath, portalSettings, QStringLiteral("SettingChanged"), this,
                SLOT(takeOne(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(portal, portalPath, portalSettings, QStringLiteral("ReadAll"));
    question << QStringList{gnome, plasma, freedesktop};
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<DesktopSettings> answer = *watcher;
        watcher->deleteLater();
        if (!answer.isError())
            take(answer.value());
    });
}

void Motion::take(const DesktopSettings& settings) {
    m_settings = settings;
    QApplication::setEffectEnabled(Qt::UI_General, !isReduced()); // menus, lists and tool tips that fade in
}

void Motion::takeOne(const QString& nameSpace, const QString& key, const QDBusVariant& value) {
    DesktopSettings settings = m_settings;
    settings[nameSpace].insert(key, value.variant());
    take(settings);
}

}
