#include "support/EnumTable.h"
#include "support/EnumValue.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

enum class FruitValue { apple, pear, plum };

class Fruit : public EnumValue<Fruit, FruitValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum FruitValue;
};

struct FruitRow {
    Fruit::Value value;
    const char* rawValue;
    const char* displayName;
};

constexpr EnumTable<FruitRow, Fruit::count> fruits{{{
    {Fruit::apple, "APPLE", "Apple"},
    {Fruit::pear, "PEAR", "Pear \xc3\xa0 la carte"},
    {Fruit::plum, "PLUM", "Plum"},
}}};
static_assert(fruits.isInDeclarationOrder());

constexpr EnumTable<FruitRow, Fruit::count> swapped{{{
    {Fruit::apple, "APPLE", "Apple"},
    {Fruit::plum, "PLUM", "Plum"},
    {Fruit::pear, "PEAR", "Pear"},
}}};
static_assert(!swapped.isInDeclarationOrder());
// A table given too few rows fills the rest with zeros, which the order check also catches.
constexpr EnumTable<FruitRow, Fruit::count> tooShort{{{{Fruit::apple, "APPLE", "Apple"}}}};
static_assert(!tooShort.isInDeclarationOrder());

static_assert(Fruit::Value(Fruit::allCases()[2]) == Fruit::plum);

} // namespace

TEST(EnumTable, EveryCaseRoundTripsThroughItsRawValueExactly)
{
    for (const Fruit fruit : Fruit::allCases())
        EXPECT_EQ(fruits.fromRawValue(fruits.rawValue(fruit)), Fruit::Value(fruit));
    EXPECT_EQ(fruits.rawValue(Fruit::pear), QStringLiteral("PEAR"));
    EXPECT_EQ(fruits.text(Fruit::pear, &FruitRow::displayName), QStringLiteral("Pear \u00e0 la carte"));
    EXPECT_FALSE(fruits.fromRawValue(QStringLiteral("pear")));
    EXPECT_FALSE(fruits.fromRawValue(QStringLiteral("PEAR ")));
    EXPECT_FALSE(fruits.fromRawValue(QString()));
}

TEST(EnumTable, DecodeNamesTheKeyAndTheProblem)
{
    const JsonValue object = JsonDecoder::parse(R"({"known": "PLUM", "unknown": "Plum", "number": 1})");
    const JsonDecoder decoder(object, QStringLiteral("basket"));
    EXPECT_EQ(fruits.decode(decoder, QStringLiteral("known"), "unknown fruit"), Fruit::plum);
    const auto problem = [&](const char* key) {
        try {
            (void)fruits.decode(decoder, QString::fromUtf8(key), "unknown fruit");
        } catch (const JsonDecodingError& error) {
            return error.description();
        }
        return QString();
    };
    EXPECT_EQ(problem("unknown"), QStringLiteral("unknown of basket: unknown fruit."));
    EXPECT_NE(problem("number"), QString());
    EXPECT_NE(problem("number"), QStringLiteral("number of basket: unknown fruit."));
    EXPECT_NE(problem("absent"), QString());
}
