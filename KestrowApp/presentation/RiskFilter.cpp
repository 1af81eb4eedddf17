#include "presentation/RiskFilter.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<RiskFilter> filters{{{
    {RiskFilter::all, "All"},
    {RiskFilter::safe, "Safe to sweep"},
    {RiskFilter::review, "Ask me first"},
}}};
static_assert(filters.isInDeclarationOrder());

} // namespace

QString RiskFilter::rawValue() const
{
    return filters.rawValue(m_value);
}

bool RiskFilter::passes(RiskTier tier) const
{
    switch (m_value) {
    case safe:
        return tier == RiskTier::safeToDelete;
    case review:
        return tier == RiskTier::reviewRequired;
    case all:
        break;
    }
    return true;
}

} // namespace kestrow
