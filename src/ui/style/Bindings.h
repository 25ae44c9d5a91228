// Bindings of a widget to fields of the session.
#pragma once

#include <functional>
#include <list>
#include <QProperty>

namespace pointloom {

/// A member of the widget; its bindings end with it. Widgets copy no state of the session.
class Bindings {
public:
    /// Runs `update` now and after each change of `property` (a QProperty or a QBindable).
    template <class Property, class Update>
    void watch(Property& property, Update update) {
        update();
        m_notifiers.push_back(property.addNotifier(std::move(update)));
    }

    /// The same for several fields that one update reads.
    template <class Update, class... Properties>
    void watchAll(Update update, Properties&&... properties) {
        update();
        (m_notifiers.push_back(properties.addNotifier(update)), ...);
    }

private:
    std::list<QPropertyNotifier> m_notifiers;
};

}
