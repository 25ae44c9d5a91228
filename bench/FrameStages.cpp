// Time per frame of each stage of an export: decoding, converting (scaling, depth, tone-mapping), blending
// the overlay, encoding. One stage after the other over the same frames, so that none is hidden by another.
//
//     frame-stages CLIP [--format h264|hevc|prores] [--preset original|...]
#include "cli/ExportArguments.h"
#include "export/ExportSource.h"
#include "export/FrameOverlay.h"
#include "SampleOverlay.h"

#include <cstdio>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace pointloom {
namespace {

constexpr std::size_t frameCount = 48; // held in memory at once: 1.2 GB of 4K with ten bits

using Frames = std::vector<media::VideoFrame>;

/// Prints the time of the work, in milliseconds per frame.
template <typename Work>
void measure(Work work) {
    QElapsedTimer timer;
    timer.start();
    work();
    std::printf(" %7.2f |",
                static_cast<double>(timer.nsecsElapsed()) / 1e6 / static_cast<double>(frameCount));
}

Frames decode(media::VideoReader& reader) {
    Frames frames;
    while (frames.size() < frameCount) {
        auto frame = reader.read();
        if (!frame)
            throw std::runtime_error("the clip has fewer than " + std::to_string(frameCount) + " frames");
        frames.push_back(std::move(*frame));
    }
    return frames;
}

Frames convert(media::FrameConverter converter, Frames decoded) {
    Frames frames;
    const auto takeReady = [&] {
        while (auto frame = converter.pull())
            frames.push_back(std::move(*frame));
    };
    for (media::VideoFrame& frame : decoded) {
        converter.push(std::move(frame));
        takeReady();
    }
    converter.finish();
    takeReady();
    return frames;
}

void encode(const Frames& frames, const media::VideoSettings& settings) {
    const QTemporaryDir folder;
    auto writer = media::MediaWriter::create(folder.filePath(QStringLiteral("stages.mov")), settings, false);
    for (const media::VideoFrame& frame : frames)
        writer.writeVideo(frame);
    writer.finish();
}

void run(const ExportJob& job) {
    media::VideoReader reader = openSource(job.videoPath);
    const media::MediaInfo info = reader.info();
    const ResolvedExport resolved = resolveExport(job, info);
    FrameOverlay overlay(job, resolved.layout, resolved.encoder.format);
    Frames frames;
    std::printf("|");
    measure([&] { frames = decode(reader); });
    measure([&] { frames = convert({*info.video, resolved.target}, std::move(frames)); });
    for (media::VideoFrame& frame : frames)
        frame.makeWritable();
    measure([&] {
        for (const media::VideoFrame& frame : frames)
            overlay.drawInto(frame, frame.time());
    });
    measure([&] { encode(frames, resolved.encoder); });
    std::printf("\n");
}

}
}

int main(int argc, char** argv) {
    using namespace pointloom;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    std::string clip;
    cli::ExportRequest request;
    CLI::App options("Time per frame of each stage of an export");
    options.add_option("CLIP", clip)->required();
    cli::addEncodingOptions(options, request);
    CLI11_PARSE(options, argc, argv);
    ExportJob job = sampleJob();
    job.videoPath = QString::fromStdString(clip);
    job.settings = request.settings;
    try {
        run(job);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", clip.c_str(), error.what());
        return EXIT_FAILURE;
    }
}
