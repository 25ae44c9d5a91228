#include "ui/wizard/PickerCard.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"
#include "ui/wizard/PageColumn.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace pointloom {

namespace {

constexpr double ringRoom = cardRingRoom; // on all sides
constexpr double ringWidth = 2;
constexpr double ringGap = ringRoom - ringWidth; // between the card and the ring of focus around it

}

PickerCard::PickerCard(QWidget* parent)
    : QAbstractButton(parent) {
    setCheckable(true);
    setAutoExclusive(false); // the grid looks after that, and after the arrow keys
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void PickerCard::setTexts(const QString& name, const QString& description) {
    setText(name);
    m_description = description;
    setAccessibleName(name);
    setAccessibleDescription(description);
    update();
}

int PickerCard::heightForWidth(int width) const {
    const double picture = (width - 2 * ringRoom) * pictureShape();
    const double texts =
        QFontMetricsF(strongFont(font())).height() + QFontMetricsF(quietFont(font())).height();
    return static_cast<int>(2 * ringRoom + picture + Space::s + texts + Space::m);
}

void PickerCard::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        Q_EMIT chosen();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

// Not passed on: the second release would be another click.
void PickerCard::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT chosen();
}

void PickerCard::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void PickerCard::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

void PickerCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ColorTokens& colors = tokens();
    const QRectF card = cardArea();
    QPainterPath outline;
    outline.addRoundedRect(card, Radius::card, Radius::card);
    painter.fillPath(outline, underMouse() || isDown() ? colors.raised : colors.surface);

    const QRectF picture(card.topLeft(), QSizeF(card.width(), card.width() * pictureShape()));
    painter.save();
    painter.setClipPath(outline);
    painter.setClipRect(picture, Qt::IntersectClip);
    paintPicture(painter, picture);
    painter.restore();
    paintTexts(painter,
               QRectF(picture.bottomLeft(), card.bottomRight()).adjusted(Space::m, Space::s, -Space::m, 0));

    const double line = isChecked() ? ringWidth : 1;
    painter.setPen(QPen(isChecked() ? colors.accent : colors.line, line));
    painter.drawRoundedRect(card.adjusted(line / 2, line / 2, -line / 2, -line / 2), Radius::card - line / 2,
                            Radius::card - line / 2);
    if (isChecked())
        paintCheckMark(painter, card.topRight());
    if (hasFocus()) {
        constexpr double half = ringWidth / 2;
        painter.setPen(QPen(colors.accent, ringWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), Radius::card + ringGap,
                                Radius::card + ringGap);
    }
}

QRectF PickerCard::cardArea() const {
    return QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
}

void PickerCard::paintTexts(QPainter& painter, const QRectF& area) {
    const auto paintLine = [&](const QFont& font, const QColor& color, const QString& text, double top) {
        const QFontMetricsF metrics(font);
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(QRectF(area.left(), top, area.width(), metrics.height()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         metrics.elidedText(text, Qt::ElideRight, area.width()));
        return top + metrics.height();
    };
    const double below = paintLine(strongFont(font()), tokens().text, text(), area.top());
    paintLine(quietFont(font()), tokens().quietText, m_description, below);
}

void PickerCard::paintCheckMark(QPainter& painter, QPointF corner) {
    constexpr double diameter = 24;
    constexpr int iconSize = 16;
    const QRectF disc(corner + QPointF(-diameter - Space::s, Space::s), QSizeF(diameter, diameter));
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens().accent);
    painter.drawEllipse(disc);
    painter.setBrush(Qt::NoBrush);
    painter.drawPixmap(
        disc.center() - QPointF(iconSize, iconSize) / 2,
        Icons::pixmap(QStringLiteral("check"), iconSize, tokens().onAccent, devicePixelRatioF()));
}

}
