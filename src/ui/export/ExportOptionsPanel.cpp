#include "ui/export/ExportOptionsPanel.h"

#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QGridLayout>

namespace pointloom {

namespace {

// Labels double as raw values; one holds two blanks, which no one should see as a gap.
QString labelOf(ExportPreset preset) {
    return QString::fromUtf8(rawValue(preset)).simplified();
}

}

ExportOptionsPanel::ExportOptionsPanel(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_sizeHeading(Controls::label(Controls::TextRole::strong, this))
    , m_formatHeading(Controls::label(Controls::TextRole::strong, this))
    , m_watermarkHeading(Controls::label(Controls::TextRole::strong, this))
    , m_encoding(new EncodingBox(context, this))
    , m_watermark(nullptr) {
    build();
    bind();
}

void ExportOptionsPanel::build() {
    auto* presets = new QGridLayout;
    presets->setSpacing(Space::s);
    for (const auto& [preset, name] : RawValues<ExportPreset>::table) {
        const int id = static_cast<int>(preset);
        auto* choice = new OptionCard(this);
        choice->setObjectName(QString::fromUtf8(name));
        m_presets.addButton(choice, id);
        presets->addWidget(choice, id / 2, id % 2);
    }
    auto* formats = new QVBoxLayout;
    formats->setSpacing(Space::s);
    for (const auto& [format, name] : RawValues<ExportFormat>::table) {
        auto* choice = new OptionCard(this);
        choice->setObjectName(QString::fromUtf8(name));
        m_formats.addButton(choice, static_cast<int>(format));
        formats->addWidget(choice);
    }
    m_presets.button(static_cast<int>(ExportPreset::original))->setChecked(true);
    m_formats.button(static_cast<int>(ExportFormat::h264))->setChecked(true);
    m_watermark = new WatermarkBox(m_context, this);

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, Space::s, 0);
    whole->setSpacing(Space::s);
    whole->addWidget(m_sizeHeading);
    whole->addLayout(presets);
    whole->addSpacing(Space::s);
    whole->addWidget(m_formatHeading);
    whole->addLayout(formats);
    whole->addWidget(m_encoding);
    whole->addSpacing(Space::s);
    whole->addWidget(m_watermarkHeading);
    whole->addWidget(m_watermark);
    whole->addStretch();
}

void ExportOptionsPanel::bind() {
    AppState& state = m_context.state;
    connect(&m_presets, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (!isChecked)
            return;
        m_watermark->setShape(shapeOf(preset()));
        Q_EMIT presetChanged();
    });
    connect(&m_formats, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (isChecked)
            Q_EMIT formatChanged();
    });
    connect(m_encoding, &EncodingBox::qualityChanged, this, &ExportOptionsPanel::qualityChanged);
    m_bindings.watchAll([this] { showShapes(); }, state.videoWidth, state.videoHeight);
    m_bindings.watchAll([this] { showWords(); }, state.language, state.videoWidth, state.videoHeight);
}

ExportSettings ExportOptionsPanel::settings() const {
    return {
        .preset = preset(),
        .format = static_cast<ExportFormat>(m_formats.checkedId()),
        .quality = m_encoding->quality(),
        .encoder = m_encoding->encoder(),
        .watermarkCorner = m_context.state.watermarkCorner,
    };
}

void ExportOptionsPanel::showWords() {
    m_sizeHeading->setText(m_context.text(L10nKey::exportSizeHeading));
    m_formatHeading->setText(m_context.text(L10nKey::formatLabel));
    m_watermarkHeading->setText(m_context.text(L10nKey::exportWatermarkHeading));
    for (const auto& [preset, name] : RawValues<ExportPreset>::table)
        card(m_presets, static_cast<int>(preset))->setWords(labelOf(preset), detailOf(preset));
    for (const auto& [format, name] : RawValues<ExportFormat>::table)
        card(m_formats, static_cast<int>(format))
            ->setWords(QString::fromUtf8(name), m_context.text(ExportWords::useOf(format)));
}

void ExportOptionsPanel::showShapes() {
    for (const auto& [preset, name] : RawValues<ExportPreset>::table)
        card(m_presets, static_cast<int>(preset))->setShape(shapeOf(preset));
    m_watermark->setShape(shapeOf(preset()));
}

QSizeF ExportOptionsPanel::shapeOf(ExportPreset preset) const {
    if (const auto target = targetSize(preset))
        return *target;
    const QSizeF source(m_context.state.videoWidth, m_context.state.videoHeight);
    return source.isEmpty() ? QSizeF(16, 9) : source;
}

QString ExportOptionsPanel::detailOf(ExportPreset preset) const {
    const QSize source(m_context.state.videoWidth, m_context.state.videoHeight);
    const QSize size = targetSize(preset).value_or(source);
    const QString use = m_context.text(ExportWords::useOf(preset));
    if (size.isEmpty())
        return use; // until the video was read
    return QStringLiteral("%1 × %2\n%3").arg(size.width()).arg(size.height()).arg(use);
}

OptionCard* ExportOptionsPanel::card(const QButtonGroup& group, int id) const {
    return static_cast<OptionCard*>(group.button(id)); // the group holds nothing else
}

}
