#include "ui/wizard/SportPage.h"

#include "l10n/Format.h"

#include <QPainter>
#include <QScrollArea>
#include <QSvgRenderer>

// Resources of a static library are not registered by themselves. The macro must be in the global namespace.
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
    : WizardPage(context, flow, L10nKey::chooseSport, L10nKey::chooseSportSubtitle, parent)
    , m_grid(new PickerGrid({.narrowest = 160, .fewest = 2, .most = 4}, this)) {
    registerSportPictures();
    for (const auto& [sport, name] : RawValues<SportID>::table)
        m_cards.push_back(new SportCard(sport, m_grid));
    m_grid->setCards(m_cards);

    QScrollArea* scroll = addScrolled(m_grid);
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
                m_context.text(sportName(sportAt(index))),
                format(m_context.text(L10nKey::templatesCount), count));
        }
    });
}

void SportPage::pick(int index) {
    m_flow.pickSport(sportAt(index), this);
    showPicked(); // also when the sport stays: the click has checked another card
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
