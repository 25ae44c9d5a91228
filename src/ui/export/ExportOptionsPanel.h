// The choices of an export: size, format, quality, encoder and watermark.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/export/EncodingBox.h"
#include "ui/export/OptionCard.h"
#include "ui/export/WatermarkBox.h"
#include "ui/style/Bindings.h"

#include <QButtonGroup>
#include <QLabel>
#include <QWidget>

namespace pointloom {

class ExportOptionsPanel : public QWidget {
    Q_OBJECT

public:
    ExportOptionsPanel(const UiContext& context, QWidget* parent);

    ExportSettings settings() const;

    /// Offers what works for this export.
    void offerEncodersFor(const ExportJob& job) { m_encoding->offerEncodersFor(job); }

Q_SIGNALS:
    void presetChanged();
    void formatChanged();
    void qualityChanged();

private:
    void build();
    void bind();
    void showWords();
    void showShapes();
    ExportPreset preset() const { return static_cast<ExportPreset>(m_presets.checkedId()); }
    QSizeF shapeOf(ExportPreset preset) const;
    QString detailOf(ExportPreset preset) const;
    OptionCard* card(const QButtonGroup& group, int id) const;

    UiContext m_context;
    QLabel* m_sizeHeading;
    QLabel* m_formatHeading;
    QLabel* m_watermarkHeading;
    EncodingBox* m_encoding;
    WatermarkBox* m_watermark;
    QButtonGroup m_presets; // numbers are the presets
    QButtonGroup m_formats;
    Bindings m_bindings; // ends first
};

}
