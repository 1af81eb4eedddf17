#include "rules/BuiltInRuleRow.h"

namespace kestrow {

namespace {

QStringList strings(const std::vector<const char*>& texts)
{
    QStringList list;
    for (const char* text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

} // namespace

std::vector<RuleDefinition> BuiltInRuleRow::definitions(std::span<const BuiltInRuleRow> rows, const QDateTime& builtAt)
{
    std::vector<RuleDefinition> rules;
    rules.reserve(rows.size());
    for (const BuiltInRuleRow& row : rows)
        rules.push_back(RuleDefinition{
            .id = QString::fromUtf8(row.id),
            .name = QString::fromUtf8(row.name),
            .description = QString::fromUtf8(row.description),
            .category = row.category,
            .riskTier = row.riskTier,
            .patterns = strings(row.patterns),
            .excludedPatterns = strings(row.excludedPatterns),
            // What is safe to delete is exactly what comes back by itself.
            .isRegenerable = row.riskTier == RiskTier::safeToDelete,
            .isBuiltIn = true,
            .enabled = true,
            .minAgeDays = std::nullopt,
            .synthesizedBy = std::nullopt,
            .createdAt = builtAt,
            .updatedAt = builtAt,
        });
    return rules;
}

} // namespace kestrow
