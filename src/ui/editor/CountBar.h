// Messages about the count of points: where a correction stopped, a typed score that can be carried on, the
// end of the match, rules that are unknown.
#pragma once

#include "ui/editor/MessageBar.h"

namespace pointloom {

class CountBar final : public MessageBar {
    Q_OBJECT

public:
    explicit CountBar(const UiContext& context, QWidget* parent = nullptr);

    /// Until the next edit.
    void sayThatMatchIsOver();

Q_SIGNALS:
    void seekRequested(double seconds);

private:
    void refresh();
    void say(const QString& message, const QString& detail, const QString& action);
    void act();
    void forget();

    UiContext m_context;
    QString m_closedFault; // of rules, after its message was closed
    Bindings m_bindings;
};

}
