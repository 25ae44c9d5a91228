#include "ui/wizard/SportPage.h"

#include "l10n/Format.h"
#include "ui/wizard/PageColumn.h"
#include "ui/wizard/PageHeader.h"
#include "ui/wizard/SportName.h"

#include <QPainter>
#include <QScrollArea>
#include <QSvgRenderer>
#include <QVBoxLayout>

// In a static library nothing registers them by itself. The macro wants the global namespace.
static void registerSportPictures() {
    Q_INIT_RESOURCE(sports);
}

namespace pointloom {

namespace {

class SportCard final : public PickerCard {
public:
    SportCard(SportID sport, QWidget* parent)
        : PickerCard(parent)
        , m_picture(QStringLiteral(":/sports/%1.svg").arg(imageName(sport))) {}

protected:
    double pictureShape() const override {
        const QSizeF size = m_picture.viewBoxF().size();
        return size.height() / size.width();
    }
    void paintPicture(QPainter& painter, const QRectF& area) override { m_picture.render(&painter, area); }

private:
    QSvgRenderer m_picture;
};

SportID sportAt(int index) {
    return RawValues<SportID>::table[static_cast<std::size_t>(index)].first;
}

}

SportPage::SportPage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(parent)
    , m_context(context)
    , m_flow(flow)
    , m_grid(new PickerGrid({.narrowest = 160, .fewest = 2, .most = 4}, this)) {
    registerSportPictures();
    for (const auto& [sport, name] : RawValues<SportID>::table)
        m_cards.push_back(new SportCard(sport, m_grid));
    m_grid->setCards(m_cards);

    QVBoxLayout* column = pageColumn(this);
    column->addWidget(new PageHeader(context, L10nKey::chooseSport, L10nKey::chooseSportSubtitle, this));
    QScrollArea* scroll = scrollAround(m_grid, this);
    column->addWidget(scroll, 1);

    connect(m_grid, &PickerGrid::picked, this, &SportPage::pick);
    connect(m_grid, &PickerGrid::chosen, this, [this](int index) {
        if (m_context.state.selectedSport == sportAt(index))
            Q_EMIT continueRequested();
    });
    connect(m_grid, &PickerGrid::currentMoved, scroll,
            [scroll](QWidget* card) { scroll->ensureWidgetVisible(card); });
    m_bindings.watch(m_context.state.selectedSport, [this] { showPicked(); });
    m_bindings.watch(m_context.state.language, [this] {
        for (int index = 0; index < static_cast<int>(m_cards.size()); ++index) {
            const auto count = static_cast<qint64>(filteredTemplates(sportAt(index)).size());
            m_cards[static_cast<std::size_t>(index)]->setTexts(
                sportName(sportAt(index), m_context.state.language),
                format(m_context.text(L10nKey::templatesCount), count));
        }
    });
}

void SportPage::pick(int index) {
    m_flow.pickSport(sportAt(index), this);
    showPicked(); // also when the user kept the old one: the click has checked the card
}

void SportPage::showPicked() {
    m_grid->setPicked(static_cast<int>(m_context.state.selectedSport.value()));
}

bool SportPage::confirm() {
    return m_flow.pickSport(m_context.state.selectedSport, this);
}

void SportPage::takeFocus() {
    m_grid->takeFocus();
}

}
