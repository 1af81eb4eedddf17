#include "presentation/SettingsTab.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct SettingsTabRow {
    SettingsTabValue value;
    const char* rawValue;
    const char* title;
    const char* subtitle;
};

constexpr EnumTable<SettingsTabRow, SettingsTab::count> tabs{{{
    {SettingsTab::general, "General", "General Preferences", "Startup behaviors, thermal safety, and live telemetry"},
    {SettingsTab::developer, "Dev Targets", "Developer & AI Engine Targets",
     "Configure deep scanning for developer toolchains and AI models"},
    {SettingsTab::safety, "Safety & Audit", "Safety & Deletion Pipeline",
     "Defensive guarantees, Trash staging, and tamper-evident audit log"},
    {SettingsTab::mcp, "Agents & MCP", "Model Context Protocol & Agents",
     "Autonomous agent access, stdio JSON-RPC 2.0, and security token"},
    {SettingsTab::exclusions, "Exclusions", "Custom Excluded Folders",
     "Directories and patterns Kestrow will strictly ignore and never touch"},
}}};
static_assert(tabs.isInDeclarationOrder());

} // namespace

QString SettingsTab::rawValue() const
{
    return tabs.rawValue(m_value);
}

QString SettingsTab::title() const
{
    return tabs.text(m_value, &SettingsTabRow::title);
}

QString SettingsTab::subtitle() const
{
    return tabs.text(m_value, &SettingsTabRow::subtitle);
}

} // namespace kestrow
