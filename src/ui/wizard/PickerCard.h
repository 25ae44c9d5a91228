// A card to pick from a grid: a picture above a name and a line of description.
#pragma once

#include <QAbstractButton>

namespace pointloom {

class PickerCard : public QAbstractButton {
    Q_OBJECT

public:
    explicit PickerCard(QWidget* parent);

    void setTexts(const QString& name, const QString& description);

    /// Height of the whole card at a width.
    int heightForWidth(int width) const override;

Q_SIGNALS:
    void chosen(); // picked and done: Enter or a double click

protected:
    /// Height of the picture divided by its width.
    virtual double pictureShape() const = 0;
    /// Paints the picture; what leaves `area` is cut off.
    virtual void paintPicture(QPainter& painter, const QRectF& area) = 0;

    /// A pick stays when it is picked again.
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

}
