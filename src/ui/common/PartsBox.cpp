#include "ui/common/PartsBox.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr double longestMargin = 600; // seconds
constexpr int underTheCheck = 24;     // points from a check box to its words

class SecondsBox : public QDoubleSpinBox {
public:
    using QDoubleSpinBox::QDoubleSpinBox;

    // "10 s", not "10.0 s".
    QString textFromValue(double value) const override {
        return locale().toString(value, 'f', QLocale::FloatingPointShortest);
    }

protected:
    // Enter ends typing; it does not press the default button of the dialog.
    void keyPressEvent(QKeyEvent* event) override {
        QDoubleSpinBox::keyPressEvent(event);
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->accept();
    }
};

double lengthOf(const std::vector<TimeSpan>& parts) {
    return TimeMap(parts).length();
}

}

std::optional<QString> whyNothingStays(const UiContext& context) {
    const AppState& state = context.state;
    if (!state.keptParts().empty())
        return std::nullopt;
    const bool hasRallies =
        !state.parts.value().keptParts(state.exportedRange(), state.markers.value(), {}).empty();
    return context.text(hasRallies ? L10nKey::partsAllCut : L10nKey::partsNoMarkers);
}

PartsBox::PartsBox(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_onlyRallies(new QCheckBox(this))
    , m_before(makeSeconds("secondsBefore", &RallyMargins::before))
    , m_beforeName(Controls::label(Controls::TextRole::body, this))
    , m_after(makeSeconds("secondsAfter", &RallyMargins::after))
    , m_afterName(Controls::label(Controls::TextRole::body, this))
    , m_withoutCuts(new QCheckBox(this))
    , m_length(Controls::label(Controls::TextRole::strong, this)) {
    m_onlyRallies->setObjectName(QStringLiteral("onlyRallies"));
    m_withoutCuts->setObjectName(QStringLiteral("withoutCuts"));
    setFocusProxy(m_onlyRallies);
    m_length->setObjectName(QStringLiteral("keptLength"));
    QSizePolicy place = m_length->sizePolicy();
    place.setRetainSizeWhenHidden(true);
    m_length->setSizePolicy(place);

    auto* margins = new QHBoxLayout;
    margins->setContentsMargins(underTheCheck, 0, 0, 0);
    margins->setSpacing(Space::s);
    margins->addWidget(m_before);
    margins->addWidget(m_beforeName);
    margins->addSpacing(Space::s);
    margins->addWidget(m_after);
    margins->addWidget(m_afterName);
    margins->addStretch();
    auto* whole = Controls::layout<QVBoxLayout>(this, {0, 0, 0, 0}, Space::s);
    whole->addWidget(m_onlyRallies);
    whole->addLayout(margins);
    whole->addWidget(m_withoutCuts);
    whole->addWidget(m_length);

    connect(m_onlyRallies, &QCheckBox::toggled, this, [this](bool isChecked) {
        PartChoice choice = m_context.state.parts;
        choice.onlyRallies = isChecked;
        choose(choice);
    });
    connect(m_withoutCuts, &QCheckBox::toggled, this, [this](bool isChecked) {
        PartChoice choice = m_context.state.parts;
        choice.withoutCuts = isChecked;
        choose(choice);
    });
    AppState& state = m_context.state;
    auto kept = state.bindableKeptParts();
    m_bindings.watchAll([this] { showWords(); }, state.language, state.cuts);
    m_bindings.watchAll([this] { showChoice(); }, state.language, state.parts, state.trimStart, state.trimEnd,
                        state.videoDuration, state.cuts, kept);
}

QDoubleSpinBox* PartsBox::makeSeconds(const char* name, double RallyMargins::*margin) {
    auto* seconds = new SecondsBox(this);
    seconds->setObjectName(QString::fromUtf8(name));
    seconds->setRange(0, longestMargin);
    seconds->setDecimals(1);
    seconds->setSuffix(QStringLiteral(" s"));
    connect(seconds, &QDoubleSpinBox::valueChanged, this, [this, margin](double value) {
        PartChoice choice = m_context.state.parts;
        choice.rallies.*margin = value;
        choose(choice);
    });
    return seconds;
}

void PartsBox::choose(const PartChoice& choice) {
    m_context.state.parts = choice;
    m_context.state.save();
}

void PartsBox::showWords() {
    m_onlyRallies->setText(m_context.text(L10nKey::partsOnlyRallies));
    m_beforeName->setText(m_context.text(L10nKey::partsBefore));
    m_before->setAccessibleName(m_beforeName->text());
    m_afterName->setText(m_context.text(L10nKey::partsAfter));
    m_after->setAccessibleName(m_afterName->text());
    m_withoutCuts->setText(format(m_context.text(L10nKey::partsWithoutCuts),
                                  static_cast<qint64>(m_context.state.cuts.value().size())));
}

void PartsBox::showChoice() {
    const PartChoice choice = m_context.state.parts;
    const QSignalBlocker quiet[] = {QSignalBlocker(m_onlyRallies), QSignalBlocker(m_before),
                                    QSignalBlocker(m_after), QSignalBlocker(m_withoutCuts)};
    m_length->setVisible(choice.isMade());
    m_onlyRallies->setChecked(choice.onlyRallies);
    m_withoutCuts->setChecked(choice.withoutCuts);
    m_withoutCuts->setEnabled(choice.withoutCuts || !m_context.state.cuts.value().empty());
    m_before->setValue(choice.rallies.before);
    m_after->setValue(choice.rallies.after);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_before, m_beforeName, m_after, m_afterName})
        widget->setEnabled(choice.onlyRallies);

    const auto fault = whyNothingStays(m_context);
    Controls::setRole(m_length, fault ? Controls::TextRole::danger : Controls::TextRole::strong);
    m_length->setText(fault.value_or(format(m_context.text(L10nKey::partsLength),
                                            shortTime(lengthOf(m_context.state.keptParts())),
                                            shortTime(lengthOf({m_context.state.exportedRange()})))));
}

}
