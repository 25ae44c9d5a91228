#include "JsonSupport.h"
#include "model/Marker.h"

#include <limits>

namespace pointloom {
namespace {

constexpr auto zoneId = "11111111-2222-3333-4444-555555555555";

CutZone zone(double start, double end) {
    return {QUuid::fromString(QString::fromLatin1(zoneId)), start, end};
}

TEST(Json, DoublesAreWrittenAsShortAsReadsBackTheSame) {
    EXPECT_EQ(compactText(zone(0.1, 12.3456789)),
              R"({"id":"11111111-2222-3333-4444-555555555555","start":0.1,"end":12.3456789})");
    for (const double number : {1.0 / 3, 4.9e-324, 1.7976931348623157e308, -0.0, 9007199254740993.0}) {
        const CutZone back = json::decode<CutZone>(json::parse(json::compact(json::encode(zone(number, 0)))));
        EXPECT_EQ(back.start, number);
    }
}

TEST(Json, NumbersThatJsonCannotHoldAreRefused) {
    EXPECT_THROW(json::encode(std::numeric_limits<double>::quiet_NaN()), json::EncodingError);
    EXPECT_THROW(json::encode(std::numeric_limits<double>::infinity()), json::EncodingError);
    EXPECT_EQ(decodingFault<double>("1e999"), "a number is too large: 1e999");
}

TEST(Json, IntegersHave64BitsAndMayBeWrittenAsWholeNumbers) {
    EXPECT_EQ(decodeText<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decodeText<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(compactText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(decodeText<std::int64_t>("3.0"), 3);

    for (const char* text : {"9223372036854775808", "1e300", "3.5", "-1e19"})
        EXPECT_EQ(decodingFault<std::int64_t>(text), "expected an integer of 64 bits") << text;
    EXPECT_EQ(decodingFault<std::int64_t>("\"3\""), "expected an integer");
}

TEST(Json, IdentifiersAreReadOnlyInTheirStandardForm) {
    EXPECT_EQ(decodeText<QUuid>("\"11111111-2222-3333-4444-55555555555A\"").toString(QUuid::WithoutBraces),
              QStringLiteral("11111111-2222-3333-4444-55555555555a"));
    EXPECT_TRUE(decodeText<QUuid>("\"00000000-0000-0000-0000-000000000000\"").isNull());
    EXPECT_EQ(decodingFault<QUuid>("\"{11111111-2222-3333-4444-555555555555}\""),
              "expected a UUID, found \"{11111111-2222-3333-4444-555555555555}\"");
    EXPECT_EQ(decodingFault<QUuid>("\"gggggggg-2222-3333-4444-555555555555\""),
              "expected a UUID, found \"gggggggg-2222-3333-4444-555555555555\"");
}

TEST(Json, DocumentsHaveSortedKeysOnLinesOfTheirOwn) {
    EXPECT_EQ(json::prettySorted(json::encode(zone(1.5, 2))).toStdString(), "{\n"
                                                                            "  \"end\": 2.0,\n"
                                                                            "  \"id\": \"" +
                                                                                std::string(zoneId) +
                                                                                "\",\n"
                                                                                "  \"start\": 1.5\n"
                                                                                "}\n");
}

TEST(Json, FaultsInTheTextNameLineAndColumn) {
    const std::string fault = decodingFault<CutZone>("{\n  \"id\": - x - }");
    EXPECT_TRUE(fault.starts_with("line 2, column 10: not valid JSON: invalid number")) << fault;
    EXPECT_NE(decodingFault<CutZone>("").find("line 1, column 1: not valid JSON"), std::string::npos);
    EXPECT_NE(decodingFault<QString>("\"\xff\"").find("invalid string"), std::string::npos);
}

TEST(Json, TextsAreBoundedInSizeAndDepth) {
    const QByteArray deep = QByteArray(100'000, '[') + QByteArray(100'000, ']');
    EXPECT_EQ(decodingFault<CutZone>(deep.constData()), "nested deeper than 32 levels");
    EXPECT_EQ(decodeText<QString>(R"("[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[\"")").back(), u'"')
        << "brackets in a text";
    EXPECT_EQ(json::parse(R"({"a":[{}],"b\"[":[[]]})", {.depth = 3}).size(), 2U);
    EXPECT_THROW(json::parse(R"({"a":[{}]})", {.depth = 2}), json::DecodingError);
    EXPECT_THROW(json::parse("[1,2,3]", {.bytes = 6}), json::DecodingError);
}

TEST(Json, TextsAreBoundedInTheNumberOfValues) {
    const std::pair<const char*, int> texts[] = {
        {"7", 1}, {" [ ] ", 1}, {"{\"a\" : {\n}}", 2}, {R"([1,"],[,{\"",[[3]],{},{"a":[],"b":null}])", 10}};
    for (const auto& [text, count] : texts) {
        EXPECT_NO_THROW(json::parse(text, {.values = count})) << text;
        EXPECT_THROW(json::parse(text, {.values = count - 1}), json::DecodingError) << text;
    }
    // Twenty million of these took two gigabytes.
    const QByteArray many = "{\"x\":[" + QByteArray("{},").repeated(4'000'000) + "{}]}";
    EXPECT_EQ(decodingFault<CutZone>(many.constData()), "more than 4000000 values");
}

TEST(Json, LongListsAreReadInTimeThatGrowsAsTheirLength) {
    // Quadratic time would take minutes here.
    constexpr int count = 50'000;
    const QByteArray text = '[' + QByteArray("{\"a\":[1]},").repeated(count) + "{}]";
    EXPECT_EQ(json::parse(text).size(), count + 1U);
}

TEST(Json, MessagesStayOnOneLineAndBareOfTerminalCodes) {
    EXPECT_EQ(json::inQuotes("a\nb\x1b[2J\x7f\xc2\x9b"), "\"a?b?[2J??\"");
    const std::string longText(59, 'a');
    EXPECT_EQ(json::printable(longText + "\xc3\xa9tude"), longText + "...") << "never half a character";
}

}
}
