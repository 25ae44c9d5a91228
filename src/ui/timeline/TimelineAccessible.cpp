#include "ui/timeline/TimelineAccessible.h"

#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/timeline/TimelineCanvas.h"
#include "ui/timeline/TimelineToolTip.h"

#include <algorithm>
#include <QAccessibleWidget>
#include <QPointer>
#include <utility>

namespace pointloom {

namespace {

using Kind = TimelineHit::Kind;

QString nameAndTime(const UiContext& context, L10nKey name, double time) {
    return context.text(name) + QStringLiteral(": ") + shortTime(time, true);
}

QString markerName(const UiContext& context, const QUuid& id, double time) {
    const auto& markers = context.state.markers.value();
    const auto found = std::ranges::find(markers, id, &Marker::id);
    if (found == markers.end())
        return {};
    Marker marker = *found;
    marker.startTime = time;
    return context.text(L10nKey::marker) + QStringLiteral(": ") + markerAsSpoken(context, marker);
}

QString nameOf(const UiContext& context, const TimelineScene& scene, const TimelineHit& item, double time) {
    switch (item.kind) {
    case Kind::time:
        return nameAndTime(context, L10nKey::editorPlayhead, time);
    case Kind::marker:
        return markerName(context, item.id, time);
    case Kind::trimStart:
        return nameAndTime(context, L10nKey::timelineExportStart, time);
    case Kind::trimEnd:
        return nameAndTime(context, L10nKey::timelineExportEnd, time);
    case Kind::cut:
        if (const auto cut = std::ranges::find(scene.cuts, item.id, &CutZone::id); cut != scene.cuts.end())
            return cutRange(context, *cut);
        break;
    case Kind::cutStart:
        return nameAndTime(context, L10nKey::timelineCutStart, time);
    case Kind::cutEnd:
        return nameAndTime(context, L10nKey::timelineCutEnd, time);
    case Kind::trimLane:
    case Kind::nothing:
        break;
    }
    return {};
}

class ItemInterface final : public QAccessibleInterface,
                            public QAccessibleValueInterface,
                            public QAccessibleActionInterface {
public:
    ItemInterface(TimelineCanvas& canvas, const TimelineHit& item)
        : m_object(&canvas)
        , m_item(item) {}

    const TimelineHit& item() const { return m_item; }

    bool isValid() const override { return canvas() && canvas()->shownTimeOf(m_item); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return canvas() ? canvas()->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_object); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    // What can be moved along a line by arrows.
    QAccessible::Role role() const override { return QAccessible::Slider; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        if (kind == QAccessible::Name)
            return nameOf(context(), scene(), m_item, time());
        if (kind == QAccessible::Value)
            return shortTime(time(), true);
        if (kind == QAccessible::Description && m_item.kind == Kind::cut)
            return fateOfCuts(context());
        if (const auto& score = context().state.liveScore();
            kind == QAccessible::Description && m_item.kind == Kind::time && score)
            return scoreAsSpoken(context(), *score);
        return {};
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        const QRectF visible = isValid() ? areaOf(scene(), m_item) & QRectF(canvas()->rect()) : QRectF();
        return visible.isEmpty()
                   ? QRect()
                   : QRect(canvas()->mapToGlobal(visible.topLeft()).toPoint(), visible.size().toSize());
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.focusable = true;
        state.focused = canvas()->hasFocus() && canvas()->currentItem() == m_item;
        state.selectable = m_item.kind == Kind::marker || m_item.kind == Kind::cut;
        state.selected = state.selectable && scene().selectedItem() == m_item;
        state.offscreen = rect().isEmpty();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    // Seconds.
    QVariant currentValue() const override { return time(); }
    void setCurrentValue(const QVariant& value) override {
        if (isValid())
            canvas()->moveItem(m_item, value.toDouble());
    }
    QVariant minimumValue() const override { return 0.0; }
    QVariant maximumValue() const override { return canvas() ? scene().scale.duration() : 0; }
    QVariant minimumStepSize() const override { return canvas() ? 1 / scene().frameRate : 0; }

    QStringList actionNames() const override {
        return {setFocusAction(), increaseAction(), decreaseAction(), showMenuAction()};
    }
    void doAction(const QString& action) override {
        if (!isValid())
            return;
        if (action == setFocusAction()) {
            canvas()->setFocus(Qt::TabFocusReason);
            canvas()->goTo(m_item);
        } else if (action == increaseAction()) {
            moveBy(1);
        } else if (action == decreaseAction()) {
            moveBy(-1);
        } else if (action == showMenuAction()) {
            canvas()->openMenu(m_item);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    // Null also while it is being destroyed.
    TimelineCanvas* canvas() const { return qobject_cast<TimelineCanvas*>(m_object); }
    const UiContext& context() const { return canvas()->context(); }
    const TimelineScene& scene() const { return canvas()->scene(); }
    double time() const { return canvas() ? canvas()->shownTimeOf(m_item).value_or(0) : 0; }

    void moveBy(int frames) {
        const double rate = scene().frameRate;
        canvas()->moveItem(m_item, nearestFrame(time() + frames / rate, rate));
    }

    QPointer<QObject> m_object;
    TimelineHit m_item;
};

class CanvasInterface final : public QAccessibleWidget {
public:
    explicit CanvasInterface(TimelineCanvas& canvas)
        : QAccessibleWidget(&canvas, QAccessible::Grouping) {}
    CanvasInterface(const CanvasInterface&) = delete;
    CanvasInterface& operator=(const CanvasInterface&) = delete;
    ~CanvasInterface() override {
        for (const auto& [item, id] : m_known)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(items().size()); }

    QAccessibleInterface* child(int index) const override {
        const auto all = items();
        const bool isThere = index >= 0 && index < std::ssize(all);
        return isThere ? interfaceOf(all[static_cast<std::size_t>(index)]) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* item = dynamic_cast<const ItemInterface*>(child);
        return item ? indexOf(item->item()) : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        const auto all = items();
        const auto found = std::ranges::find_if(all, [&](const TimelineHit& item) {
            return areaOf(canvas()->scene(), item).contains(canvas()->mapFromGlobal(QPointF(x, y)));
        });
        return found == all.end() ? nullptr : interfaceOf(*found);
    }

    QAccessibleInterface* focusChild() const override {
        return canvas() && canvas()->hasFocus() ? interfaceOf(canvas()->currentItem()) : nullptr;
    }

    int indexOf(const TimelineHit& item) const {
        const auto all = items();
        const auto found = std::ranges::find(all, item);
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }

private:
    // Null while it is being destroyed.
    TimelineCanvas* canvas() const { return qobject_cast<TimelineCanvas*>(object()); }

    std::vector<TimelineHit> items() const {
        return canvas() ? itemsOf(canvas()->scene()) : std::vector<TimelineHit>();
    }

    // Qt's list of interfaces owns them; they stay for as long as the timeline does.
    QAccessibleInterface* interfaceOf(const TimelineHit& item) const {
        const auto known = std::ranges::find(m_known, item, &std::pair<TimelineHit, QAccessible::Id>::first);
        if (known != m_known.end())
            return QAccessible::accessibleInterface(known->second);
        auto* made = new ItemInterface(*canvas(), item);
        m_known.emplace_back(item, QAccessible::registerAccessibleInterface(made));
        return made;
    }

    mutable std::vector<std::pair<TimelineHit, QAccessible::Id>> m_known;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* canvas = qobject_cast<TimelineCanvas*>(object);
    return canvas ? new CanvasInterface(*canvas) : nullptr;
}

// -1 while no screen reader listens.
int listenedIndexOf(TimelineCanvas& canvas, const TimelineHit& item) {
    if (!QAccessible::isActive())
        return -1;
    const auto* interface = dynamic_cast<CanvasInterface*>(QAccessible::queryAccessibleInterface(&canvas));
    return interface ? interface->indexOf(item) : -1;
}

void tell(QAccessibleEvent&& event, int child) {
    event.setChild(child);
    QAccessible::updateAccessibility(&event);
}

}

void makeTimelineAccessible() {
    QAccessible::installFactory(makeInterface);
}

void tellItemFocused(TimelineCanvas& canvas, const TimelineHit& item) {
    if (const int child = listenedIndexOf(canvas, item); child >= 0)
        tell(QAccessibleEvent(&canvas, QAccessible::Focus), child);
}

void tellItemMoved(TimelineCanvas& canvas, const TimelineHit& item) {
    const int child = listenedIndexOf(canvas, item);
    if (child < 0)
        return;
    tell(QAccessibleValueChangeEvent(&canvas, canvas.shownTimeOf(item).value_or(0)), child);
    tell(QAccessibleEvent(&canvas, QAccessible::NameChanged), child);
}

void tellItemsChanged(TimelineCanvas& canvas) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent reorder(&canvas, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&reorder);
}

}
