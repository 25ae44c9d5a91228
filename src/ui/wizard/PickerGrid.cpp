#include "ui/wizard/PickerGrid.h"

#include "ui/style/Tokens.h"

#include <algorithm>
#include <QKeyEvent>
#include <utility>

namespace pointloom {

namespace {

constexpr int gap = Space::s; // the cards keep room for the ring of focus themselves

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
    return std::clamp((width() + gap) / (m_columns.narrowest + gap), m_columns.fewest, m_columns.most);
}

void PickerGrid::arrange() {
    if (m_cards.empty() || width() <= 0)
        return;
    const int columns = columnCount();
    const int cardWidth = (width() - (columns - 1) * gap) / columns;
    const int cardHeight = m_cards.front()->heightForWidth(cardWidth);
    int bottom = 0;
    for (int index = 0; index < static_cast<int>(m_cards.size()); ++index) {
        const QRect place((index % columns) * (cardWidth + gap), (index / columns) * (cardHeight + gap),
                          cardWidth, cardHeight);
        m_cards[static_cast<std::size_t>(index)]->setGeometry(place);
        bottom = place.bottom() + 1;
    }
    setMinimumHeight(bottom);
}

}
