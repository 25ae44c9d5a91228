#include "ui/style/Tokens.h"

namespace pointloom {

const ColorTokens& darkTokens() {
    static const ColorTokens tokens{
        .window = QColor(0x14, 0x16, 0x1A),
        .surface = QColor(0x1C, 0x1F, 0x25),
        .raised = QColor(0x25, 0x29, 0x32),
        .line = QColor(0x32, 0x38, 0x44),
        .text = QColor(0xE9, 0xEC, 0xF1),
        .quietText = QColor(0xA3, 0xAB, 0xBA),
        .accent = QColor(0xC8, 0xF0, 0x31),
        .onAccent = QColor(0x14, 0x16, 0x1A),
        .danger = QColor(0xFF, 0x6B, 0x6B),
        .warning = QColor(0xF2, 0xB2, 0x3E),
        .success = QColor(0x4C, 0xC3, 0x8A),
    };
    return tokens;
}

const ColorTokens& lightTokens() {
    static const ColorTokens tokens{
        .window = QColor(0xF4, 0xF5, 0xF7),
        .surface = QColor(0xFF, 0xFF, 0xFF),
        .raised = QColor(0xEC, 0xEE, 0xF2),
        .line = QColor(0xD5, 0xD9, 0xE0),
        .text = QColor(0x16, 0x18, 0x1D),
        .quietText = QColor(0x5A, 0x62, 0x70),
        .accent = QColor(0x4F, 0x6F, 0x00),
        .onAccent = QColor(0xFF, 0xFF, 0xFF),
        .danger = QColor(0xC6, 0x2F, 0x2F),
        .warning = QColor(0x9A, 0x67, 0x00),
        .success = QColor(0x1F, 0x7A, 0x4D),
    };
    return tokens;
}

namespace Court {

const CourtTokens& clay() {
    static const CourtTokens tokens{.floor = QColor(0xB5, 0x62, 0x3A),
                                    .surround = QColor(0x8F, 0x45, 0x26),
                                    .line = QColor(0xF3, 0xE4, 0xD8)};
    return tokens;
}

const CourtTokens& hard() {
    static const CourtTokens tokens{.floor = QColor(0x2F, 0x6F, 0xB5),
                                    .surround = QColor(0x2B, 0x8A, 0x63),
                                    .line = QColor(0xFF, 0xFF, 0xFF)};
    return tokens;
}

const CourtTokens& green() {
    static const CourtTokens tokens{.floor = QColor(0x1F, 0x94, 0x68),
                                    .surround = QColor(0x14, 0x69, 0x4A),
                                    .line = QColor(0xFF, 0xFF, 0xFF)};
    return tokens;
}

const CourtTokens& table() {
    static const CourtTokens tokens{.floor = QColor(0x2A, 0x62, 0xB0),
                                    .surround = QColor(0x1B, 0x2F, 0x55),
                                    .line = QColor(0xFF, 0xFF, 0xFF)};
    return tokens;
}

const CourtTokens& wood() {
    static const CourtTokens tokens{.floor = QColor(0xD9, 0xA8, 0x66),
                                    .surround = QColor(0xB9, 0x87, 0x47),
                                    .line = QColor(0xC8, 0x38, 0x2F)};
    return tokens;
}

const CourtTokens& parquet() {
    static const CourtTokens tokens{.floor = QColor(0xE0, 0x7B, 0x39),
                                    .surround = QColor(0xB9, 0x5A, 0x22),
                                    .line = QColor(0xFF, 0xFF, 0xFF)};
    return tokens;
}

const CourtTokens& plum() {
    static const CourtTokens tokens{.floor = QColor(0x5A, 0x55, 0xB8),
                                    .surround = QColor(0x3A, 0xA6, 0xA0),
                                    .line = QColor(0xFF, 0xFF, 0xFF)};
    return tokens;
}

}

}
