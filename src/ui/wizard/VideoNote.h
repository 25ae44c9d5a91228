// Says in the wizard's footer which video has been taken already, before its step comes.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"
#include "ui/style/Controls.h"

#include <QWidget>

namespace pointloom {

class VideoNote : public QWidget {
    Q_OBJECT

public:
    explicit VideoNote(const UiContext& context, QWidget* parent);

private:
    void showVideo();
    void tintIcon();

    UiContext m_context;
    QLabel* m_icon;
    ElidedLabel* m_words;
    Bindings m_bindings;
};

}
