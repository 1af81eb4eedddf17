#include "cleanup/TrashItemStatus.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct StatusRow {
    TrashItemStatus::Value value;
    const char* rawValue;
};

constexpr EnumTable<StatusRow, TrashItemStatus::count> statuses{{{
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
