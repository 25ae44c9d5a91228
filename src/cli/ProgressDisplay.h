// Progress of an export: a bar for users, lines of JSON for programs.
#pragma once

#include "cli/CancelOnSignal.h"
#include "export/ExportJob.h"

#include <QElapsedTimer>
#include <string>

namespace pointloom::cli {

enum class ProgressMode { automatic, bar, json, none };

}

template <>
struct pointloom::RawValues<pointloom::cli::ProgressMode> {
    using Mode = pointloom::cli::ProgressMode;
    static constexpr auto table = std::to_array<std::pair<Mode, std::string_view>>({
        {Mode::automatic, "auto"},
        {Mode::bar, "bar"},
        {Mode::json, "json"},
        {Mode::none, "none"},
    });
};

namespace pointloom::cli {

/// One line of at most `columns` - 1 characters: a bar, per cent, frames a second and the time left. What
/// does not fit is left out, the bar first.
std::string progressLine(const ExportProgress& progress, double elapsedSeconds, int columns);

/// The bar is drawn on standard error and removed at the end; JSON goes to standard output, one object a
/// line. Automatic means a bar on a terminal, and nothing elsewhere.
class ProgressDisplay {
public:
    explicit ProgressDisplay(ProgressMode mode);
    ~ProgressDisplay();
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    /// Control of an export that stops on signals and shows its progress here. The display and `cancellation`
    /// must outlive it.
    ExportControl control(const CancelOnSignal& cancellation);

    /// Announces the next of several files.
    void begin(const QString& name);

    void update(const ExportProgress& progress);

    /// Names the complete file on standard output.
    void finish(const QString& outputPath);

private:
    void drawBar(const ExportProgress& progress);
    void clearBar();

    ProgressMode m_mode;
    QElapsedTimer m_clock;
    std::size_t m_drawnLength = 0; // characters of the line on the terminal
};

}
