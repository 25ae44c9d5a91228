#include "ui/wizard/PickerGrid.h"

#include "ui/style/Icons.h"
#include "ui/style/Theme.h"
#include "ui/wizard/WizardPage.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <utility>

namespace pointloom {

namespace {

constexpr int cardGap = Space::s; // beside the margins of the cards
constexpr double ringWidth = 2;
constexpr double ringGap = cardMargin - ringWidth; // between the card and its focus ring
constexpr double pickedTint = 0.1;                // share of the accent in the background of the picked card

QColor mixed(const QColor& base, const QColor& added, double share) {
    const auto mix = [share](float one, float other) {
        return static_cast<float>(one + (other - one) * share);
    };
    return QColor::fromRgbF(mix(base.redF(), added.redF()), mix(base.greenF(), added.greenF()),
                            mix(base.blueF(), added.blueF()));
}

}

PickerCard::PickerCard(QWidget* parent)
    : QAbstractButton(parent) {
    setCheckable(true);
    setAutoExclusive(false); // left to the grid
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
    const double picture = (width - 2 * cardMargin) * pictureShape();
    const double texts =
        QFontMetricsF(strongFont(font())).height() + QFontMetricsF(quietFont(font())).height();
    return static_cast<int>(2 * cardMargin + picture + Space::s + texts + Space::m);
}

void PickerCard::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        Q_EMIT chosen();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

// Not passed on: the second release would click again.
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
    const QColor ground = underMouse() || isDown() ? colors.raised : colors.surface;
    painter.fillPath(outline, isChecked() ? mixed(ground, colors.accent, pickedTint) : ground);

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
    if (hasFocus()) { // in another colour than a picked card
        constexpr double half = ringWidth / 2;
        painter.setPen(QPen(colors.text, ringWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), Radius::card + ringGap,
                                Radius::card + ringGap);
    }
}

QRectF PickerCard::cardArea() const {
    return QRectF(rect()).adjusted(cardMargin, cardMargin, -cardMargin, -cardMargin);
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

PickerGrid::PickerGrid(Columns columns, QWidget* parent)
    : QWidget(parent)
    , m_columns(columns) {}

void PickerGrid::setCards(const std::vector<PickerCard*>& cards) {
    for (PickerCard* card : std::exchange(m_cards, cards)) {
        card->hide();
        card->deleteLater();
    }
    for (int index = 0; index < static_cast<int>(m_cards.size()); ++index) {
        PickerCard* card = m_cards[static_cast<std::size_t>(index)];
        card->installEventFilter(this);
        connect(card, &QAbstractButton::clicked, this, [this, index] {
            setCurrent(index);
            Q_EMIT picked(index);
        });
        connect(card, &PickerCard::chosen, this, [this, index] { Q_EMIT chosen(index); });
        card->show();
    }
    setCurrent(0);
    arrange();
}

void PickerGrid::setPicked(int index) {
    for (int each = 0; each < static_cast<int>(m_cards.size()); ++each)
        m_cards[static_cast<std::size_t>(each)]->setChecked(each == index);
    if (index >= 0)
        setCurrent(index);
}

void PickerGrid::takeFocus() {
    if (m_cards.empty())
        return;
    PickerCard* card = m_cards[static_cast<std::size_t>(m_current)];
    card->setFocus(Qt::OtherFocusReason);
    Q_EMIT currentMoved(card);
}

bool PickerGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier)
            return moveFrom(indexOf(watched), key->key());
    }
    return QWidget::eventFilter(watched, event);
}

bool PickerGrid::moveFrom(int index, int key) {
    if (index < 0)
        return false;
    const int last = static_cast<int>(m_cards.size()) - 1;
    int target = index;
    switch (key) {
    case Qt::Key_Left:
        target = index - 1;
        break;
    case Qt::Key_Right:
        target = index + 1;
        break;
    case Qt::Key_Up:
        target = index - columnCount();
        break;
    case Qt::Key_Down: // to the last card when the last row is shorter
        target = index / columnCount() < last / columnCount() ? std::min(index + columnCount(), last) : index;
        break;
    case Qt::Key_Home:
        target = 0;
        break;
    case Qt::Key_End:
        target = last;
        break;
    default:
        return false;
    }
    if (target < 0 || target > last)
        return true;
    setCurrent(target);
    takeFocus();
    return true;
}

void PickerGrid::setCurrent(int index) {
    m_current = index;
    for (int each = 0; each < static_cast<int>(m_cards.size()); ++each)
        m_cards[static_cast<std::size_t>(each)]->setFocusPolicy(each == index ? Qt::StrongFocus
                                                                              : Qt::ClickFocus);
}

int PickerGrid::indexOf(const QObject* card) const {
    const auto found = std::ranges::find(m_cards, card);
    return found == m_cards.end() ? -1 : static_cast<int>(found - m_cards.begin());
}

void PickerGrid::resizeEvent(QResizeEvent*) {
    arrange();
}

int PickerGrid::columnCount() const {
    return std::clamp((width() + cardGap) / (m_columns.narrowest + cardGap), m_columns.fewest,
                      m_columns.most);
}

void PickerGrid::arrange() {
    if (m_cards.empty() || width() <= 0)
        return;
    const int columns = columnCount();
    const int cardWidth = (width() - (columns - 1) * cardGap) / columns;
    const int cardHeight = m_cards.front()->heightForWidth(cardWidth);
    int bottom = 0;
    for (int index = 0; index < static_cast<int>(m_cards.size()); ++index) {
        const QRect place((index % columns) * (cardWidth + cardGap),
                          (index / columns) * (cardHeight + cardGap), cardWidth, cardHeight);
        m_cards[static_cast<std::size_t>(index)]->setGeometry(place);
        bottom = place.bottom() + 1;
    }
    setMinimumHeight(bottom);
}

}
