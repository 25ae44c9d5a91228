#include "cli/ExportArguments.h"

#include "cli/Arguments.h"
#include "persistence/DecimalNumber.h"

namespace pointloom::cli {

namespace {

// Words that are easier to type than the labels of the program's window.
constexpr auto presetWords = std::to_array<std::pair<ExportPreset, std::string_view>>({
    {ExportPreset::original, "original"},
    {ExportPreset::youtube4k, "youtube4k"},
    {ExportPreset::twitter1080p, "twitter1080p"},
    {ExportPreset::instagram916, "instagram916"},
});

// Two numbers of seconds, 0 or more, around `separator`.
std::optional<std::pair<double, double>> parseSeconds(const std::string& text, char separator) {
    const std::size_t at = std::min(text.find(separator), text.size());
    const auto first = parseDecimal<double>(std::string_view(text).substr(0, at));
    const auto second = parseDecimal<double>(std::string_view(text).substr(std::min(at + 1, text.size())));
    if (!first || !second || !(*first >= 0) || !(*second >= 0))
        return std::nullopt;
    return std::pair(*first, *second);
}

void addPartOptions(CLI::App& app, ExportRequest& request) {
    app.add_flag("--whole-range", request.keepsWholeRange, "Keep what the project leaves out of its range");
    const auto takeRallies = [&request](const std::string& text) {
        const auto seconds = parseSeconds(text, ',');
        if (!seconds)
            throw CLI::ValidationError("--rallies", "give two numbers of seconds, as 10,2");
        request.settings.rallies = {seconds->first, seconds->second};
    };
    app.add_option_function<std::string>("--rallies", takeRallies,
                                         "Keep only so many seconds before and after each marker")
        ->type_name("BEFORE,AFTER");
    const auto takeLeftOut = [&request](const std::vector<std::string>& spans) {
        for (const std::string& text : spans) {
            const auto span = parseSeconds(text, '-');
            if (!span || !(span->first < span->second))
                throw CLI::ValidationError("--leave-out", "give two numbers of seconds, as 61.5-90");
            request.leftOut.push_back({span->first, span->second});
        }
    };
    app.add_option_function<std::vector<std::string>>(
           "--leave-out", takeLeftOut, "Leave out a stretch of the video, in seconds; can be repeated")
        ->type_name("FROM-TO")
        ->allow_extra_args(false);
}

}

void addSizeOptions(CLI::App& app, ExportRequest& request) {
    static constexpr std::optional middle = 0.5;
    const auto takeFill = [&request](const std::string& position) {
        request.settings.fill = position.empty() ? middle : parseDecimal<double>(position);
    };
    addChoice(app, "--preset", request.settings.preset, presetWords, "Size of the picture");
    limitNumber(
        app.add_option_function<std::string>(
            "--fill", takeFill, "Crop to its shape instead of black bars: 0 left or top, 1 right or bottom"),
        0, 1)
        ->expected(0, 1)
        ->type_name("[POSITION]");
}

void addEncodingOptions(CLI::App& app, ExportRequest& request, Pictures pictures) {
    std::vector<std::pair<ExportFormat, std::string_view>> formatWords{
        {ExportFormat::h264, "h264"}, {ExportFormat::hevc, "hevc"}, {ExportFormat::prores, "prores"}};
    if (pictures == Pictures::too)
        formatWords.emplace_back(ExportFormat::h264, pngWord);
    addChoice(app, "--format", request.settings.format, formatWords,
              "Codec: H.264 and HEVC in MP4, ProRes in MOV");
    addSizeOptions(app, request);
    addChoice(app, "--quality", request.settings.quality, RawValues<media::EncodingQuality>::table,
              "Less time, smaller files, or pictures nearer to the source's");
}

void addRangeOptions(CLI::App& app, ExportRequest& request) {
    addPaths(app, "--video", request.videos, videoFile,
             "The source, in place of the project's video; several times for a split one");
    addTimeOption(app, "--trim-start", request.trimStart, "Start of the range, in place of the project's");
    addTimeOption(app, "--trim-end", request.trimEnd, "End of the range, in place of the project's");
    addPartOptions(app, request);
}

void addRequestOptions(CLI::App& app, ExportRequest& request, Pictures pictures) {
    addRangeOptions(app, request);
    addEncodingOptions(app, request, pictures);
    addPath(app, "--watermark", request.watermarkPath, imageFile,
            "Logo in a corner, in place of the project's");
    addChoice(app, "--watermark-corner", request.watermarkCorner, RawValues<WatermarkCorner>::table,
              "Its corner");
    app.add_flag_callback(
        "--no-chapters", [&request] { request.settings.withChapters = false; },
        "Do not make chapters of labelled markers");
    addChoice(app, "--captions", request.settings.captions, RawValues<CaptionsPlace>::table,
              "The score as text: a file beside the video, or a track that players switch on");
    const auto takePreset = [&request](const std::string& word) {
        request.settings.encoderPreset = QString::fromStdString(word);
    };
    app.add_option_function<std::string>("--encoder-preset", takePreset, "Speed preset of x264 or x265")
        ->group("");
}

void addEncoderOption(CLI::App& app, ExportRequest& request) {
    std::vector<std::pair<media::EncoderKind, std::string_view>> words{
        {media::EncoderKind::software, "auto"}};
    const auto& named = RawValues<media::EncoderKind>::table;
    words.insert(words.end(), named.begin(), named.end());
    addChoice(app, "--encoder", request.settings.encoder, words,
              "Software, or a graphics card where it works; auto: software");
}

void addFreshOption(CLI::App& app, ReuseChoices& choices) {
    app.add_flag("--fresh", choices.isFresh, "Encode all anew, also what earlier exports have encoded");
}

void addProgressOption(CLI::App& app, ProgressMode& mode) {
    addChoice(app, "--progress", mode, RawValues<ProgressMode>::table,
              "How to show progress; auto: a bar on a terminal");
}

}
