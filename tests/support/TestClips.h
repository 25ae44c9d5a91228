// Makes small video files with the ffmpeg command-line tool and looks at files with ffprobe, so that what our
// own code reads and writes is checked against another program's.
#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <vector>

namespace pointloom::test {

/// A folder that goes away with its object.
class ClipFolder {
public:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// Runs ffmpeg with `arguments` and this folder's file `name` as its output; returns the file's path.
    /// Throws std::runtime_error with what ffmpeg said when it fails.
    QString make(const QString& name, const QStringList& arguments) const;

    /// As `make`, with the arguments in one line, separated by spaces.
    QString make(const QString& name, const char* arguments) const;

    QString write(const QString& name, const QByteArray& content) const;

private:
    QTemporaryDir m_folder;
};

/// The linear part of a display matrix, row by row: (a, b, c, d) shows (x, y) at (ax + cy, bx + dy).
using Turn = std::array<int, 4>;
constexpr Turn upright = {1, 0, 0, 1};
constexpr Turn counterclockwise = {0, -1, 1, 0}; // a quarter
constexpr Turn upsideDown = {-1, 0, 0, -1};
constexpr Turn clockwise = {0, 1, -1, 0}; // a quarter

/// A copy `name` of the clip `path` that is to be shown turned. ffmpeg's options for this differ by version.
/// The matrix says nothing of the place, as most cameras leave it. Throws std::runtime_error.
QString makeTurned(const Turn& turn, const ClipFolder& folder, const QString& path, const QString& name);

/// Streams, format and chapters of a file, as ffprobe shows them in JSON.
nlohmann::json probe(const QString& path);

/// Packets of the first video stream, in the file's order.
nlohmann::json probePackets(const QString& path);

/// Streams, and the decoded frames of all of them.
nlohmann::json probeFrames(const QString& path);

/// Times in seconds of the first video stream's frames, as ffprobe decodes them.
std::vector<double> frameTimes(const QString& path);

/// What ffmpeg writes for the file under `arguments`, pictures as they are stored, not turned.
QByteArray decode(const QString& path, const QStringList& arguments);

/// Samples of the first picture as ffmpeg shows it (turned as the file says), in `pixelFormat`.
QByteArray firstPicture(const QString& path, const QString& pixelFormat);

QByteArray readFile(const QString& path);

/// A clip made by others, from $POINTLOOM_MEDIA or the folder shared/media beside the repository; empty when
/// it is not there.
std::optional<QString> realClip(const QString& name);
/// All clips there.
QStringList realClips();

}
