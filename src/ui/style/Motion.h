// Whether the interface may move by itself, as the desktop's users choose.
#pragma once

#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace pointloom {

/// By namespace, as the settings portal of desktops gives them.
using DesktopSettings = QMap<QString, QVariantMap>;

/// GNOME's, KDE's and the portal's own setting; false where there is none of them.
bool asksForLessMotion(const DesktopSettings& settings);

/// One for the application. What moves without meaning asks `isReduced` when it appears.
class Motion : public QObject {
    Q_OBJECT

public:
    static Motion& shared();

    bool isReduced() const { return asksForLessMotion(m_settings); }

    /// Takes what the desktop says, now (some milliseconds later) and whenever it changes. Without a portal
    /// everything moves.
    void followDesktop();
    void take(const DesktopSettings& settings);

private Q_SLOTS:
    void takeOne(const QString& nameSpace, const QString& key, const QDBusVariant& value);

private:
    Motion() = default;

    DesktopSettings m_settings;
};

}
