// The preview shows the colours that the exported video will have.
#include "media/FrameConverter.h"
#include "media/VideoReader.h"
#include "playback/Watched.h"
#include "support/TestClips.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <QGuiApplication>

namespace pointloom::playback {

namespace {

constexpr int colorBars = 8;
constexpr int greyBars = 4;       // the first of them
constexpr int usualTolerance = 3; // levels of 255
constexpr int toleranceOfShaders = 10;

struct Footage {
    const char* name;
    const char* layout;
    const char* matrix; // as the scale filter names it
    const char* range;
    const char* tags;
    const char* encoder;
    int barsOnCard = colorBars; // that a graphics card shows alike
    int toleranceOnCard = usualTolerance;
    int tolerance = usualTolerance;
};

constexpr Footage footage[] = {
    {"BT.709", "yuv420p", "bt709", "tv", "color_primaries=bt709:color_trc=bt709:colorspace=bt709:range=tv",
     "-c:v libx264 -qp 0"},
    {"BT.601, full range", "yuv420p", "smpte170m", "pc",
     "color_primaries=smpte170m:color_trc=smpte170m:colorspace=smpte170m:range=pc", "-c:v libx264 -qp 0",
     colorBars, toleranceOfShaders}, // they turn its primaries into those of the screen, exports do not
    {"BT.2020", "yuv420p10le", "bt2020", "tv",
     "color_primaries=bt2020:color_trc=bt709:colorspace=bt2020nc:range=tv",
     "-c:v libx265 -x265-params lossless=1:log-level=none", greyBars, toleranceOfShaders,
     4}, // at the edge of the gamut
    {"HLG", "yuv420p10le", "bt2020", "tv",
     "color_primaries=bt2020:color_trc=arib-std-b67:colorspace=bt2020nc:range=tv",
     "-c:v libx265 -x265-params lossless=1:log-level=none", greyBars, toleranceOfShaders},
    {"PQ", "yuv420p10le", "bt2020", "tv",
     "color_primaries=bt2020:color_trc=smpte2084:colorspace=bt2020nc:range=tv",
     "-c:v libx265 -x265-params lossless=1:log-level=none:max-cll=1000,400:"
     "master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,50)",
     greyBars, toleranceOfShaders},
};

/// Eight bars: greys from dark to bright, then colours.
QString makeBars(const test::ClipFolder& folder, const Footage& kind) {
    const QString picture =
        QStringLiteral("color=0x202020:s=320x64:r=25:d=0.4,format=gbrp,drawbox=x=40:w=40:c=0x606060:t=fill,"
                       "drawbox=x=80:w=40:c=0x909090:t=fill,drawbox=x=120:w=40:c=0xc0c0c0:t=fill,"
                       "drawbox=x=160:w=40:c=0xa04040:t=fill,drawbox=x=200:w=40:c=0x40a040:t=fill,"
                       "drawbox=x=240:w=40:c=0x4040a0:t=fill,drawbox=x=280:w=40:c=0xb09080:t=fill");
    const QString coding = QStringLiteral(
        "scale=out_color_matrix=%1:out_range=%2:flags=accurate_rnd+full_chroma_int,format=%3,setparams=%4");
    return folder.make(QStringLiteral("bars.mp4"),
                       QStringList{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                   picture, QStringLiteral("-vf"),
                                   coding.arg(QString::fromUtf8(kind.matrix), QString::fromUtf8(kind.range),
                                              QString::fromUtf8(kind.layout), QString::fromUtf8(kind.tags))} +
                           QString::fromUtf8(kind.encoder).split(QLatin1Char(' ')));
}

/// The largest difference between one of the first bars that are shown and the same bar of an exported frame.
int worstDifference(const QImage& shown, const media::RgbaImage& exported, int bars) {
    int worst = 0;
    for (int bar = 0; bar < bars; ++bar) {
        const QColor color =
            shown.pixelColor(shown.width() * (2 * bar + 1) / (2 * colorBars), shown.height() / 2);
        const int x = exported.width * (2 * bar + 1) / (2 * colorBars);
        const std::uint8_t* pixel = exported.pixels.data() + (exported.height / 2 * exported.width + x) * 4;
        worst = std::max({worst, std::abs(color.red() - pixel[0]), std::abs(color.green() - pixel[1]),
                          std::abs(color.blue() - pixel[2])});
    }
    return worst;
}

void expectColorsOfTheExport(Watched& watched, const Footage& kind, int bars, int allowed) {
    const test::ClipFolder folder;
    const QString clip = makeBars(folder, kind);
    const media::RgbaImage exported = media::toRgb(*media::VideoReader::open(clip).read());
    ASSERT_TRUE(watched.load(clip));
    int worst = 255;
    Watched::waitFor([&] { return (worst = worstDifference(watched.picture(), exported, bars)) <= allowed; });
    EXPECT_LE(worst, allowed) << kind.name;
}

}

TEST(PreviewColors, AreThoseOfTheExport) {
    Watched watched(PlayerView::Rendering::software);
    for (const Footage& kind : footage)
        expectColorsOfTheExport(watched, kind, colorBars, kind.tolerance);
}

// Runs on a screen only: see CMakeLists.txt. A graphics card maps HDR greys alike and strong colours
// differently.
TEST(OpenGlColors, AreNearThoseOfTheExport) {
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        GTEST_SKIP() << "needs a screen";
    Watched watched(PlayerView::Rendering::openGl);
    for (const Footage& kind : footage)
        expectColorsOfTheExport(watched, kind, kind.barsOnCard, kind.toleranceOnCard);
}

}
