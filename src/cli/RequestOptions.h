// The options by which `export` and `plan` alike take the place of what a document says.
#pragma once

#include "cli/ExportChoices.h"
#include "cli/ProjectInputs.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace pointloom::cli {

/// A member of its command: the parser fills it.
class RequestOptions {
public:
    void addTo(CLI::App& app, Transparent transparent = Transparent::no);

    const std::string& format() const { return m_format; }
    void setFormat(std::string_view word) { m_format = word; }
    bool isFormatGiven() const { return m_formatOption->count() > 0; }

    /// All but the output.
    ExportRequest request() const;

private:
    std::optional<std::string> m_video;
    std::string m_format = "h264";
    CLI::Option* m_formatOption = nullptr; // owned by the parser
    std::string m_preset = "original";
    std::string m_quality = "default";
    std::optional<double> m_trimStart; // seconds
    std::optional<double> m_trimEnd;
    std::optional<std::string> m_watermark;
    std::string m_watermarkCorner;
    bool m_withoutChapters = false;
    std::string m_encoderPreset;
};

}
