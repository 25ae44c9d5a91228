#include "ui/style/Announcement.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace pointloom {

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

void announce(QWidget& widget, const QString& words) {
    if (!QAccessible::isActive())
        return;
    QAccessibleAnnouncementEvent event(&widget, words);
    QAccessible::updateAccessibility(&event);
}

#else

namespace {

// Before Qt 6.8 what screen readers say by themselves is a notification that appears: this is an empty one of
// the window.
class Notification final : public QWidget {
public:
    using QWidget::QWidget;
};

QAccessibleInterface* makeNotificationInterface(const QString&, QObject* object) {
    auto* notification = dynamic_cast<Notification*>(object);
    return notification ? new QAccessibleWidget(notification, QAccessible::Notification) : nullptr;
}

Notification& notificationOf(QWidget& window) {
    for (QObject* child : window.children()) {
        if (auto* found = dynamic_cast<Notification*>(child))
            return *found;
    }
    QAccessible::installFactory(makeNotificationInterface);
    auto* made = new Notification(&window);
    made->setAttribute(Qt::WA_TransparentForMouseEvents);
    made->resize(0, 0);
    return *made;
}

}

void announce(QWidget& widget, const QString& words) {
    if (!QAccessible::isActive())
        return;
    Notification& notification = notificationOf(*widget.window());
    notification.hide();
    notification.setAccessibleName(words);
    notification.show();
}

#endif

}
