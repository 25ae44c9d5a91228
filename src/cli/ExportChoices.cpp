#include "cli/ExportChoices.h"

#include "cli/Arguments.h"
#include "cli/ProgressDisplay.h"

#include <array>
#include <utility>

namespace pointloom::cli {

namespace {

// Words that are easier to type than the labels of the program's window.
constexpr auto formatWords = std::to_array<std::pair<ExportFormat, std::string_view>>({
    {ExportFormat::h264, "h264"},
    {ExportFormat::hevc, "hevc"},
    {ExportFormat::prores, "prores"},
});

constexpr auto presetWords = std::to_array<std::pair<ExportPreset, std::string_view>>({
    {ExportPreset::original, "original"},
    {ExportPreset::youtube4k, "youtube4k"},
    {ExportPreset::twitter1080p, "twitter1080p"},
    {ExportPreset::instagram916, "instagram916"},
});

template <class Table>
std::vector<std::string> wordsOf(const Table& table) {
    std::vector<std::string> words;
    for (const auto& [value, word] : table)
        words.emplace_back(word);
    return words;
}

template <class Table>
auto valueOf(const Table& table, std::string_view word) {
    auto value = table.front().first;
    for (const auto& [candidate, candidateWord] : table) {
        if (candidateWord == word)
            value = candidate;
    }
    return value;
}

}

CLI::Option* addFormatOption(CLI::App& app, std::string& word, Transparent transparent) {
    auto words = wordsOf(formatWords);
    if (transparent == Transparent::too)
        words.emplace_back(pngWord);
    return limitChoices(app.add_option("--format", word, "Codec: H.264 and HEVC in MP4, ProRes in MOV"),
                        words)
        ->capture_default_str();
}

void addPresetOption(CLI::App& app, std::string& word) {
    limitChoices(app.add_option("--preset", word, "Size of the picture"), wordsOf(presetWords))
        ->capture_default_str();
}

void addQualityOption(CLI::App& app, std::string& word) {
    limitChoices(app.add_option("--quality", word, "Smaller files, or pictures nearer to the source's"),
                 rawValues<media::EncodingQuality>())
        ->capture_default_str();
}

void addEncoderOption(CLI::App& app, std::string& word) {
    std::vector<std::string> words = rawValues<media::EncoderKind>();
    words.insert(words.begin(), "auto");
    limitChoices(
        app.add_option("--encoder", word, "Software, or a graphics card where it works; auto: software"),
        words)
        ->capture_default_str();
}

void addProgressOption(CLI::App& app, std::string& word) {
    limitChoices(app.add_option("--progress", word, "How to show progress; auto: a bar on a terminal"),
                 rawValues<ProgressMode>())
        ->capture_default_str();
}

ExportFormat formatOf(std::string_view word) {
    return valueOf(formatWords, word);
}

ExportPreset presetOf(std::string_view word) {
    return valueOf(presetWords, word);
}

media::EncodingQuality qualityOf(std::string_view word) {
    return valueOf(RawValues<media::EncodingQuality>::table, word);
}

media::EncoderKind encoderOf(std::string_view word) {
    return valueOf(RawValues<media::EncoderKind>::table, word);
}

}
