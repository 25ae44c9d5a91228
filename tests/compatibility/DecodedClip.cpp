#include "compatibility/DecodedClip.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <QRegularExpression>
#include <stdexcept>

namespace pointloom::test {

namespace {

constexpr int largestWhole = 1000; // pixels of width; larger pictures are thinned out

double number(const nlohmann::json& object, const char* key) {
    if (!object.contains(key))
        return 0;
    return object[key].is_string() ? std::stod(object[key].get<std::string>()) : object[key].get<double>();
}

std::string text(const nlohmann::json& object, const char* key) {
    return object.value(key, std::string());
}

/// ffprobe prints the nine numbers in rows, each row after its own number and a colon.
Turn readTurn(const nlohmann::json& stream) {
    for (const auto& data : stream.value("side_data_list", nlohmann::json::array())) {
        if (text(data, "side_data_type") != "Display Matrix")
            continue;
        std::vector<int> numbers;
        const QString rows = QString::fromStdString(data["displaymatrix"].get<std::string>());
        for (const QString& word : rows.simplified().split(QLatin1Char(' ')))
            if (!word.endsWith(QLatin1Char(':')))
                numbers.push_back(word.toInt());
        constexpr int one = 1 << 16;
        return {numbers.at(0) / one, numbers.at(1) / one, numbers.at(3) / one, numbers.at(4) / one};
    }
    return upright;
}

/// A planar layout that holds the same samples.
QString planarLayout(const QString& layout) {
    if (layout == QStringLiteral("uyvy422") || layout == QStringLiteral("yuyv422"))
        return QStringLiteral("yuv422p");
    if (layout.startsWith(QStringLiteral("yuva444p")))
        return QStringLiteral("yuv444p10le");
    if (layout.startsWith(QStringLiteral("nv12")))
        return QStringLiteral("yuv420p");
    if (layout.contains(QStringLiteral("rgb")) || layout.contains(QStringLiteral("bgr")))
        return QStringLiteral("gbrp");
    return layout;
}

QSize chromaSize(const QString& layout, QSize luma) {
    const bool halvesWidth = layout.contains(QStringLiteral("420")) || layout.contains(QStringLiteral("422"));
    const bool halvesHeight = layout.contains(QStringLiteral("420"));
    return {halvesWidth ? (luma.width() + 1) / 2 : luma.width(),
            halvesHeight ? (luma.height() + 1) / 2 : luma.height()};
}

int bitDepthOf(const QString& layout) {
    static const QRegularExpression depth(QStringLiteral("p(\\d+)le$"));
    const auto match = depth.match(layout);
    return match.hasMatch() ? match.captured(1).toInt() : 8;
}

struct LumaWeights {
    double red;
    double blue;
};

LumaWeights lumaWeights(const std::string& matrix) {
    if (matrix == "bt2020nc")
        return {0.2627, 0.0593}; // BT.2020
    if (matrix == "bt709")
        return {0.2126, 0.0722}; // BT.709
    if (matrix == "smpte170m" || matrix == "bt470bg")
        return {0.299, 0.114}; // BT.601
    throw std::runtime_error("no luma weights for the matrix \"" + matrix + "\"");
}

/// R'G'B' of samples that were brought to eight bits, ITU-T H.273, 8.3.
Rgb rgbOf(double luma, double cb, double cr, const SourceColor& color) {
    const bool isFull = color.range == "pc";
    const auto [red, blue] = lumaWeights(color.matrix);
    const double y = isFull ? luma : (luma - 16) * 255 / 219;
    const double pb = (cb - 128) * (isFull ? 1 : 255.0 / 224);
    const double pr = (cr - 128) * (isFull ? 1 : 255.0 / 224);
    const double r = y + 2 * (1 - red) * pr;
    const double b = y + 2 * (1 - blue) * pb;
    return {r, (y - red * r - blue * b) / (1 - red - blue), b};
}

}

DecodedClip::DecodedClip(const QString& path) {
    probe(path);
    decodePictures(path);
    if (!m_audio.is_null())
        decodeSound(path);
}

void DecodedClip::probe(const QString& path) {
    const nlohmann::json all = probeFrames(path);
    int mostFrames = 0;
    for (const auto& stream : all["streams"]) {
        const int frames = stream.contains("nb_frames") ? static_cast<int>(number(stream, "nb_frames")) : 1;
        const bool isCover = stream["disposition"].value("attached_pic", 0) != 0;
        if (stream["codec_type"] == "video" && !isCover && frames > mostFrames) {
            m_video = stream;
            mostFrames = frames;
        }
        if (stream["codec_type"] == "audio" && m_audio.is_null())
            m_audio = stream;
    }
    for (const auto& frame : all["frames"]) {
        if (frame.value("stream_index", -1) != m_video["index"].get<int>()) // subtitles have none
            continue;
        if (m_firstFrame.is_null())
            m_firstFrame = frame;
        m_times.push_back(number(frame, "best_effort_timestamp_time"));
    }
    m_turn = readTurn(m_video);
}

void DecodedClip::decodePictures(const QString& path) {
    const QString stored = QString::fromStdString(text(m_video, "pix_fmt"));
    const QString layout = planarLayout(stored);
    QSize size(m_video["width"].get<int>(), m_video["height"].get<int>());
    QStringList arguments{QStringLiteral("-map"), QStringLiteral("0:%1").arg(m_video["index"].get<int>())};
    if (std::max(size.width(), size.height()) > largestWhole) {
        size /= 4;
        arguments += {QStringLiteral("-vf"),
                      QStringLiteral("scale=%1:%2:flags=neighbor").arg(size.width()).arg(size.height())};
    }
    arguments += {QStringLiteral("-fps_mode"), QStringLiteral("passthrough"), QStringLiteral("-f"),
                  QStringLiteral("rawvideo")};
    if (layout != stored)
        arguments += {QStringLiteral("-pix_fmt"), layout};
    m_samples = decode(path, arguments);

    m_bitDepth = bitDepthOf(layout);
    m_isRgb = layout.startsWith(QStringLiteral("gbrp"));
    const QSize chroma = chromaSize(layout, size);
    m_planeSizes = {size, chroma, chroma};
    for (const QSize& plane : m_planeSizes)
        m_frameBytes += qsizetype{plane.width()} * plane.height() * (m_bitDepth > 8 ? 2 : 1);
    if (m_samples.size() != m_frameBytes * static_cast<qsizetype>(m_times.size()))
        throw std::runtime_error(path.toStdString() + ": as many pictures as times were expected");
}

void DecodedClip::decodeSound(const QString& path) {
    const QByteArray sound =
        decode(path, {QStringLiteral("-map"), QStringLiteral("0:a:0"), QStringLiteral("-ac"),
                      QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("f32le")});
    std::vector<float> samples(static_cast<std::size_t>(sound.size()) / sizeof(float));
    std::memcpy(samples.data(), sound.constData(), samples.size() * sizeof(float));
    const double rate = number(m_audio, "sample_rate");
    const double start = number(m_audio, "start_time");
    m_soundEnd = start + static_cast<double>(samples.size()) / rate;
    const auto louder = [](float a, float b) { return std::abs(a) < std::abs(b); };
    const auto peak = std::max_element(samples.begin(), samples.end(), louder);
    if (peak == samples.end() || std::abs(*peak) < 0.05F)
        return;
    const float loud = 0.4F * std::abs(*peak);
    const auto onset =
        std::find_if(samples.begin(), samples.end(), [&](float sample) { return std::abs(sample) > loud; });
    m_beepTime = start + static_cast<double>(onset - samples.begin()) / rate;
}

double DecodedClip::pictureEnd() const {
    return number(m_video, "start_time") + number(m_video, "duration");
}

SourceColor DecodedClip::color() const {
    SourceColor color;
    color.primaries = text(m_video, "color_primaries");
    color.transfer = text(m_video, "color_transfer");
    color.matrix = text(m_video, "color_space");
    color.range = text(m_video, "color_range");
    return color;
}

QSizeF DecodedClip::shownSize() const {
    double shape = 1;
    const QStringList ratio =
        QString::fromStdString(text(m_video, "sample_aspect_ratio")).split(QLatin1Char(':'));
    if (ratio.size() == 2 && ratio[0].toDouble() > 0)
        shape = ratio[0].toDouble() / ratio[1].toDouble();
    const QSizeF size(m_video["width"].get<int>() * shape, m_video["height"].get<int>());
    return m_turn[0] == 0 ? size.transposed() : size;
}

QPointF DecodedClip::shownPoint(QPointF stored) const {
    const QPointF p = stored - QPointF(0.5, 0.5);
    return QPointF(m_turn[0] * p.x() + m_turn[2] * p.y(), m_turn[1] * p.x() + m_turn[3] * p.y()) +
           QPointF(0.5, 0.5);
}

QPointF DecodedClip::storedPoint(QPointF shown) const {
    const QPointF p = shown - QPointF(0.5, 0.5); // turns are undone by the transposed matrix
    return QPointF(m_turn[0] * p.x() + m_turn[1] * p.y(), m_turn[2] * p.x() + m_turn[3] * p.y()) +
           QPointF(0.5, 0.5);
}

/// The sample of a plane at a point of the stored picture, moved by whole samples; brought to eight bits.
double DecodedClip::sampleAt(int frame, std::size_t plane, QPointF stored, int dx, int dy) const {
    const int bytes = m_bitDepth > 8 ? 2 : 1;
    qsizetype offset = frame * m_frameBytes;
    for (std::size_t i = 0; i < plane; ++i)
        offset += qsizetype{m_planeSizes[i].width()} * m_planeSizes[i].height() * bytes;
    const QSize size = m_planeSizes[plane];
    const int x = std::clamp(static_cast<int>(stored.x() * size.width()) + dx, 0, size.width() - 1);
    const int y = std::clamp(static_cast<int>(stored.y() * size.height()) + dy, 0, size.height() - 1);
    const auto* sample = reinterpret_cast<const unsigned char*>(m_samples.constData()) + offset +
                         (qsizetype{y} * size.width() + x) * bytes;
    const int code = bytes == 2 ? sample[0] + 256 * sample[1] : sample[0];
    return static_cast<double>(code) / (1 << (m_bitDepth - 8));
}

Rgb DecodedClip::colorAt(int frame, QPointF shown, const SourceColor& color) const {
    const QPointF stored = storedPoint(shown);
    std::array<double, 3> mean{};
    constexpr int reach = 1;
    for (std::size_t plane = 0; plane < mean.size(); ++plane) {
        for (int dy = -reach; dy <= reach; ++dy)
            for (int dx = -reach; dx <= reach; ++dx)
                mean[plane] += sampleAt(frame, plane, stored, dx, dy) / ((2 * reach + 1) * (2 * reach + 1));
    }
    if (m_isRgb)
        return {mean[2], mean[0], mean[1]};
    return rgbOf(mean[0], mean[1], mean[2], color);
}

double DecodedClip::combAt(int frame, QPointF shown) const {
    const QPointF stored = storedPoint(shown);
    constexpr int reach = 4;
    double sum = 0;
    for (int dy = -reach; dy < reach; ++dy)
        sum += std::abs(sampleAt(frame, 0, stored, 0, dy) - sampleAt(frame, 0, stored, 0, dy + 1));
    return sum / (2 * reach);
}

}
