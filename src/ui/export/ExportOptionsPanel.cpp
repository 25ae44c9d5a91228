#include "ui/export/ExportOptionsPanel.h"

#include "export/ExportSource.h"
#include "export/PictureLayout.h"
#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <cmath>
#include <QGridLayout>
#include <QPainter>
#include <QRadioButton>

namespace pointloom {

namespace {

using media::EncoderKind;
using media::EncodingQuality;

// In the order of the presets, the formats and the qualities.
constexpr std::array presetUses{L10nKey::exportSameAsSource, L10nKey::exportYoutubeUse,
                                L10nKey::exportTwitterUse, L10nKey::exportInstagramUse};
constexpr std::array formatUses{L10nKey::exportH264Use, L10nKey::exportHevcUse, L10nKey::exportProresUse};
constexpr std::array qualityNames{L10nKey::exportQualityStandard, L10nKey::exportQualityFast,
                                  L10nKey::exportQualitySmaller, L10nKey::exportQualityBetter};
// In the order in which they are offered; WebVTT files are for the command line.
constexpr std::array<std::pair<std::optional<CaptionsPlace>, L10nKey>, 3> captionsPlaces{
    {{std::nullopt, L10nKey::exportCaptionsNone},
     {CaptionsPlace::subRip, L10nKey::exportCaptionsFile},
     {CaptionsPlace::track, L10nKey::exportCaptionsTrack}}};
static_assert(presetUses.size() == allCases<ExportPreset>().size() &&
              formatUses.size() == allCases<ExportFormat>().size() &&
              qualityNames.size() == allCases<EncodingQuality>().size());

constexpr double shapeSide = 30; // box that shapes are fitted into
constexpr double checkSide = 14;
constexpr int narrowest = 130;

// A radio button drawn as a card: a title, a quiet line, and the picture's shape where it is about shapes.
class OptionCard : public QRadioButton {
public:
    explicit OptionCard(QWidget* parent);

    void setWords(const QString& title, const QString& detail);
    /// Draws a frame of this shape; empty for none.
    void setShape(QSizeF shape);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;

private:
    double textLeft() const;
    double titleHeight(double width) const;
    void drawCheck(QPainter& painter) const;
    void drawShape(QPainter& painter) const;

    QString m_title;
    QString m_detail;
    QSizeF m_shape;
};

OptionCard::OptionCard(QWidget* parent)
    : QRadioButton(parent) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void OptionCard::setWords(const QString& title, const QString& detail) {
    m_title = title;
    m_detail = detail;
    setAccessibleName(title);
    setAccessibleDescription(detail);
    updateGeometry();
    update();
}

void OptionCard::setShape(QSizeF shape) {
    m_shape = shape;
    updateGeometry();
    update();
}

double OptionCard::textLeft() const {
    return m_shape.isEmpty() ? Space::m : Space::m + shapeSide + Space::s + 2;
}

double OptionCard::titleHeight(double width) const {
    const double space = width - textLeft() - Space::s;
    return QFontMetricsF(strongFont(font()))
        .boundingRect(QRectF(0, 0, space, 1000), Qt::TextWordWrap, m_title)
        .height();
}

QSize OptionCard::sizeHint() const {
    return {narrowest, heightForWidth(narrowest)};
}

int OptionCard::heightForWidth(int width) const {
    const double space = width - textLeft() - Space::s;
    const QRectF detail =
        QFontMetricsF(quietFont(font())).boundingRect(QRectF(0, 0, space, 1000), Qt::TextWordWrap, m_detail);
    const double text = titleHeight(width) + 2 + detail.height();
    return static_cast<int>(std::ceil(std::max(text, m_shape.isEmpty() ? 0 : shapeSide))) + 2 * Space::s;
}

void OptionCard::paintEvent(QPaintEvent*) {
    const ColorTokens& colors = tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isRinged = hasFocus();
    const double stroke = isRinged ? 2 : 1;
    const QRectF body = QRectF(rect()).adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2);
    painter.setPen(QPen(isChecked() || isRinged ? colors.accent : colors.line, stroke));
    painter.setBrush(underMouse() || isChecked() ? colors.raised : colors.surface);
    painter.drawRoundedRect(body, Radius::field, Radius::field);
    painter.setBrush(Qt::NoBrush);

    if (!m_shape.isEmpty())
        drawShape(painter);
    const QRectF text = QRectF(rect()).adjusted(textLeft(), Space::s, -Space::s, -Space::s);
    const double titleBottom = titleHeight(width());
    painter.setFont(strongFont(font()));
    painter.setPen(isEnabled() ? colors.text : colors.quietText);
    painter.drawText(text, Qt::TextWordWrap, m_title);
    painter.setFont(quietFont(font()));
    painter.setPen(colors.quietText);
    painter.drawText(text.adjusted(0, titleBottom + 2, 0, Space::s), Qt::TextWordWrap, m_detail);
    if (isChecked())
        drawCheck(painter);
}

// Drawn inside the shape, or else beside the title.
void OptionCard::drawCheck(QPainter& painter) const {
    const QPointF place = m_shape.isEmpty()
                              ? QPointF(width() - Space::m - checkSide, Space::s + 1)
                              : QPointF(Space::m + (shapeSide - checkSide) / 2, (height() - checkSide) / 2);
    painter.drawPixmap(place, Icons::pixmap(QStringLiteral("check"), static_cast<int>(checkSide),
                                            tokens().accent, devicePixelRatioF()));
}

void OptionCard::drawShape(QPainter& painter) const {
    QRectF frame(QPointF(0, 0), m_shape.scaled(shapeSide, shapeSide, Qt::KeepAspectRatio));
    frame.moveCenter(QPointF(Space::m + shapeSide / 2, height() / 2.0));
    painter.setPen(QPen(isChecked() ? tokens().accent : tokens().quietText, 1.5));
    painter.drawRoundedRect(frame, 3, 3);
}

OptionCard* addCard(QButtonGroup& group, int id, std::string_view name, QWidget* parent) {
    auto* card = new OptionCard(parent);
    card->setObjectName(QString::fromUtf8(name));
    group.addButton(card, id);
    return card;
}

OptionCard* cardOf(const QButtonGroup& group, int id) {
    return static_cast<OptionCard*>(group.button(id)); // the group holds nothing else
}

// Labels double as raw values; one holds two spaces, which should not show as a gap.
QString labelOf(ExportPreset preset) {
    return QString::fromUtf8(rawValue(preset)).simplified();
}

std::vector<EncoderKind> tryEncoders(const ExportJob& job) {
    try {
        return workingHardwareEncoders(job);
    } catch (const ExportError&) {
        return {}; // the shown frame says why
    }
}

}

ExportOptionsPanel::ExportOptionsPanel(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_sizeHeading(Controls::label(Controls::TextRole::strong, this))
    , m_formatHeading(Controls::label(Controls::TextRole::strong, this))
    , m_watermarkHeading(Controls::label(Controls::TextRole::strong, this))
    , m_qualityName(Controls::label(Controls::TextRole::quiet, this))
    , m_quality(new QComboBox(this))
    , m_encoderName(Controls::label(Controls::TextRole::quiet, this))
    , m_encoder(new QComboBox(this))
    , m_captionsName(Controls::label(Controls::TextRole::quiet, this))
    , m_captions(new QComboBox(this))
    , m_fill(new QCheckBox(this))
    , m_fillDetail(Controls::label(Controls::TextRole::quiet, this)) {
    build();
    bind();
}

void ExportOptionsPanel::build() {
    auto* presets = new QGridLayout;
    presets->setSpacing(Space::s);
    for (const auto& [preset, name] : RawValues<ExportPreset>::table) {
        const int id = static_cast<int>(preset);
        presets->addWidget(addCard(m_presets, id, name, this), id / 2, id % 2);
    }
    auto* formats = new QVBoxLayout;
    formats->setSpacing(Space::s);
    for (const auto& [format, name] : RawValues<ExportFormat>::table)
        formats->addWidget(addCard(m_formats, static_cast<int>(format), name, this));
    m_presets.button(static_cast<int>(ExportPreset::original))->setChecked(true);
    m_formats.button(static_cast<int>(ExportFormat::h264))->setChecked(true);

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, Space::s, 0);
    whole->setSpacing(Space::s);
    whole->addWidget(m_sizeHeading);
    whole->addLayout(presets);
    whole->addLayout(makeFillRow());
    whole->addSpacing(Space::s);
    whole->addWidget(m_formatHeading);
    whole->addLayout(formats);
    whole->addLayout(makeEncodingGrid());
    whole->addSpacing(Space::s);
    whole->addWidget(m_watermarkHeading);
    whole->addWidget(m_watermark = new WatermarkBox(m_context, this));
    whole->addStretch();
}

// Keeps its space when it is hidden: what is below stays where it is.
QLayout* ExportOptionsPanel::makeFillRow() {
    m_fill->setObjectName(QStringLiteral("fill"));
    auto* row = new QHBoxLayout;
    row->setSpacing(Space::s);
    row->addWidget(m_fill);
    row->addWidget(m_fillDetail, 1);
    for (QWidget* widget : {static_cast<QWidget*>(m_fill), static_cast<QWidget*>(m_fillDetail)}) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }
    return row;
}

QLayout* ExportOptionsPanel::makeEncodingGrid() {
    m_quality->setObjectName(QStringLiteral("quality"));
    m_encoder->setObjectName(QStringLiteral("encoder"));
    for (const EncodingQuality quality : allCases<EncodingQuality>())
        m_quality->addItem(QString(), static_cast<int>(quality));
    m_captions->setObjectName(QStringLiteral("captions"));
    for (std::size_t i = 0; i < captionsPlaces.size(); ++i)
        m_captions->addItem(QString());
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(Space::m);
    grid->setVerticalSpacing(Space::s);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_qualityName, 0, 0);
    grid->addWidget(m_quality, 0, 1);
    grid->addWidget(m_encoderName, 1, 0);
    grid->addWidget(m_encoder, 1, 1);
    grid->addWidget(m_captionsName, 2, 0);
    grid->addWidget(m_captions, 2, 1);
    m_qualityName->setBuddy(m_quality);
    m_encoderName->setBuddy(m_encoder);
    m_captionsName->setBuddy(m_captions);
    return grid;
}

void ExportOptionsPanel::bind() {
    AppState& state = m_context.state;
    connect(&m_presets, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (!isChecked)
            return;
        m_watermark->setShape(shapeOf(preset()));
        showFill();
        Q_EMIT presetChanged();
    });
    connect(m_fill, &QCheckBox::toggled, this, &ExportOptionsPanel::fillChanged);
    connect(&m_formats, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (isChecked)
            Q_EMIT formatChanged();
    });
    connect(m_quality, &QComboBox::currentIndexChanged, this, &ExportOptionsPanel::qualityChanged);
    connect(m_encoder, &QComboBox::activated, this, &ExportOptionsPanel::qualityChanged);
    m_bindings.watchAll([this] { showShapes(); }, state.videoWidth, state.videoHeight);
    m_bindings.watchAll([this] { showWords(); }, state.language, state.videoWidth, state.videoHeight);
}

ExportSettings ExportOptionsPanel::settings() const {
    return {
        .preset = preset(),
        .format = static_cast<ExportFormat>(m_formats.checkedId()),
        .quality = static_cast<EncodingQuality>(m_quality->currentData().toInt()),
        .encoder = encoder(),
        .watermarkCorner = m_context.state.watermarkCorner,
        .rallies = m_context.state.parts.value().margins(),
        .fill = leavesBars() && m_fill->isChecked() ? std::optional(m_fillPosition) : std::nullopt,
        .captions = captions(),
    };
}

std::optional<CaptionsPlace> ExportOptionsPanel::captions() const {
    return captionsPlaces[static_cast<std::size_t>(m_captions->currentIndex())].first;
}

EncoderKind ExportOptionsPanel::encoder() const {
    return static_cast<EncoderKind>(m_encoder->currentData().toInt()); // 0, software, while the list is empty
}

void ExportOptionsPanel::showWords() {
    m_sizeHeading->setText(m_context.text(L10nKey::exportSizeHeading));
    m_formatHeading->setText(m_context.text(L10nKey::formatLabel));
    m_watermarkHeading->setText(m_context.text(L10nKey::exportWatermarkHeading));
    for (const auto& [preset, name] : RawValues<ExportPreset>::table)
        cardOf(m_presets, static_cast<int>(preset))->setWords(labelOf(preset), detailOf(preset));
    for (const auto& [format, name] : RawValues<ExportFormat>::table) {
        const auto id = static_cast<std::size_t>(format);
        cardOf(m_formats, static_cast<int>(format))
            ->setWords(QString::fromUtf8(name), m_context.text(formatUses[id]));
    }
    m_fill->setText(m_context.text(L10nKey::exportFill));
    m_fillDetail->setText(m_context.text(L10nKey::exportFillDetail));
    m_qualityName->setText(m_context.text(L10nKey::exportQualityHeading));
    m_quality->setAccessibleName(m_qualityName->text());
    for (int i = 0; i < m_quality->count(); ++i)
        m_quality->setItemText(i, m_context.text(qualityNames[static_cast<std::size_t>(i)]));
    m_encoderName->setText(m_context.text(L10nKey::exportEncoderHeading));
    m_encoder->setAccessibleName(m_encoderName->text());
    m_captionsName->setText(m_context.text(L10nKey::exportCaptionsHeading));
    m_captions->setAccessibleName(m_captionsName->text());
    m_captions->setToolTip(m_context.text(L10nKey::exportCaptionsDetail));
    for (int i = 0; i < m_captions->count(); ++i)
        m_captions->setItemText(i, m_context.text(captionsPlaces[static_cast<std::size_t>(i)].second));
    showEncoders();
}

// Falls back to the automatic choice when the chosen encoder no longer works.
void ExportOptionsPanel::showEncoders() {
    const bool choseSoftware = m_encoder->currentIndex() == 1;
    const EncoderKind chosen = encoder();
    const auto add = [this](const QString& text, EncoderKind kind) {
        m_encoder->addItem(text, static_cast<int>(kind));
    };
    m_encoder->clear();
    add(m_context.text(L10nKey::exportEncoderAutomatic), EncoderKind::software);
    add(m_context.text(L10nKey::exportEncoderSoftware), EncoderKind::software);
    for (const EncoderKind kind : m_working)
        add(format(m_context.text(L10nKey::exportEncoderHardware), QString::fromUtf8(media::nameOf(kind))),
            kind);
    m_encoder->setCurrentIndex(choseSoftware ? 1
                                             : std::max(0, m_encoder->findData(static_cast<int>(chosen))));
}

void ExportOptionsPanel::offerEncodersFor(const ExportJob& job) {
    m_probing.start([job] { return tryEncoders(job); },
                    [this](const std::vector<EncoderKind>& working) {
                        m_working = working;
                        showEncoders();
                    });
}

void ExportOptionsPanel::showShapes() {
    for (const auto& [preset, name] : RawValues<ExportPreset>::table)
        cardOf(m_presets, static_cast<int>(preset))->setShape(shapeOf(preset));
    m_watermark->setShape(shapeOf(preset()));
    showFill();
}

void ExportOptionsPanel::showFill() {
    m_fill->setVisible(leavesBars());
    m_fillDetail->setVisible(leavesBars());
}

bool ExportOptionsPanel::leavesBars() const {
    const auto target = targetSize(preset());
    const QSizeF source(m_context.state.videoWidth, m_context.state.videoHeight);
    return target && !source.isEmpty() && pointloom::leavesBars(source, *target);
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
    const QString use = m_context.text(presetUses[static_cast<std::size_t>(preset)]);
    if (size.isEmpty())
        return use; // until the video was read
    return QStringLiteral("%1 × %2\n%3").arg(size.width()).arg(size.height()).arg(use);
}

}
