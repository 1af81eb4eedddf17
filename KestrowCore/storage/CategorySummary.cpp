#include "storage/CategorySummary.h"

#include "support/ByteCountFormatter.h"
#include "support/JsonDecoder.h"

namespace kestrow {

QString CategorySummary::formattedAllocatedBytes() const
{
    return ByteCountFormatter::format(totalAllocatedBytes);
}

JsonValue CategorySummary::toJson() const
{
    return JsonValue::object({
        {QStringLiteral("category"), category.rawValue()},
        {QStringLiteral("riskTier"), riskTier.rawValue()},
        {QStringLiteral("itemCount"), itemCount},
        {QStringLiteral("totalLogicalBytes"), totalLogicalBytes},
        {QStringLiteral("totalAllocatedBytes"), totalAllocatedBytes},
        {QStringLiteral("safeToDeleteBytes"), safeToDeleteBytes},
        {QStringLiteral("reviewRequiredBytes"), reviewRequiredBytes},
        {QStringLiteral("requiresFullDiskAccess"), requiresFullDiskAccess},
    });
}

CategorySummary CategorySummary::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("CategorySummary"));
    return CategorySummary{
        .category = StorageCategory::decode(in, QStringLiteral("category")),
        .riskTier = RiskTier::decode(in, QStringLiteral("riskTier")),
        .itemCount = in.integer(QStringLiteral("itemCount")),
        .totalLogicalBytes = in.integer(QStringLiteral("totalLogicalBytes")),
        .totalAllocatedBytes = in.integer(QStringLiteral("totalAllocatedBytes")),
        .safeToDeleteBytes = in.integer(QStringLiteral("safeToDeleteBytes")),
        .reviewRequiredBytes = in.integer(QStringLiteral("reviewRequiredBytes")),
        .requiresFullDiskAccess = in.boolean(QStringLiteral("requiresFullDiskAccess")),
    };
}

} // namespace kestrow
