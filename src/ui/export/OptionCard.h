// One of a few choices, with room to say what it is good for.
#pragma once

#include <QRadioButton>
#include <QSizeF>

namespace pointloom {

/// A radio button drawn as a card: a title, a quiet line, and the picture's shape where it is about shapes.
class OptionCard : public QRadioButton {
    Q_OBJECT

public:
    explicit OptionCard(QWidget* parent = nullptr);

    void setWords(const QString& title, const QString& detail);
    /// Draws a frame of this shape; empty for none.
    void setShape(QSizeF shape);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;

private:
    double textLeft() const;
    double titleHeight(double width) const;
    void drawCheck(QPainter& painter) const;
    void drawShape(QPainter& painter) const;

    QString m_title;
    QString m_detail;
    QSizeF m_shape;
};

}
