// A grid of cards, one of which is picked.
#pragma once

#include <QAbstractButton>
#include <vector>

namespace pointloom {

/// A picture above a name and a line of description.
class PickerCard : public QAbstractButton {
    Q_OBJECT

public:
    explicit PickerCard(QWidget* parent);

    void setTexts(const QString& name, const QString& description);

    int heightForWidth(int width) const override;

Q_SIGNALS:
    void chosen(); // Enter or a double click

protected:
    /// Height of the picture divided by its width.
    virtual double pictureShape() const = 0;
    /// Paints the picture, clipped to `area`.
    virtual void paintPicture(QPainter& painter, const QRectF& area) = 0;

    /// A picked card stays picked when it is clicked again.
    void nextCheckState() override { setChecked(true); }
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QRectF cardArea() const;
    void paintTexts(QPainter& painter, const QRectF& area);
    void paintCheckMark(QPainter& painter, QPointF corner);

    QString m_description;
};

/// Rows of cards of equal width. Tab stops once; the arrow keys move between the cards.
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

    /// Takes ownership of the cards and deletes those before.
    void setCards(const std::vector<PickerCard*>& cards);

    /// -1 for none.
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
