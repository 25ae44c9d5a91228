#include "media/DisplayMatrix.h"

#include "media/StreamSideData.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace pointloom::media {

namespace {

constexpr std::int32_t one = 1 << 16;              // 1.0 in 16.16
constexpr std::int32_t oneInThirdColumn = 1 << 30; // 1.0 in 2.30

// Nine numbers as FFmpeg keeps them: row by row, 16.16 fixed point, the third column 2.30.
using DisplayMatrix = std::array<std::int32_t, 9>;

// With y downwards, mirroring and then turning clockwise by t maps (x, y) to
// (+-x cos t - y sin t, +-x sin t + y cos t); x takes the minus when mirrored.
// The matrix holds the factors of x in its first row and those of y in its second.

Orientation orientationOf(const DisplayMatrix& matrix) {
    const double a = matrix[0];
    const double b = matrix[1];
    const double c = matrix[3];
    const double d = matrix[4];
    const double determinant = a * d - b * c;
    if (determinant == 0)
        return {};
    const double quarters = std::atan2(-c, d) / (std::numbers::pi / 2);
    return {determinant < 0, (static_cast<int>(std::lround(quarters)) + 4) % 4};
}

DisplayMatrix matrixFor(Orientation orientation, QSize size) {
    constexpr std::array<int, 4> cosines = {1, 0, -1, 0};
    constexpr std::array<int, 4> sines = {0, 1, 0, -1};
    const auto turn = static_cast<std::size_t>(orientation.quarterTurns & 3);
    const int signX = orientation.mirrored ? -1 : 1;
    const int a = signX * cosines[turn];
    const int b = signX * sines[turn];
    const int c = -sines[turn];
    const int d = cosines[turn];
    // Move what the turn brought to the negative side back to the origin.
    const int x = (a < 0 || c < 0) ? (a != 0 ? size.width() : size.height()) : 0;
    const int y = (b < 0 || d < 0) ? (b != 0 ? size.width() : size.height()) : 0;
    return {a * one, b * one, 0, c * one, d * one, 0, x * one, y * one, oneInThirdColumn};
}

}

Orientation readOrientation(const AVStream& stream) {
    const std::uint8_t* data = findSideData(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof(DisplayMatrix));
    if (data == nullptr)
        return {};
    DisplayMatrix matrix{};
    std::memcpy(matrix.data(), data, sizeof(matrix));
    return orientationOf(matrix);
}

void writeOrientation(AVStream& stream, Orientation orientation, QSize size) {
    if (orientation.isIdentity())
        return;
    std::uint8_t* data = addSideData(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof(DisplayMatrix));
    const DisplayMatrix matrix = matrixFor(orientation, size);
    std::memcpy(data, matrix.data(), sizeof(matrix));
}

}
