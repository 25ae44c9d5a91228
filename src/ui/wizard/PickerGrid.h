// Cards in rows of equal width, one of them picked. One stop for Tab; the arrow keys move among the cards.
#pragma once

#include "ui/wizard/PickerCard.h"

#include <QWidget>
#include <vector>

namespace pointloom {

class PickerGrid : public QWidget {
    Q_OBJECT

public:
    /// As many columns as keep a card at least `narrowest` points wide, within the two limits.
    struct Columns {
        int narrowest;
        int fewest;
        int most;
    };

    PickerGrid(Columns columns, QWidget* parent);

    /// Takes over the cards, in place of those it had; deletes them in time.
    void setCards(const std::vector<PickerCard*>& cards);

    /// Shows which card is picked; -1 for none.
    void setPicked(int index);

    /// Moves the focus to the picked card, else to the first.
    void takeFocus();

Q_SIGNALS:
    void picked(int index);           // a click or the space bar
    void chosen(int index);           // Enter or a double click
    void currentMoved(QWidget* card); // by the keys: bring it into view

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int columnCount() const;
    void arrange();
    bool moveFrom(int index, int key);
    void setCurrent(int index);
    int indexOf(const QObject* card) const;

    Columns m_columns;
    std::vector<PickerCard*> m_cards; // children
    int m_current = 0;                // the one that Tab reaches
};

}
