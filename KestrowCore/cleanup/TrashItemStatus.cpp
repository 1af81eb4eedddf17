#include "cleanup/TrashItemStatus.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<TrashItemStatus> statuses{{{
    {TrashItemStatus::success, "SUCCESS"},
    {TrashItemStatus::simulated, "SIMULATED"},
    {TrashItemStatus::failed, "FAILED"},
    {TrashItemStatus::skipped, "SKIPPED"},
}}};
static_assert(statuses.isInDeclarationOrder());

} // namespace

QString TrashItemStatus::rawValue() const
{
    return statuses.rawValue(m_value);
}

} // namespace kestrow
