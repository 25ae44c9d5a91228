// The choices that every command that exports offers: format, size, quality, encoder, how to show
// progress.
#pragma once

#include "export/ExportSettings.h"

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace pointloom::cli {

/// Whether formats that only an overlay without its video can have are offered.
enum class Transparent { no, too };

/// The one of them that is no ExportFormat.
constexpr std::string_view pngWord = "png";

/// Each takes its default from `word` and leaves one of the offered words there.
CLI::Option* addFormatOption(CLI::App& app, std::string& word, Transparent transparent = Transparent::no);
void addPresetOption(CLI::App& app, std::string& word);
void addQualityOption(CLI::App& app, std::string& word);
void addEncoderOption(CLI::App& app, std::string& word);
void addProgressOption(CLI::App& app, std::string& word);

/// H.264 for a word that names none.
ExportFormat formatOf(std::string_view word);
ExportPreset presetOf(std::string_view word);
media::EncodingQuality qualityOf(std::string_view word);

/// Software for "auto": its quality is what the defaults promise.
media::EncoderKind encoderOf(std::string_view word);

}
