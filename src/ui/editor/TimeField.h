// The time of the playhead as a field: shown while the clip plays, typed to go elsewhere.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QLineEdit>

namespace pointloom {

/// Enter goes to the typed time, or says why there is none; Escape and any other loss of the focus forget
/// what was typed.
class TimeField : public QLineEdit {
    Q_OBJECT

public:
    explicit TimeField(const UiContext& context, QWidget* parent = nullptr);

Q_SIGNALS:
    /// `seconds` is within the video.
    void timeEntered(double seconds);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void showPlayhead();
    void enter();
    void refuse(const QString& reason);
    void setRefused(bool isRefused);

    UiContext m_context;
    bool m_isEntered = false; // by a press of the mouse that is not released yet
    Bindings m_bindings;
};

}
