#include "support/JsonWriter.h"
#include "support/JsonDecoder.h"

#include <gtest/gtest.h>

using namespace kestrow;

TEST(JsonWriter, WritesCompactSortedAndPrettyForms)
{
    const JsonValue value = JsonValue::object({
        {QStringLiteral("b"), JsonValue::array({1, 2.5, true, nullptr})},
        {QStringLiteral("a"), QStringLiteral("x/y \"q\"\n")},
        {QStringLiteral("c"), JsonValue::object({})},
    });
    EXPECT_EQ(JsonWriter::compact(value), R"({"b":[1,2.5,true,null],"a":"x\/y \"q\"\n","c":{}})");
    EXPECT_EQ(JsonWriter::compactSorted(value), R"({"a":"x\/y \"q\"\n","b":[1,2.5,true,null],"c":{}})");
    EXPECT_EQ(JsonWriter::prettySorted(value),
              "{\n  \"a\" : \"x\\/y \\\"q\\\"\\n\",\n  \"b\" : [\n    1,\n    2.5,\n    true,\n    null\n  ],\n"
              "  \"c\" : {}\n}");
    EXPECT_EQ(JsonWriter::write(QStringLiteral("a/b"), {.escapeSlashes = false}), "\"a/b\"");
}

TEST(JsonWriter, NumbersRoundTripInTheirShortestForm)
{
    EXPECT_EQ(JsonWriter::formatDouble(0.1), "0.1");
    EXPECT_EQ(JsonWriter::formatDouble(3.0), "3");
    EXPECT_EQ(JsonWriter::formatDouble(1e-05), "1e-05");
    EXPECT_EQ(JsonWriter::compact(std::int64_t{9007199254740993}), "9007199254740993");
    const JsonValue read = JsonDecoder::parse("[9007199254740993, 1.5, \"\\u00e9\\u0001\"]");
    EXPECT_EQ(read.toArray()[0].toInteger(), 9007199254740993);
    EXPECT_TRUE(read.toArray()[1].isDouble());
    EXPECT_EQ(JsonWriter::compact(read.toArray()[2]), "\"\xC3\xA9\\u0001\"");
}

TEST(JsonWriter, LineBreaksAndRawNameBytesAreEscapedAndReadBack)
{
    // U+DCE9 stands for the byte 0xE9 of a name that is not UTF-8.
    const QString text = QStringLiteral("a\u2028b\u2029c\u0085d") + QChar(char16_t(0xDCE9)) + QStringLiteral("\u00e9/");
    const QByteArray json = kestrow::JsonWriter::write(kestrow::JsonValue(text), {.escapeSlashes = true});
    EXPECT_EQ(json, QByteArray("\"a\\u2028b\\u2029c\\u0085d\\udce9\xc3\xa9\\/\""));
    EXPECT_EQ(kestrow::JsonDecoder::parse("[" + json + "]").toArray().at(0).toString(), text);
}
