#include "ui/export/CornerPicker.h"

#include "ui/style/Theme.h"
#include "json/RawValues.h"

#include <QPainter>

namespace pointloom {

namespace {

constexpr QSize largestFrame(112, 64);

// One quarter of the frame; the mark stands in its outer corner.
class CornerButton : public QRadioButton {
public:
    CornerButton(WatermarkCorner corner, QWidget* parent)
        : QRadioButton(parent)
        , m_corner(corner) {
        setCursor(Qt::PointingHandCursor);
        setAttribute(Qt::WA_Hover);
        setObjectName(QString::fromUtf8(rawValue(corner)));
    }

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        const ColorTokens& colors = tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isLeft = m_corner == WatermarkCorner::topLeft || m_corner == WatermarkCorner::bottomLeft;
        const bool isTop = m_corner == WatermarkCorner::topLeft || m_corner == WatermarkCorner::topRight;
        const QSizeF markSize(16, 11);
        QRectF mark(QPointF(isLeft ? Space::xs + 2 : width() - Space::xs - 2 - markSize.width(),
                            isTop ? Space::xs + 2 : height() - Space::xs - 2 - markSize.height()),
                    markSize);
        if (isChecked() || underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(isChecked() ? colors.accent : colors.line);
            painter.drawRoundedRect(mark, 2, 2);
        } else {
            painter.setPen(QPen(colors.quietText, 1));
            painter.drawRoundedRect(mark.adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
        }
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(colors.accent, 2));
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field - 2,
                                    Radius::field - 2);
        }
    }

private:
    WatermarkCorner m_corner;
};

}

CornerPicker::CornerPicker(QWidget* parent)
    : QWidget(parent) {
    for (const auto& [corner, name] : RawValues<WatermarkCorner>::table)
        m_buttons.addButton(new CornerButton(corner, this), static_cast<int>(corner)); // owned as a child
    connect(&m_buttons, &QButtonGroup::idToggled, this, [this](int id, bool isChecked) {
        if (isChecked)
            Q_EMIT picked(static_cast<WatermarkCorner>(id));
    });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void CornerPicker::setCorner(WatermarkCorner corner) {
    m_buttons.button(static_cast<int>(corner))->setChecked(true);
}

void CornerPicker::setCornerName(WatermarkCorner corner, const QString& name) {
    QAbstractButton* button = m_buttons.button(static_cast<int>(corner));
    button->setAccessibleName(name);
    button->setToolTip(name);
}

void CornerPicker::setShape(QSizeF shape) {
    m_shape = shape.isEmpty() ? QSizeF(16, 9) : shape;
    placeButtons();
    update();
}

QSize CornerPicker::sizeHint() const {
    return largestFrame;
}

QRectF CornerPicker::frame() const {
    QRectF result(QPointF(0, 0), m_shape.scaled(QSizeF(largestFrame), Qt::KeepAspectRatio));
    result.moveCenter(QRectF(rect()).center());
    return result;
}

void CornerPicker::placeButtons() {
    const QRect whole = frame().toRect();
    const QSize quarter(whole.width() / 2, whole.height() / 2);
    for (const auto& [corner, name] : RawValues<WatermarkCorner>::table) {
        const bool isLeft = corner == WatermarkCorner::topLeft || corner == WatermarkCorner::bottomLeft;
        const bool isTop = corner == WatermarkCorner::topLeft || corner == WatermarkCorner::topRight;
        const QPoint corner1(isLeft ? whole.left() : whole.right() + 1 - quarter.width(),
                             isTop ? whole.top() : whole.bottom() + 1 - quarter.height());
        m_buttons.button(static_cast<int>(corner))->setGeometry(QRect(corner1, quarter));
    }
}

void CornerPicker::resizeEvent(QResizeEvent*) {
    placeButtons();
}

void CornerPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens().line);
    painter.setBrush(tokens().raised);
    painter.drawRoundedRect(frame().adjusted(0.5, 0.5, -0.5, -0.5), Radius::field - 2, Radius::field - 2);
}

}
