#include "compatibility/Pattern.h"
#include "compatibility/Source.h"

#include <cmath>
#include <QtEndian>
#include <stdexcept>

namespace pointloom::test {

namespace {

QStringList words(const std::string& text) {
    return QString::fromStdString(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

double perSecond(const std::string& rate) {
    const QStringList parts = QString::fromStdString(rate).split(QLatin1Char('/'));
    return parts.at(0).toDouble() / (parts.size() > 1 ? parts.at(1).toDouble() : 1);
}

/// The scale filter's own names.
std::string scaleMatrix(const std::string& matrix) {
    if (matrix == "bt2020nc")
        return "bt2020";
    return matrix == "bt470bg" ? "bt601" : matrix;
}

std::string filters(const Source& source) {
    std::string text = source.pictureFilters;
    const SourceColor& color = source.color;
    if (color.matrix != "gbr")
        text += ",scale=out_color_matrix=" + scaleMatrix(color.matrix) + ":out_range=" + color.range +
                ":flags=neighbor+accurate_rnd+full_chroma_int";
    text += ",format=" + source.layout;
    const bool tagged = color.isTagged && color.matrix != "gbr";
    text += tagged ? ",setparams=color_primaries=" + color.primaries + ":color_trc=" + color.transfer +
                         ":colorspace=" + color.matrix + ":range=" + color.range
                   : ",setparams=color_primaries=unknown:color_trc=unknown";
    if (!tagged && color.matrix != "gbr")
        text += ":colorspace=unknown";
    return text.front() == ',' ? text.substr(1) : text;
}

QStringList pictureInput(const Source& source, const ClipFolder& folder) {
    QStringList input;
    if (!source.pictureOffset.empty())
        input += {QStringLiteral("-itsoffset"), QString::fromStdString(source.pictureOffset)};
    return input +
           words("-f rawvideo -pixel_format rgb24 -video_size 320x192 -framerate " + source.rate + " -i") +
           QStringList{Pattern::write(folder, source.frames)};
}

/// A tone of 1 kHz in all channels while the flash is shown.
QStringList soundInput(const Source& source) {
    const double rate = perSecond(source.rate);
    const double offset = QString::fromStdString(source.pictureOffset).toDouble() - source.soundOffset;
    const double beep = Pattern::flashFrame(source.frames) / rate + offset;
    const double length = source.soundLength > 0 ? source.soundLength : source.frames / rate + offset;
    const QString tone = QStringLiteral("0.5*sin(2*PI*1000*t)*between(t\\,%1\\,%2)")
                             .arg(beep, 0, 'f', 6)
                             .arg(beep + Pattern::beepLength, 0, 'f', 6);
    return words("-itsoffset " + std::to_string(source.soundOffset) + " -f lavfi -i") +
           QStringList{QStringLiteral("aevalsrc=%1:c=%2:s=%3:d=%4")
                           .arg(tone, QString::fromStdString(source.speakers))
                           .arg(source.soundRate)
                           .arg(length)};
}

QString writeSubtitles(const ClipFolder& folder) {
    return folder.write(QStringLiteral("note.srt"), "1\n00:00:00,000 --> 00:00:01,000\nServe\n\n");
}

QStringList firstPass(const Source& source, const ClipFolder& folder) {
    QStringList arguments = pictureInput(source, folder);
    if (!source.sound.empty())
        arguments += soundInput(source);
    for (const QString& word : words(source.inputs))
        arguments += word == QStringLiteral("note.srt") ? writeSubtitles(folder) : word;
    arguments += {QStringLiteral("-vf"), QString::fromStdString(filters(source))};
    return arguments + words(source.pictures) + words(source.sound) + words(source.container);
}

QString copyAgain(const Source& source, const ClipFolder& folder, const QString& first) {
    const QStringList parts = QString::fromStdString(source.secondPass).split(QStringLiteral(" | "));
    return folder.make(QStringLiteral("again-") + QString::fromStdString(source.file),
                       words(parts.at(0).toStdString()) + QStringList{QStringLiteral("-i"), first} +
                           words(parts.at(1).toStdString()));
}

}

double trimStart(const Source& source) {
    return source.trimmedFrames / perSecond(source.rate);
}

QString make(const Source& source, const ClipFolder& folder) {
    const QString name = QString::fromStdString(source.file);
    QString path = folder.make(name, firstPass(source, folder));
    if (!source.secondPass.empty())
        path = copyAgain(source, folder, path);
    if (source.turn != upright)
        path = makeTurned(source.turn, folder, path, QStringLiteral("turned-") + name);
    return path;
}

}
