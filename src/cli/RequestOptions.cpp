#include "cli/RequestOptions.h"

#include "cli/Arguments.h"

namespace pointloom::cli {

void RequestOptions::addTo(CLI::App& app, Transparent transparent) {
    addFileOption(app, "--video", m_video, videoFile, "The source, in place of the project's video");
    m_formatOption = addFormatOption(app, m_format, transparent);
    addPresetOption(app, m_preset);
    addQualityOption(app, m_quality);
    addTimeOption(app, "--trim-start", m_trimStart, "Start of the range, in place of the project's");
    addTimeOption(app, "--trim-end", m_trimEnd, "End of the range, in place of the project's");
    addFileOption(app, "--watermark", m_watermark, imageFile, "Logo in a corner, in place of the project's");
    limitChoices(app.add_option("--watermark-corner", m_watermarkCorner, "Its corner"),
                 rawValues<WatermarkCorner>());
    app.add_flag("--no-chapters", m_withoutChapters, "Do not make chapters of labelled markers");
    app.add_option("--encoder-preset", m_encoderPreset, "Speed preset of x264 or x265")->group("");
}

ExportRequest RequestOptions::request() const {
    ExportRequest request;
    request.videoPath = toPath(m_video);
    request.watermarkPath = toPath(m_watermark);
    request.watermarkCorner = fromRawValue<WatermarkCorner>(m_watermarkCorner);
    request.trimStart = m_trimStart;
    request.trimEnd = m_trimEnd;
    request.settings.format = formatOf(m_format);
    request.settings.preset = presetOf(m_preset);
    request.settings.quality = qualityOf(m_quality);
    request.settings.encoderPreset = QString::fromStdString(m_encoderPreset);
    request.settings.withChapters = !m_withoutChapters;
    return request;
}

}
