#include "ui/export/ExportSummary.h"

#include "ui/common/PartsBox.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr int noticeIconSize = 18;

}

ExportSummary::ExportSummary(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_range(makeFact())
    , m_duration(makeFact())
    , m_markers(makeFact())
    , m_template(makeFact())
    , m_noMarkers(makeNotice())
    , m_cuts(makeNotice())
    , m_unlicensed(makeNotice())
    , m_licence(Controls::button(Controls::ButtonKind::normal, this)) {
    build();
    bind();
}

ExportSummary::Fact ExportSummary::makeFact() {
    return {Controls::label(Controls::TextRole::quiet, this),
            Controls::label(Controls::TextRole::body, this)};
}

ExportSummary::Notice ExportSummary::makeNotice() {
    Notice notice{Controls::card(this), nullptr, nullptr};
    notice.icon = new QLabel(notice.row);
    notice.text = Controls::label(Controls::TextRole::body, notice.row);
    notice.text->setWordWrap(true);
    auto* layout = new QHBoxLayout(notice.row);
    layout->setContentsMargins(Space::m, Space::s, Space::s, Space::s);
    layout->setSpacing(Space::s);
    layout->addWidget(notice.icon);
    layout->addWidget(notice.text, 1);
    return notice;
}

void ExportSummary::build() {
    m_noMarkers.row->setObjectName(QStringLiteral("noMarkersNotice"));
    m_cuts.row->setObjectName(QStringLiteral("cutsNotice"));
    m_unlicensed.row->setObjectName(QStringLiteral("unlicensedNotice"));
    m_licence->setObjectName(QStringLiteral("enterLicence"));
    m_licence->setAutoDefault(false);
    m_unlicensed.row->layout()->addWidget(m_licence);

    auto* facts = new QHBoxLayout;
    facts->setSpacing(Space::l);
    for (const Fact& fact : {m_range, m_duration, m_markers, m_template}) {
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(fact.name);
        column->addWidget(fact.value);
        facts->addLayout(column);
    }
    facts->addStretch();
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(Space::s);
    whole->addLayout(facts);
    whole->addWidget(new PartsBox(m_context, this));
    whole->addWidget(m_noMarkers.row);
    whole->addWidget(m_cuts.row);
    whole->addWidget(m_unlicensed.row);
}

void ExportSummary::bind() {
    AppState& state = m_context.state;
    connect(m_licence, &QPushButton::clicked, this, [this] { m_context.state.showLicenseSheet = true; });
    connect(&Theme::shared(), &Theme::changed, this, &ExportSummary::showNotices);
    auto kept = state.bindableKeptParts();
    m_bindings.watchAll([this] { showFacts(); }, state.language, state.trimStart, state.trimEnd,
                        state.videoDuration, state.markers, state.selectedTemplate, kept);
    m_bindings.watchAll([this] { showNotices(); }, state.language, state.markers, state.isLicensed,
                        state.cuts, state.trimStart, state.trimEnd, state.videoDuration, kept);
}

void ExportSummary::showFacts() {
    const AppState& state = m_context.state;
    const TimeSpan range = state.exportedRange();
    const bool isWhole = range.start <= 0 && range.end >= state.videoDuration;
    m_range.name->setText(m_context.text(L10nKey::exportRange));
    m_range.value->setText(isWhole ? m_context.text(L10nKey::exportWholeClip)
                                   : ExportWords::place(range.start) + QStringLiteral(" – ") +
                                         ExportWords::place(range.end));
    m_duration.name->setText(m_context.text(L10nKey::duration));
    m_duration.value->setText(ExportWords::place(TimeMap(state.keptParts()).length()));
    m_markers.name->setText(m_context.text(L10nKey::markers));
    m_markers.value->setText(QString::number(state.markers.value().size()));
    m_template.name->setText(m_context.text(L10nKey::templateLabel));
    const auto& chosen = state.selectedTemplate.value();
    m_template.value->setText(chosen ? displayName(*chosen) : QString());
}

void ExportSummary::showNotices() {
    const auto icon = [&](const char* name, const QColor& color) {
        return Icons::pixmap(QString::fromUtf8(name), noticeIconSize, color, devicePixelRatioF());
    };
    const AppState& state = m_context.state;
    m_noMarkers.row->setVisible(state.markers.value().empty() && !state.keptParts().empty());
    m_noMarkers.icon->setPixmap(icon("warning", tokens().warning));
    m_noMarkers.text->setText(m_context.text(L10nKey::noMarkersWarning));
    const TimeSpan range = state.exportedRange();
    const auto& cuts = state.cuts.value();
    const auto exported = std::count_if(cuts.begin(), cuts.end(), [&](const CutZone& cut) {
        return cut.start < range.end && cut.end > range.start;
    });
    m_cuts.row->setVisible(exported > 0 && !state.parts.value().withoutCuts);
    m_cuts.icon->setPixmap(icon("cut", tokens().warning));
    m_cuts.text->setText(format(m_context.text(L10nKey::exportCutsStay), QString::number(exported)));
    m_unlicensed.row->setVisible(!state.isLicensed);
    m_unlicensed.icon->setPixmap(icon("key", tokens().quietText));
    m_unlicensed.text->setText(m_context.text(L10nKey::exportUnlicensed));
    m_licence->setText(m_context.text(L10nKey::commandLicence));
}

}
