#include "state/AppTab.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct AppTabRow {
    AppTabValue value;
    const char* rawValue;
    const char* iconName;
};

constexpr EnumTable<AppTabRow, AppTab::count> tabs{{{
    {AppTab::pulse, "Pulse", "waveform.path.ecg"},
    {AppTab::sweep, "Sweep", "paintbrush.pointed"},
    {AppTab::atlas, "Atlas", "map"},
    {AppTab::uninstall, "Uninstall", "shippingbox"},
    {AppTab::tuneUp, "Tune-Up", "slider.horizontal.3"},
}}};
static_assert(tabs.isInDeclarationOrder());

} // namespace

QString AppTab::rawValue() const
{
    return tabs.rawValue(m_value);
}

QString AppTab::iconName() const
{
    return tabs.text(m_value, &AppTabRow::iconName);
}

std::optional<AppTab> AppTab::fromRawValue(const QString& raw)
{
    return tabs.fromRawValue(raw);
}

} // namespace kestrow
