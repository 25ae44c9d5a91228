// Writes the sample match as a clip, for trying the program and for measuring it.
#include "sample/SampleClip.h"

#include "files/NewFile.h"
#include "sample/Match.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <QGuiApplication>

namespace pointloom::sample {
namespace {

QSize parseSize(const std::string& text) {
    int width = 0;
    int height = 0;
    char rest = 0;
    const bool read = std::sscanf(text.c_str(), "%5dx%5d%c", &width, &height, &rest) == 2;
    constexpr int largest = 7680;
    if (!read || width < 64 || height < 64 || width > largest || height > largest || width % 2 || height % 2)
        throw CLI::ValidationError("--size",
                                   "expected even numbers from 64 to 7680 as in 1920x1080, found " + text);
    return {width, height};
}

}
}

int main(int argc, char** argv) {
    using namespace pointloom::sample;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);

    CLI::App command("Makes a clip of a tennis match, with sound.", "sample-clip");
    std::string output;
    std::string markers;
    std::string size = "1280x720";
    ClipOptions options;
    command.add_option("output", output, "The MP4 file to write")->required();
    command.add_option("--markers", markers, "Also write the score after every point to this CSV file");
    command.add_option("--size", size, "Width and height in pixels")->capture_default_str();
    command.add_option("--seconds", options.seconds, "Length")
        ->capture_default_str()
        ->check(CLI::Range(1.0, 7200.0));
    command.add_option("--fps", options.framesPerSecond, "Frames a second")
        ->capture_default_str()
        ->check(CLI::Range(1, 240));
    command.add_flag("--camera-noise", options.cameraNoise, "A camera held by hand, with sensor noise");
    try {
        command.parse(argc, argv);
        options.size = parseSize(size);
        const Match match(options.seconds);
        (void)writeClip(QString::fromStdString(output), match, options, [](double) { return true; });
        if (!markers.empty())
            pointloom::writeWhole(QString::fromStdString(markers), match.markersCsv(options.seconds));
    } catch (const CLI::ParseError& error) {
        return command.exit(error);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sample-clip: %s\n", error.what());
        return 1;
    }
    return 0;
}
