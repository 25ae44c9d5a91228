// How people and files name the quality of an export and its encoder.
#pragma once

#include "media/EncodingChoices.h"
#include "json/RawValues.h"

namespace pointloom {

template <>
struct RawValues<media::EncodingQuality> {
    using Quality = media::EncodingQuality;
    static constexpr auto table = std::to_array<std::pair<Quality, std::string_view>>({
        {Quality::standard, "default"},
        {Quality::smaller, "smaller"},
        {Quality::better, "better"},
    });
};

template <>
struct RawValues<media::EncoderKind> {
    using Kind = media::EncoderKind;
    static constexpr auto table = std::to_array<std::pair<Kind, std::string_view>>({
        {Kind::software, "software"},
        {Kind::vaapi, "vaapi"},
        {Kind::nvenc, "nvenc"},
        {Kind::qsv, "qsv"},
        {Kind::videotoolbox, "videotoolbox"},
    });
};

}
