// A colour with its name, and the palette that chooses another.
#pragma once

#include "model/BoardStyle.h"
#include "ui/common/UiContext.h"

#include <QWidget>

class QLabel;
class QToolButton;

namespace pointloom {

class ColorField final : public QWidget {
    Q_OBJECT

public:
    ColorField(const UiContext& context, L10nKey name, QWidget* parent);

    /// `isChosen` by the user, who then may give it back.
    void setColor(BoardColor color, bool isChosen);

Q_SIGNALS:
    void picked(BoardColor color);
    void givenBack();

private:
    class Swatch;

    void openPalette();

    UiContext m_context;
    L10nKey m_name;
    BoardColor m_color;
    bool m_isChosen = false;
    Swatch* m_swatch;
    QLabel* m_label;
    QToolButton* m_giveBack;
};

}
