#include "ui/export/EncodingBox.h"

#include "export/ExportSource.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QGridLayout>

namespace pointloom {

namespace {

using media::EncoderKind;
using media::EncodingQuality;

L10nKey nameOf(EncodingQuality quality) {
    switch (quality) {
    case EncodingQuality::standard:
        return L10nKey::exportQualityStandard;
    case EncodingQuality::smaller:
        return L10nKey::exportQualitySmaller;
    case EncodingQuality::better:
        break;
    }
    return L10nKey::exportQualityBetter;
}

std::vector<EncoderKind> tryEncoders(const ExportJob& job) {
    try {
        return workingHardwareEncoders(job);
    } catch (const ExportError&) {
        return {}; // the frame on show says why
    }
}

}

EncodingBox::EncodingBox(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_qualityName(Controls::label(Controls::TextRole::quiet, this))
    , m_quality(new QComboBox(this))
    , m_encoderName(Controls::label(Controls::TextRole::quiet, this))
    , m_encoder(new QComboBox(this)) {
    build();
    bind();
}

void EncodingBox::build() {
    m_quality->setObjectName(QStringLiteral("quality"));
    m_encoder->setObjectName(QStringLiteral("encoder"));
    for (const auto& [quality, word] : RawValues<EncodingQuality>::table)
        m_quality->addItem(QString(), static_cast<int>(quality));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(Space::m);
    grid->setVerticalSpacing(Space::s);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_qualityName, 0, 0);
    grid->addWidget(m_quality, 0, 1);
    grid->addWidget(m_encoderName, 1, 0);
    grid->addWidget(m_encoder, 1, 1);
    m_qualityName->setBuddy(m_quality);
    m_encoderName->setBuddy(m_encoder);
}

void EncodingBox::bind() {
    connect(m_quality, &QComboBox::currentIndexChanged, this, &EncodingBox::qualityChanged);
    m_bindings.watch(m_context.state.language, [this] { showWords(); });
}

void EncodingBox::showWords() {
    m_qualityName->setText(m_context.text(L10nKey::exportQualityHeading));
    m_quality->setAccessibleName(m_qualityName->text());
    for (int i = 0; i < m_quality->count(); ++i)
        m_quality->setItemText(
            i, m_context.text(nameOf(static_cast<EncodingQuality>(m_quality->itemData(i).toInt()))));
    m_encoderName->setText(m_context.text(L10nKey::exportEncoderHeading));
    m_encoder->setAccessibleName(m_encoderName->text());
    showEncoders();
}

// Who chose one that no longer works is back at the automatic choice.
void EncodingBox::showEncoders() {
    const bool choseSoftware = m_encoder->currentIndex() == 1;
    const EncoderKind chosen = encoder();
    m_encoder->clear();
    m_encoder->addItem(m_context.text(L10nKey::exportEncoderAutomatic),
                       static_cast<int>(EncoderKind::software));
    m_encoder->addItem(m_context.text(L10nKey::exportEncoderSoftware),
                       static_cast<int>(EncoderKind::software));
    for (const EncoderKind kind : m_working)
        m_encoder->addItem(
            format(m_context.text(L10nKey::exportEncoderHardware), QString::fromUtf8(media::nameOf(kind))),
            static_cast<int>(kind));
    m_encoder->setCurrentIndex(choseSoftware ? 1
                                             : std::max(0, m_encoder->findData(static_cast<int>(chosen))));
}

EncodingQuality EncodingBox::quality() const {
    return static_cast<EncodingQuality>(m_quality->currentData().toInt());
}

EncoderKind EncodingBox::encoder() const {
    return static_cast<EncoderKind>(m_encoder->currentData().toInt()); // 0, software, while the list is empty
}

void EncodingBox::offerEncodersFor(const ExportJob& job) {
    m_probing.start([job] { return tryEncoders(job); },
                    [this](const std::vector<EncoderKind>& working) {
                        m_working = working;
                        showEncoders();
                    });
}

}
