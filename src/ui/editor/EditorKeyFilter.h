// Hears the editor's keys wherever in the editor the focus is.
#pragma once

#include "ui/common/Shortcuts.h"

#include <functional>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace pointloom {

/// A text field keeps all of its keys, and every other control those that it works with itself: a button
/// reached by Tab its Space, a slider and the marker list their arrows, and whatever accepts the key's
/// ShortcutOverride event.
class EditorKeyFilter : public QObject {
public:
    /// `isRepeat`: the key is held down.
    using Handler = std::function<void(EditorAction action, bool isRepeat)>;

    EditorKeyFilter(QWidget& editor, Handler handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool concernsEditor(const QWidget& receiver) const;

    QPointer<QWidget> m_editor;
    Handler m_handler;
};

}
