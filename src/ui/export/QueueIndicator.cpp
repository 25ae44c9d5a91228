#include "ui/export/QueueIndicator.h"

#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QPainter>

namespace pointloom {

namespace {

constexpr int indicatorSide = 16;    // of the icon
constexpr int mostLetters = 52;      // of the text, beside the menus of a small window
constexpr int refreshPause = 10'000; // milliseconds; how often the end is told anew

QPixmap ring(double fraction, double devicePixelRatio) {
    constexpr double thickness = 3;
    constexpr int fullTurn = 360 * 16; // as QPainter counts
    const auto pixels = static_cast<int>(std::ceil(indicatorSide * devicePixelRatio));
    QPixmap pixmap(pixels, pixels);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle(thickness / 2, thickness / 2, indicatorSide - thickness, indicatorSide - thickness);
    painter.setPen(QPen(tokens().line, thickness));
    painter.drawEllipse(circle);
    painter.setPen(QPen(tokens().accent, thickness, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(circle, fullTurn / 4, -static_cast<int>(fraction * fullTurn));
    return pixmap;
}

}

QueueIndicator::QueueIndicator(const UiContext& context, const ExportRunner& runner, QWidget* parent)
    : QToolButton(parent)
    , m_context(context)
    , m_runner(runner) {
    setObjectName(QStringLiteral("queueIndicator"));
    setProperty("kind", QStringLiteral("plain"));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setIconSize({indicatorSide, indicatorSide});
    setFocusPolicy(Qt::TabFocus);
    connect(&m_runner, &ExportRunner::changed, this, &QueueIndicator::showQueue);
    connect(&m_refresh, &QTimer::timeout, this, &QueueIndicator::showQueue);
    connect(&Theme::shared(), &Theme::changed, this, &QueueIndicator::showQueue);
    m_bindings.watch(m_context.state.language, [this] { showQueue(); });
}

QPixmap QueueIndicator::iconOf(const QueueStatus& status) const {
    if (status.lowSpace || status.failed > 0)
        return Icons::pixmap(QStringLiteral("warning"), indicatorSide, tokens().warning, devicePixelRatioF());
    if (status.left == 0)
        return Icons::pixmap(QStringLiteral("check"), indicatorSide, tokens().success, devicePixelRatioF());
    return ring(status.fraction, devicePixelRatioF());
}

void QueueIndicator::showQueue() {
    const QueueStatus status = m_runner.queue().status();
    const QString words = ExportWords::queue(status, QDateTime::currentDateTime(), m_context.state.language);
    status.left > 0 && !status.isHeld() ? m_refresh.start(refreshPause) : m_refresh.stop();
    setIcon(iconOf(status));
    setText(u' ' +
            fontMetrics().elidedText(words, Qt::ElideRight, fontMetrics().averageCharWidth() * mostLetters));
    setToolTip(words);
    setAccessibleName(words);
    // A menu bar gives its corner the width that it has when it appears. While digits change it stays.
    const int missing = sizeHint().width() - width();
    if (!isHidden() && (missing > 0 || (missing < 0 && status.left == 0)))
        hide();
    if (isHidden())
        resize(sizeHint());
    setVisible(!words.isEmpty());
}

}
