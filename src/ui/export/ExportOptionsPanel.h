// The choices of an export: size, filling, format, quality, encoder and watermark.
#pragma once

#include "export/ExportJob.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/export/WatermarkBox.h"
#include "ui/style/Bindings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QWidget>
#include <vector>

class QLayout;

namespace pointloom {

class ExportOptionsPanel : public QWidget {
    Q_OBJECT

public:
    ExportOptionsPanel(const UiContext& context, QWidget* parent);

    /// The encoder is software for the automatic choice.
    ExportSettings settings() const;

    /// The part of the picture that fills the frame; `position` as ExportSettings::fill.
    void setFillPosition(double position) { m_fillPosition = position; }

    /// Offers the hardware encoders that work for this export. They are tried in the background.
    void offerEncodersFor(const ExportJob& job);

Q_SIGNALS:
    void presetChanged();
    void fillChanged();
    void formatChanged();
    void qualityChanged();

private:
    void build();
    QLayout* makeFillRow();
    QLayout* makeEncodingGrid();
    void bind();
    void showWords();
    void showEncoders();
    void showShapes();
    void showFill();
    ExportPreset preset() const { return static_cast<ExportPreset>(m_presets.checkedId()); }
    media::EncoderKind encoder() const;
    std::optional<CaptionsPlace> captions() const;
    bool leavesBars() const;
    QSizeF shapeOf(ExportPreset preset) const;
    QString detailOf(ExportPreset preset) const;

    UiContext m_context;
    QLabel* m_sizeHeading;
    QLabel* m_formatHeading;
    QLabel* m_watermarkHeading;
    QLabel* m_qualityName;
    QComboBox* m_quality;
    QLabel* m_encoderName;
    QComboBox* m_encoder; // the data of each row is its encoder
    WatermarkBox* m_watermark = nullptr;
    QLabel* m_captionsName;
    QComboBox* m_captions;
    QCheckBox* m_fill; // shown for sizes of another shape than the source's
    QLabel* m_fillDetail;
    double m_fillPosition = 0.5;
    QButtonGroup m_presets; // numbers are the presets
    QButtonGroup m_formats;
    std::vector<media::EncoderKind> m_working; // in hardware
    BackgroundTask<std::vector<media::EncoderKind>> m_probing;
    Bindings m_bindings; // ends first
};

}
