#include "ui/wizard/SportPage.h"

#include "l10n/Format.h"
#include "ui/style/Tokens.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
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

    addUnscrolled(makeOffer());
    addBesideTitle(makeSampleOffer());
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
        showOffer();
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
    if (m_offered)
        m_goOn->setFocus(Qt::OtherFocusReason);
    else
        m_grid->takeFocus();
}

QWidget* SportPage::makeOffer() {
    m_offer = Controls::card(this);
    m_offerTitle = Controls::label(Controls::TextRole::quiet, m_offer);
    m_names = new ElidedLabel(m_offer);
    m_facts = new ElidedLabel(m_offer);
    Controls::setRole(m_names, Controls::TextRole::section);
    Controls::setRole(m_facts, Controls::TextRole::quiet);
    for (QLabel* label : {m_names, m_facts})
        label->setTextFormat(Qt::PlainText);
    m_newMatch = Controls::button(Controls::ButtonKind::normal, m_offer);
    m_goOn = Controls::button(Controls::ButtonKind::primary, m_offer);
    auto* words = new QVBoxLayout;
    words->setSpacing(Space::xs);
    words->addWidget(m_offerTitle);
    words->addWidget(m_names);
    words->addWidget(m_facts);
    auto* row = Controls::layout<QHBoxLayout>(m_offer, {Space::l, Space::m, Space::l, Space::m}, Space::s);
    row->addLayout(words, 1);
    row->addWidget(m_newMatch);
    row->addWidget(m_goOn);
    connect(m_newMatch, &QPushButton::clicked, this, &SportPage::newMatchRequested);
    connect(m_goOn, &QPushButton::clicked, this, &SportPage::goOnRequested);
    return m_offer;
}

QWidget* SportPage::makeSampleOffer() {
    m_sampleOffer = new QWidget(this);
    QLabel* words = Controls::label(Controls::TextRole::quiet, m_sampleOffer);
    QPushButton* open = Controls::button(Controls::ButtonKind::normal, m_sampleOffer);
    auto* row = Controls::layout<QHBoxLayout>(m_sampleOffer, {0, 0, 0, 0}, Space::s);
    row->addWidget(words);
    row->addWidget(open);
    connect(open, &QPushButton::clicked, this, &SportPage::sampleRequested);
    m_bindings.watch(m_context.state.language, [this, words, open] {
        words->setText(m_context.text(L10nKey::sampleOffer));
        open->setText(m_context.text(L10nKey::commandOpenSample));
    });
    return m_sampleOffer;
}

void SportPage::offerMatch(const std::optional<LastMatch>& match) {
    m_offered = match;
    showOffer();
}

// Names, film and day of the match.
void SportPage::showOffer() {
    m_offer->setVisible(m_offered.has_value());
    m_sampleOffer->setVisible(!m_offered);
    if (!m_offered)
        return;
    const Language language = m_context.state.language;
    QStringList facts;
    if (m_offered->videoPath)
        facts << QFileInfo(*m_offered->videoPath).fileName();
    if (m_offered->editedAt) {
        const QDate day = QDateTime::fromSecsSinceEpoch(*m_offered->editedAt).date();
        facts << localeOf(language).toString(day, QLocale::LongFormat);
    }
    m_offerTitle->setText(m_context.text(L10nKey::lastMatchTitle));
    m_names->setFullText(m_offered->names);
    m_facts->setFullText(facts.join(QStringLiteral("   ·   ")));
    m_facts->setVisible(!facts.isEmpty());
    m_newMatch->setText(m_context.text(L10nKey::lastMatchNew));
    m_goOn->setText(m_context.text(L10nKey::lastMatchGoOn));
    m_goOn->setAccessibleDescription(m_offered->names);
}

}
