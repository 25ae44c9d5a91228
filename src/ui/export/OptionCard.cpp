#include "ui/export/OptionCard.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <cmath>
#include <QPainter>

namespace pointloom {

namespace {

constexpr double shapeSide = 30; // box that shapes are fitted into
constexpr double checkSide = 14;
constexpr int narrowest = 130;

}

OptionCard::OptionCard(QWidget* parent)
    : QRadioButton(parent) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void OptionCard::setWords(const QString& title, const QString& detail) {
    m_title = title;
    m_detail = detail;
    setAccessibleName(title);
    setAccessibleDescription(detail);
    updateGeometry();
    update();
}

void OptionCard::setShape(QSizeF shape) {
    m_shape = shape;
    updateGeometry();
    update();
}

double OptionCard::textLeft() const {
    return m_shape.isEmpty() ? Space::m : Space::m + shapeSide + Space::s + 2;
}

double OptionCard::titleHeight(double width) const {
    const double room = width - textLeft() - Space::s;
    return QFontMetricsF(strongFont(font()))
        .boundingRect(QRectF(0, 0, room, 1000), Qt::TextWordWrap, m_title)
        .height();
}

QSize OptionCard::sizeHint() const {
    return {narrowest, heightForWidth(narrowest)};
}

int OptionCard::heightForWidth(int width) const {
    const double room = width - textLeft() - Space::s;
    const QRectF detail =
        QFontMetricsF(quietFont(font())).boundingRect(QRectF(0, 0, room, 1000), Qt::TextWordWrap, m_detail);
    const double text = titleHeight(width) + 2 + detail.height();
    return static_cast<int>(std::ceil(std::max(text, m_shape.isEmpty() ? 0 : shapeSide))) + 2 * Space::s;
}

void OptionCard::paintEvent(QPaintEvent*) {
    const ColorTokens& colors = tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isRinged = hasFocus();
    const double stroke = isRinged ? 2 : 1;
    const QRectF body = QRectF(rect()).adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2);
    painter.setPen(QPen(isChecked() || isRinged ? colors.accent : colors.line, stroke));
    painter.setBrush(underMouse() || isChecked() ? colors.raised : colors.surface);
    painter.drawRoundedRect(body, Radius::field, Radius::field);
    painter.setBrush(Qt::NoBrush);

    if (!m_shape.isEmpty())
        drawShape(painter);
    const QRectF text = QRectF(rect()).adjusted(textLeft(), Space::s, -Space::s, -Space::s);
    const double titleBottom = titleHeight(width());
    painter.setFont(strongFont(font()));
    painter.setPen(isEnabled() ? colors.text : colors.quietText);
    painter.drawText(text, Qt::TextWordWrap, m_title);
    painter.setFont(quietFont(font()));
    painter.setPen(colors.quietText);
    painter.drawText(text.adjusted(0, titleBottom + 2, 0, Space::s), Qt::TextWordWrap, m_detail);
    if (isChecked())
        drawCheck(painter);
}

// Inside of the shape, or else beside the title.
void OptionCard::drawCheck(QPainter& painter) const {
    const QPointF place = m_shape.isEmpty()
                              ? QPointF(width() - Space::m - checkSide, Space::s + 1)
                              : QPointF(Space::m + (shapeSide - checkSide) / 2, (height() - checkSide) / 2);
    painter.drawPixmap(place, Icons::pixmap(QStringLiteral("check"), static_cast<int>(checkSide),
                                            tokens().accent, devicePixelRatioF()));
}

void OptionCard::drawShape(QPainter& painter) const {
    QRectF frame(QPointF(0, 0), m_shape.scaled(shapeSide, shapeSide, Qt::KeepAspectRatio));
    frame.moveCenter(QPointF(Space::m + shapeSide / 2, height() / 2.0));
    painter.setPen(QPen(isChecked() ? tokens().accent : tokens().quietText, 1.5));
    painter.drawRoundedRect(frame, 3, 3);
}

}
