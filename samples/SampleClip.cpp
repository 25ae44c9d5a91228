// Makes a clip of a tennis match out of nothing, for trying the program and for measuring it.
#include "Figure.h"
#include "Match.h"
#include "MatchSound.h"
#include "Scenery.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryFile>
#include <random>
#include <stdexcept>

namespace pointloom::samples {
namespace {

struct ClipOptions {
    QString output;
    QString markers; // empty: none are written
    QSize size{1280, 720};
    double seconds = 20;
    int framesPerSecond = 30;
    bool cameraNoise = false; // a camera held by hand, with a small sensor
};

class FramePainter {
public:
    FramePainter(const ClipOptions& options, const Match& match)
        : m_options(options)
        , m_match(match)
        , m_camera(options.size)
        , m_margin(options.size.width() / 36)
        , m_scenery(m_camera, options.size, m_margin) {}

    void paint(QImage& frame, double time) {
        QPainter painter(&frame);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        sway(painter, time);
        painter.drawImage(QPointF(-m_margin, -m_margin), m_scenery.view(time, m_match.applause(time)));
        const Figure farPlayer = figure(Side::far, time);
        const Figure nearPlayer = figure(Side::near, time);
        const std::optional<Point3> ball = m_match.ball(time);
        paintShadow(painter, m_camera, farPlayer);
        paintShadow(painter, m_camera, nearPlayer);
        paintBallShadow(painter, ball);

        // From the back to the front.
        const double farPlace = m_match.player(Side::far, time).position.y;
        const double nearPlace = m_match.player(Side::near, time).position.y;
        const auto paintBallBetween = [&](double nearer, double farther) {
            if (ball && ball->y >= nearer && ball->y < farther)
                paintBall(painter, time);
        };
        paintBallBetween(farPlace, 1e9);
        paintFigure(painter, m_camera, farPlayer);
        paintBallBetween(0, farPlace);
        m_scenery.paintNet(painter);
        paintBallBetween(nearPlace, 0);
        paintFigure(painter, m_camera, nearPlayer);
        paintBallBetween(-1e9, nearPlace);
        painter.end();
        if (m_options.cameraNoise)
            addSensorNoise(frame);
    }

private:
    void sway(QPainter& painter, double time) const {
        const double unit = m_options.size.width() / 1280.0;
        const double reach = m_options.cameraNoise ? 3.2 : 1.0;
        const auto wave = [&](double frequency, double phase) {
            return std::sin(2 * 3.14159265 * frequency * time + phase);
        };
        double x = 3.2 * wave(0.13, 0.4) + 1.3 * wave(0.41, 1.9);
        double y = 2.0 * wave(0.17, 2.2) + 0.8 * wave(0.53, 0.3);
        if (m_options.cameraNoise) {
            x += 0.35 * wave(2.9, 0.8);
            y += 0.45 * wave(3.7, 1.1);
        }
        const QPointF centre(m_options.size.width() / 2.0, m_options.size.height() / 2.0);
        painter.translate(centre + QPointF(x, y) * (reach * unit));
        painter.rotate(0.06 * reach * wave(0.11, 1.3));
        const double zoom = 1.006 + 0.004 * wave(0.07, 0);
        painter.scale(zoom, zoom);
        painter.translate(-centre);
    }

    Figure figure(Side side, double time) {
        const PlayerState state = m_match.player(side, time);
        double& phase = side == Side::near ? m_nearStride : m_farStride;
        constexpr double radiansPerMetre = 3.4;
        phase += length(state.velocity) / m_options.framesPerSecond * radiansPerMetre;
        const Outfit near{QColor(238, 240, 244), QColor(28, 44, 92), QColor(206, 150, 112),
                          QColor(238, 240, 244)};
        const Outfit far{QColor(214, 62, 56), QColor(24, 26, 32), QColor(224, 172, 134), QColor(40, 28, 22)};
        return playerFigure(side, state, side == Side::near ? near : far, phase, time);
    }

    void paintBallShadow(QPainter& painter, const std::optional<Point3>& ball) const {
        if (!ball)
            return;
        const Point3 place = shadowOf(*ball);
        const double scale = m_camera.pixelsPerMetre(place);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(6, 14, 30, 130));
        painter.drawEllipse(m_camera.project(place), 0.085 * scale, 0.045 * scale);
    }

    /// The ball and, behind it, where it has just been.
    void paintBall(QPainter& painter, double time) const {
        constexpr int trailSteps = 22;
        constexpr double trailTime = 0.11;   // seconds
        constexpr double drawnRadius = 0.07; // metres; twice the truth, so that it can be followed
        painter.setPen(Qt::NoPen);
        for (int i = trailSteps; i > 0; --i) {
            const double age = static_cast<double>(i) / trailSteps;
            const std::optional<Point3> place = m_match.ball(time - age * trailTime);
            if (!place)
                continue;
            const double radius = drawnRadius * (1 - 0.6 * age) * m_camera.pixelsPerMetre(*place);
            painter.setBrush(QColor(226, 255, 90, static_cast<int>(46 * (1 - age))));
            painter.drawEllipse(m_camera.project(*place), radius, radius);
        }
        if (const std::optional<Point3> place = m_match.ball(time)) {
            const double radius = drawnRadius * m_camera.pixelsPerMetre(*place);
            const QPointF centre = m_camera.project(*place);
            painter.setBrush(QColor(178, 206, 36));
            painter.drawEllipse(centre, radius, radius);
            painter.setBrush(QColor(232, 255, 110));
            painter.drawEllipse(centre - QPointF(0.2, 0.25) * radius, radius * 0.72, radius * 0.72);
        }
    }

    void addSensorNoise(QImage& frame) {
        if (m_noise.empty()) {
            m_noise.resize(1 << 20);
            for (std::int8_t& value : m_noise) {
                // The sum of evenly spread numbers is close to a normal distribution; deviation about 4.
                const auto bits = m_dice();
                const auto sum =
                    static_cast<int>((bits & 7) + (bits >> 3 & 7) + (bits >> 6 & 7) + (bits >> 9 & 7));
                value = static_cast<std::int8_t>(sum - 14);
            }
        }
        const auto bytes = static_cast<std::size_t>(frame.width()) * 4;
        for (int y = 0; y < frame.height(); ++y) {
            const std::int8_t* noise = &m_noise[m_dice() % (m_noise.size() - bytes)];
            uchar* row = frame.scanLine(y);
            for (std::size_t i = 0; i < bytes; ++i)
                row[i] = static_cast<uchar>(std::clamp(row[i] + noise[i], 0, 255));
        }
    }

    const ClipOptions& m_options;
    const Match& m_match;
    Camera m_camera;
    int m_margin; // pixels
    Scenery m_scenery;
    double m_nearStride = 0;
    double m_farStride = 0;
    std::mt19937 m_dice{5};
    std::vector<std::int8_t> m_noise;
};

void writeFile(QFile& file, const QByteArray& bytes) {
    if (file.write(bytes) != bytes.size() || !file.flush())
        throw std::runtime_error((file.fileName() + QStringLiteral(": ") + file.errorString()).toStdString());
}

QStringList encoderArguments(const ClipOptions& options, const QString& sound) {
    const QString size = QStringLiteral("%1x%2").arg(options.size.width()).arg(options.size.height());
    return {
        QStringLiteral("-v"),
        QStringLiteral("error"),
        QStringLiteral("-y"),
        QStringLiteral("-f"),
        QStringLiteral("rawvideo"),
        QStringLiteral("-pix_fmt"),
        QStringLiteral("bgr0"),
        QStringLiteral("-video_size"),
        size,
        QStringLiteral("-framerate"),
        QString::number(options.framesPerSecond),
        QStringLiteral("-i"),
        QStringLiteral("pipe:0"),
        QStringLiteral("-i"),
        QStringLiteral("file:") + sound,
        QStringLiteral("-vf"),
        QStringLiteral("scale=out_color_matrix=bt709:out_range=limited,format=yuv420p"),
        QStringLiteral("-c:v"),
        QStringLiteral("libx264"),
        QStringLiteral("-preset"),
        QStringLiteral("veryfast"),
        QStringLiteral("-crf"),
        QStringLiteral("19"),
        QStringLiteral("-colorspace"),
        QStringLiteral("bt709"),
        QStringLiteral("-color_primaries"),
        QStringLiteral("bt709"),
        QStringLiteral("-color_trc"),
        QStringLiteral("bt709"),
        QStringLiteral("-c:a"),
        QStringLiteral("aac"),
        QStringLiteral("-b:a"),
        QStringLiteral("160k"),
        QStringLiteral("-movflags"),
        QStringLiteral("+faststart"),
        QStringLiteral("file:") + options.output,
    };
}

void makeClip(const ClipOptions& options) {
    const Match match(options.seconds);
    QTemporaryFile sound;
    if (!sound.open())
        throw std::runtime_error("no temporary file for the sound: " + sound.errorString().toStdString());
    writeFile(sound, matchSound(match, options.seconds));

    QProcess encoder;
    encoder.setProcessChannelMode(QProcess::ForwardedChannels);
    encoder.start(QStringLiteral("ffmpeg"), encoderArguments(options, sound.fileName()));
    if (!encoder.waitForStarted())
        throw std::runtime_error("ffmpeg could not be started: " + encoder.errorString().toStdString());

    FramePainter painter(options, match);
    QImage frame(options.size, QImage::Format_RGB32);
    const int frames = std::max(1, static_cast<int>(options.seconds * options.framesPerSecond));
    for (int i = 0; i < frames; ++i) {
        painter.paint(frame, static_cast<double>(i) / options.framesPerSecond);
        encoder.write(reinterpret_cast<const char*>(frame.constBits()), frame.sizeInBytes());
        constexpr qint64 framesAhead = 3;
        while (encoder.bytesToWrite() > framesAhead * frame.sizeInBytes()) {
            if (!encoder.waitForBytesWritten(-1))
                throw std::runtime_error("ffmpeg stopped before the end of the clip");
        }
    }
    encoder.closeWriteChannel();
    if (!encoder.waitForFinished(-1) || encoder.exitStatus() != QProcess::NormalExit ||
        encoder.exitCode() != 0)
        throw std::runtime_error("ffmpeg could not write " + options.output.toStdString());

    if (!options.markers.isEmpty()) {
        QFile file(options.markers);
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error(
                (options.markers + QStringLiteral(": ") + file.errorString()).toStdString());
        writeFile(file, match.markersCsv(options.seconds));
    }
}

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
    using namespace pointloom::samples;
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
        options.output = QString::fromStdString(output);
        options.markers = QString::fromStdString(markers);
        options.size = parseSize(size);
        makeClip(options);
    } catch (const CLI::ParseError& error) {
        return command.exit(error);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sample-clip: %s\n", error.what());
        return 1;
    }
    return 0;
}
