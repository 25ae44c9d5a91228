// The choices that few people need: how good the pictures are, and who encodes them.
#pragma once

#include "export/ExportJob.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QComboBox>
#include <QLabel>
#include <QWidget>
#include <vector>

namespace pointloom {

class EncodingBox : public QWidget {
    Q_OBJECT

public:
    EncodingBox(const UiContext& context, QWidget* parent);

    media::EncodingQuality quality() const;
    /// Software for the automatic choice.
    media::EncoderKind encoder() const;

    /// Offers the encoders in hardware that work for this export. They are tried on a worker.
    void offerEncodersFor(const ExportJob& job);

Q_SIGNALS:
    void qualityChanged();

private:
    void build();
    void bind();
    void showWords();
    void showEncoders();

    UiContext m_context;
    QLabel* m_qualityName;
    QComboBox* m_quality;
    QLabel* m_encoderName;
    QComboBox* m_encoder;                      // the data of each row is its encoder
    std::vector<media::EncoderKind> m_working; // in hardware
    BackgroundTask<std::vector<media::EncoderKind>> m_probing;
    Bindings m_bindings; // ends first
};

}
