#include "cli/ProgressDisplay.h"

#include "cli/Messages.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace pointloom::cli {

namespace {

std::string clockText(double seconds) {
    constexpr double longest = 100 * 3600 - 1; // shown as 99:59:59
    const std::int64_t whole = std::lround(std::min(seconds, longest));
    const auto twoDigits = [](std::int64_t number) {
        return (number < 10 ? "0" : "") + std::to_string(number);
    };
    if (whole >= 3600)
        return std::to_string(whole / 3600) + ':' + twoDigits(whole / 60 % 60) + ':' + twoDigits(whole % 60);
    return std::to_string(whole / 60) + ':' + twoDigits(whole % 60);
}

std::string bar(double fraction, int width) {
    const auto filled = static_cast<std::size_t>(std::lround(fraction * width));
    return '[' + std::string(filled, '=') + std::string(static_cast<std::size_t>(width) - filled, ' ') + ']';
}

int terminalColumns() {
    constexpr int usual = 80;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

}

std::string progressLine(const ExportProgress& progress, double elapsedSeconds, int columns) {
    const double fraction = std::clamp(progress.fraction, 0.0, 1.0);
    const std::string percent = std::to_string(static_cast<int>(fraction * 100 + 1e-6)) + " %";
    std::string rest;
    if (const auto pace = paceOf({fraction, progress.frames, progress.expectedFrames, progress.reusedFrames},
                                 elapsedSeconds))
        rest = "  " + std::to_string(std::lround(pace->framesPerSecond)) + " fps  " +
               clockText(pace->secondsLeft) + " left";

    const auto space = static_cast<std::size_t>(std::max(columns - 1, 0)); // the cursor needs the last column
    if (percent.size() + rest.size() > space)
        return percent.substr(0, space);
    constexpr std::size_t narrowestBar = 8;
    constexpr std::size_t widestBar = 50;
    constexpr std::size_t frame = 3; // two brackets and a space
    const std::size_t left = space - percent.size() - rest.size();
    if (left < narrowestBar + frame)
        return percent + rest;
    return bar(fraction, static_cast<int>(std::min(left - frame, widestBar))) + ' ' + percent + rest;
}

ProgressDisplay::ProgressDisplay(ProgressMode mode)
    : m_mode(mode) {
    if (m_mode == ProgressMode::automatic)
        m_mode = isatty(STDERR_FILENO) ? ProgressMode::bar : ProgressMode::none;
    m_clock.start();
}

ProgressDisplay::~ProgressDisplay() {
    clearBar();
}

ExportControl ProgressDisplay::control(const CancelOnSignal& cancellation) {
    return {[&cancellation] { return cancellation.isRequested(); },
            [this](const ExportProgress& progress) { update(progress); }};
}

void ProgressDisplay::begin(const QString& name) {
    if (m_mode == ProgressMode::bar)
        std::cerr << bareText(name).toStdString() << std::endl;
    else if (m_mode == ProgressMode::json)
        std::cout << json::OrderedValue{{"document", name.toStdString()}} << std::endl;
}

void ProgressDisplay::update(const ExportProgress& progress) {
    if (m_mode == ProgressMode::bar)
        drawBar(progress);
    else if (m_mode == ProgressMode::json)
        std::cout << json::OrderedValue{{"progress", progress.fraction}} << std::endl;
}

void ProgressDisplay::finish(const QString& outputPath) {
    clearBar();
    if (m_mode == ProgressMode::json)
        std::cout << json::OrderedValue{{"done", true}, {"output", outputPath.toStdString()}} << std::endl;
    else
        std::cout << outputPath.toStdString() << std::endl;
}

void ProgressDisplay::drawBar(const ExportProgress& progress) {
    constexpr double millisecondsASecond = 1000;
    const double elapsed = static_cast<double>(m_clock.elapsed()) / millisecondsASecond;
    const std::string line = progressLine(progress, elapsed, terminalColumns());
    const std::size_t overhang = m_drawnLength > line.size() ? m_drawnLength - line.size() : 0;
    std::cerr << '\r' << line << std::string(overhang, ' ') << std::flush;
    m_drawnLength = line.size();
}

void ProgressDisplay::clearBar() {
    if (m_drawnLength > 0)
        std::cerr << '\r' << std::string(m_drawnLength, ' ') << '\r' << std::flush;
    m_drawnLength = 0;
}

}
