#include "system/StartupImpact.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<StartupImpact> impacts{{{
    {StartupImpact::low, "LOW"},
    {StartupImpact::medium, "MEDIUM"},
    {StartupImpact::high, "HIGH"},
    {StartupImpact::unknown, "UNKNOWN"},
}}};
static_assert(impacts.isInDeclarationOrder());

} // namespace

QString StartupImpact::rawValue() const
{
    return impacts.rawValue(m_value);
}

} // namespace kestrow
