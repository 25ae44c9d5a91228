#include "ui/wizard/DropTarget.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace pointloom {

QStringList droppedFiles(const QMimeData* data) {
    QStringList paths;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            paths += url.toLocalFile();
    }
    return paths;
}

DropTarget::DropTarget(QWidget* parent)
    : QAbstractButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void DropTarget::setTexts(const QString& invitation, const QString& alternative, const QString& formats) {
    setText(invitation);
    m_alternative = alternative;
    m_formats = formats;
    setAccessibleName(invitation + QStringLiteral(", ") + alternative);
    update();
}

void DropTarget::setError(const QString& message) {
    m_error = message;
    setAccessibleDescription(message);
    update();
}

void DropTarget::setBusy(const QString& message) {
    m_busy = message;
    update();
}

void DropTarget::setHighlighted(bool isHighlighted) {
    m_isHighlighted = isHighlighted;
    update();
}

QSize DropTarget::sizeHint() const {
    return {480, 260};
}

void DropTarget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void DropTarget::paintEvent(QPaintEvent*) {
    constexpr double lineWidth = 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ColorTokens& colors = tokens();
    const bool isActive = m_isHighlighted || hasFocus();
    const QRectF area = QRectF(rect()).adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth);
    QColor ground = colors.surface;
    if (m_isHighlighted || underMouse())
        ground = colors.raised;
    QPen dashes(isActive ? colors.accent : colors.quietText, lineWidth, Qt::CustomDashLine, Qt::RoundCap);
    dashes.setDashPattern({4, 4});
    if (m_isHighlighted)
        dashes.setStyle(Qt::SolidLine);
    painter.setPen(dashes);
    painter.setBrush(ground);
    painter.drawRoundedRect(area, Radius::card, Radius::card);
    paintWords(painter, area.adjusted(Space::xl, Space::l, -Space::xl, -Space::l));
}

void DropTarget::paintWords(QPainter& painter, const QRectF& area) {
    constexpr int iconSize = 56;
    const ColorTokens& colors = tokens();
    const auto scaled = [this](double scale, QFont::Weight weight) {
        QFont result = font();
        result.setPointSizeF(result.pointSizeF() * scale);
        result.setWeight(weight);
        return result;
    };
    struct Line {
        QString text;
        QFont font;
        QColor color;
        double space; // above
    };
    const QFont body = scaled(TypeScale::body, QFont::Normal);
    const Line lines[] = {
        {m_busy.isEmpty() ? text() : m_busy, scaled(TypeScale::section, QFont::DemiBold), colors.text,
         Space::l},
        {m_busy.isEmpty() ? m_alternative : QString(), body, colors.quietText, Space::xs},
        {m_error.isEmpty() ? m_formats : m_error,
         m_error.isEmpty() ? scaled(TypeScale::quiet, QFont::Normal) : body,
         m_error.isEmpty() ? colors.quietText : colors.danger, Space::l},
    };
    const auto heightOf = [&](const Line& line) {
        return QFontMetricsF(line.font)
            .boundingRect(QRectF(0, 0, area.width(), area.height()), Qt::AlignHCenter | Qt::TextWordWrap,
                          line.text)
            .height();
    };
    double total = iconSize;
    for (const Line& line : lines)
        total += line.space + heightOf(line);

    double top = area.top() + std::max(0.0, (area.height() - total) / 2);
    painter.drawPixmap(QPointF(area.center().x() - iconSize / 2.0, top),
                       Icons::pixmap(QStringLiteral("film"), iconSize,
                                     m_isHighlighted ? colors.accent : colors.quietText,
                                     devicePixelRatioF()));
    top += iconSize;
    for (const Line& line : lines) {
        top += line.space;
        painter.setFont(line.font);
        painter.setPen(line.color);
        const double height = heightOf(line);
        painter.drawText(QRectF(area.left(), top, area.width(), height), Qt::AlignHCenter | Qt::TextWordWrap,
                         line.text);
        top += height;
    }
}

}
