#include "support/TestClips.h"

#include "support/Command.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <stdexcept>
#include <string>

namespace pointloom::test {

namespace {

QByteArray run(const QString& program, const QStringList& arguments) {
    QString line = program;
    for (const QString& argument : arguments)
        line += u' ' + quoted(argument);
    constexpr int patience = 120; // seconds
    const CommandResult result = runCommand(line, patience);
    if (result.status != 0)
        throw std::runtime_error(line.toStdString() + ": ended with status " + std::to_string(result.status));
    return result.output;
}

nlohmann::json probeWith(const QStringList& wanted, const QString& path) {
    const QByteArray output =
        run(QStringLiteral("ffprobe"), QStringList{QStringLiteral("-v"), QStringLiteral("error"),
                                                   QStringLiteral("-of"), QStringLiteral("json")} +
                                           wanted + QStringList{path});
    return nlohmann::json::parse(output.toStdString());
}

QDir realClipFolder() {
    const QString chosen = qEnvironmentVariable("POINTLOOM_MEDIA");
    return QDir(chosen.isEmpty() ? QStringLiteral(POINTLOOM_SOURCE_DIR "/../shared/media") : chosen);
}

}

QString ClipFolder::make(const QString& name, const QStringList& arguments) const {
    const QStringList quiet{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-nostdin"),
                            QStringLiteral("-y")};
    run(QStringLiteral("ffmpeg"), quiet + arguments + QStringList{path(name)});
    return path(name);
}

QString ClipFolder::make(const QString& name, const char* arguments) const {
    return make(name, QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

QString ClipFolder::write(const QString& name, const QByteArray& content) const {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error(file.errorString().toStdString());
    return path(name);
}

// Writes the matrix into the first track's header (ISO/IEC 14496-12, 8.3.2).
QString makeTurned(const Turn& turn, const ClipFolder& folder, const QString& path, const QString& name) {
    constexpr qsizetype matrixAfterType = 44; // bytes, in version 0
    constexpr qint32 one = 1 << 16;
    QByteArray bytes = readFile(path);
    const qsizetype header = bytes.indexOf("tkhd");
    if (header < 0 || header + matrixAfterType + 36 > bytes.size())
        throw std::runtime_error("no track header in " + path.toStdString());
    constexpr std::array<qsizetype, 4> places = {0, 4, 12, 16};
    for (std::size_t i = 0; i < turn.size(); ++i)
        qToBigEndian<qint32>(turn[i] * one, bytes.data() + header + matrixAfterType + places[i]);
    return folder.write(name, bytes);
}

nlohmann::json probe(const QString& path) {
    return probeWith(
        {QStringLiteral("-show_streams"), QStringLiteral("-show_format"), QStringLiteral("-show_chapters")},
        path);
}

nlohmann::json probePackets(const QString& path) {
    return probeWith(
               {QStringLiteral("-select_streams"), QStringLiteral("v:0"), QStringLiteral("-show_packets")},
               path)
        .at("packets");
}

nlohmann::json probeFrames(const QString& path) {
    return probeWith({QStringLiteral("-show_streams"), QStringLiteral("-show_frames")}, path);
}

std::vector<double> frameTimes(const QString& path) {
    const nlohmann::json probed =
        probeWith({QStringLiteral("-select_streams"), QStringLiteral("v:0"), QStringLiteral("-show_entries"),
                   QStringLiteral("frame=pts_time")},
                  path);
    std::vector<double> times;
    for (const nlohmann::json& frame : probed.at("frames")) {
        if (frame.contains("pts_time"))
            times.push_back(std::stod(frame["pts_time"].get<std::string>()));
    }
    return times;
}

QByteArray decode(const QString& path, const QStringList& arguments) {
    return run(QStringLiteral("ffmpeg"),
               QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-noautorotate"),
                           QStringLiteral("-i"), path} +
                   arguments + QStringList{QStringLiteral("-")});
}

QByteArray firstPicture(const QString& path, const QString& pixelFormat) {
    return run(QStringLiteral("ffmpeg"),
               {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), path,
                QStringLiteral("-frames:v"), QStringLiteral("1"), QStringLiteral("-f"),
                QStringLiteral("rawvideo"), QStringLiteral("-pix_fmt"), pixelFormat, QStringLiteral("-")});
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    return file.readAll();
}

std::optional<QString> realClip(const QString& name) {
    const QDir folder = realClipFolder();
    if (!folder.exists(name))
        return std::nullopt;
    return folder.filePath(name);
}

QStringList realClips() {
    const QDir folder = realClipFolder();
    QStringList paths;
    for (const QString& name : folder.entryList(
             {QStringLiteral("*.mp4"), QStringLiteral("*.mov"), QStringLiteral("*.m4v")}, QDir::Files))
        paths.append(folder.filePath(name));
    return paths;
}

}
