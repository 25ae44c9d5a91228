// Measurements of the matrix, a row for each export, from which the document is made.
#pragma once

#include <optional>
#include <QString>

namespace pointloom::test {

struct Measured {
    int frames = 0;
    int framesExpected = 0;
    double worstTime = 0;            // seconds, of a frame against its time in the source
    std::optional<double> soundLate; // seconds, of the beep against the flash
    double worstColor = 0;           // levels of 255, outside of the overlay
    double worstOverlay = 0;         // levels of 255
    bool isToneMapped = false;       // colours are not those of the source on purpose
};

/// Appends a row to the file that POINTLOOM_COMPATIBILITY_ROWS names; does nothing when it names none.
void report(const QString& source, const QString& preset, const QString& format, const Measured& measured,
            bool passed);

}
