#include "city/DioramaStyle.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct StyleRow {
    DioramaStyle::Value value;
    const char* rawValue;
    const char* displayName;
    const char* shortDescription;
    const char* iconName;
};

constexpr EnumTable<StyleRow, DioramaStyle::count> styles{{{
    {DioramaStyle::classicCity, "classicCity", "Neo-Tokyo Cyber-Port",
     "Classic diorama city with voxel bots, avenues, and corporate towers (Default)", "building.2.crop.circle"},
    {DioramaStyle::freightTerminal, "freightTerminal", "Modular Freight Terminal",
     "Maritime container port with water cutaway, high-bay racks, crane, and AMRs", "ferry"},
}}};
static_assert(styles.isInDeclarationOrder());

} // namespace

QString DioramaStyle::rawValue() const
{
    return styles.rawValue(m_value);
}

QString DioramaStyle::displayName() const
{
    return styles.text(m_value, &StyleRow::displayName);
}

QString DioramaStyle::shortDescription() const
{
    return styles.text(m_value, &StyleRow::shortDescription);
}

QString DioramaStyle::iconName() const
{
    return styles.text(m_value, &StyleRow::iconName);
}

DioramaStyle DioramaStyle::fromStored(const QString& raw)
{
    return styles.fromRawValue(raw).value_or(classicCity);
}

} // namespace kestrow
