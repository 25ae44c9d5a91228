#include "ui/wizard/StepButton.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

namespace pointloom {

namespace {

constexpr int circleSize = 24;

}

StepButton::StepButton(int number, QWidget* parent)
    : QAbstractButton(parent)
    , m_number(number) {
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void StepButton::setMark(Mark mark, bool isReachable) {
    m_mark = mark;
    const bool canBePressed = isReachable && mark != Mark::current;
    setEnabled(isReachable || mark == Mark::current);
    setFocusPolicy(canBePressed ? Qt::TabFocus : Qt::NoFocus);
    setCursor(canBePressed ? Qt::PointingHandCursor : Qt::ArrowCursor);
    updateGeometry();
    update();
}

// As wide for every mark, so that the bar does not move from step to step.
QSize StepButton::sizeHint() const {
    const QFontMetrics metrics(strongFont(font()));
    return {circleSize + Space::s + metrics.horizontalAdvance(text()) + 2 * Space::s,
            std::max(circleSize, metrics.height()) + 2 * Space::s};
}

void StepButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void StepButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ColorTokens& colors = tokens();
    const bool canBePressed = isEnabled() && m_mark != Mark::current;
    if (canBePressed && underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.raised);
        painter.drawRoundedRect(rect(), Radius::field, Radius::field);
    }
    if (hasFocus()) {
        painter.setPen(QPen(colors.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    }

    const QRectF circle(Space::s, (height() - circleSize) / 2.0, circleSize, circleSize);
    const bool isCurrent = m_mark == Mark::current;
    painter.setPen(isCurrent ? QPen(Qt::NoPen)
                             : QPen(m_mark == Mark::done ? colors.accent : colors.line, 1.5));
    painter.setBrush(isCurrent ? QBrush(colors.accent) : QBrush(Qt::NoBrush));
    painter.drawEllipse(isCurrent ? circle : circle.adjusted(0.75, 0.75, -0.75, -0.75));
    painter.setFont(strongFont(font()));
    if (m_mark == Mark::done) {
        constexpr int iconSize = 14;
        painter.drawPixmap(
            circle.center() - QPointF(iconSize, iconSize) / 2,
            Icons::pixmap(QStringLiteral("check"), iconSize, colors.accent, devicePixelRatioF()));
    } else {
        painter.setPen(isCurrent ? colors.onAccent : colors.quietText);
        painter.drawText(circle, Qt::AlignCenter, QString::number(m_number));
    }
    painter.setPen(m_mark == Mark::upcoming ? colors.quietText : colors.text);
    painter.drawText(QRectF(circle.right() + Space::s, 0, width(), height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

}
