#include "presentation/SettingsScreen.h"

#include "presentation/PlatformWords.h"

#include <QDateTime>

#include <algorithm>

namespace kestrow {

namespace {

using Flag = AppSettings::Flag;

struct TargetText {
    Flag flag;
    const char* label;
    const char* detail;
    const char* tag;
};

// In the order of ScanTarget, which the settings' flags follow.
constexpr TargetText targetTexts[] = {
    {Flag::targetUvPython, "uv & Python Wheels", "uv's cache and pip's wheels and downloads", "AI/DEV"},
    {Flag::targetDockerVM, "Docker Disk Image", "The virtual disk that holds Docker's images and containers",
     "CONTAINERS"},
    {Flag::targetXcode, "Xcode DerivedData", "Build products, archives and simulator caches", "MACOS/IOS"},
    {Flag::targetAIModels, "AI Model Stores", "Hugging Face, Ollama and other local model caches", "LLM/MODELS"},
    {Flag::targetNpmBun, "npm & bun Stores", "The package caches of npm, bun, pnpm and yarn", "JAVASCRIPT"},
    {Flag::targetCargo, "Cargo Registry", "Rust's downloaded crates and their unpacked sources", "RUST"},
    {Flag::targetHomebrew, "Homebrew Downloads", "The bottles and source archives Homebrew keeps", "SYSTEM/CLI"},
    {Flag::targetSystemCaches, "System & App Caches", "Caches, logs and crash reports of your applications", "SYSTEM"},
    {Flag::targetBrowserCaches, "Browser Caches", "The caches of your web browsers", "BROWSERS"},
};

constexpr std::pair<const char*, const char*> tools[] = {
    {"scan_storage", "Read-only survey of caches, models and junk"},
    {"clean_storage", "Trash-first cleanup with a dry run and the audit log"},
    {"inspect_directory", "A folder's breakdown by allocated and logical size"},
    {"list_apps", "Installed applications and the leftovers of removed ones"},
    {"uninstall_app", "Moves an application and its data to the Trash"},
    {"get_system_vitals", "Processor, memory, disk, battery and thermal state"},
    {"list_rules", "The built-in and registered cleanup rules"},
    {"register_rule", "Adds a cleanup rule after the sandbox validates it"},
    {"inspect_anomalies", "Heavy folders that no cleanup rule knows"},
};

QString entryTime(const QString& timestamp)
{
    const QDateTime time = QDateTime::fromString(timestamp, Qt::ISODateWithMs);
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")) : timestamp;
}

} // namespace

SettingsScreen::SettingsScreen(AppState& state, Clipboard clipboard, std::chrono::milliseconds copiedFor,
                               QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_clipboard(std::move(clipboard))
    , m_auditCheck(state.homeURL())
{
    m_copiedMark.setSingleShot(true);
    m_copiedMark.setInterval(copiedFor);
    connect(&m_copiedMark, &QTimer::timeout, this, [this] {
        m_isCopiedMCP = false;
        Q_EMIT changed();
    });
    connect(&m_auditCheck, &AuditCheck::changed, this, &SettingsScreen::changed);
    connect(&m_state.settings(), &AppSettings::changed, this, &SettingsScreen::changed);
    connect(&m_state, &AppState::hasFullDiskAccessChanged, this, &SettingsScreen::changed);
}

void SettingsScreen::setSelectedTab(SettingsTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    Q_EMIT changed();
}

void SettingsScreen::done()
{
    m_state.setShowingSettingsSheet(false);
}

void SettingsScreen::copyMCPConfiguration()
{
    m_clipboard(AppSettings::mcpConfigurationJSON());
    m_isCopiedMCP = true;
    m_copiedMark.start();
    Q_EMIT changed();
}

SettingsScreen::Heading SettingsScreen::frame()
{
    return {QStringLiteral("KESTROW ENGINE"), QStringLiteral("Daemon-Free")};
}

QString SettingsScreen::doneTitle()
{
    return QStringLiteral("Done");
}

SettingsScreen::Heading SettingsScreen::themeSection()
{
    return {QStringLiteral("Interface Theme"), PlatformWords::current().themeDetail};
}

std::vector<SettingsScreen::ThemeButton> SettingsScreen::themeButtons() const
{
    std::vector<ThemeButton> buttons;
    for (const AppTheme theme : AppTheme::allCases())
        buttons.push_back({.theme = theme,
                           .title = theme.displayName(),
                           .symbol = theme == AppTheme::system ? QStringLiteral("laptopcomputer") : theme.iconName(),
                           .isSelected = m_state.settings().appTheme() == theme});
    return buttons;
}

SettingsScreen::Heading SettingsScreen::dioramaSection()
{
    return {QStringLiteral("3D Diorama Architecture"),
            QStringLiteral("Select the architectural diorama style for the real-time storage console")};
}

std::vector<SettingsScreen::StyleCard> SettingsScreen::styleCards() const
{
    std::vector<StyleCard> cards;
    for (const DioramaStyle style : DioramaStyle::allCases())
        cards.push_back({.style = style,
                         .title = style.displayName(),
                         .description = style.shortDescription(),
                         .symbol = style.iconName(),
                         .isDefault = style == DioramaStyle::classicCity,
                         .isSelected = m_state.settings().dioramaStyle() == style,
                         .previewAccessibilityText = QStringLiteral("Preview of ") + style.displayName()});
    return cards;
}

QString SettingsScreen::behaviourTitle()
{
    return QStringLiteral("System & Background Behavior");
}

std::vector<SettingsScreen::Switch> SettingsScreen::behaviourSwitches() const
{
    const PlatformWords& words = PlatformWords::current();
    return {
        flagSwitch(Flag::autoScanOnLaunch, QStringLiteral("Automatic Scan on Launch"),
                   QStringLiteral("Survey disk capacity and cache sizes when Kestrow starts up")),
        flagSwitch(Flag::thermalGovernorEnabled, QStringLiteral("Thermal Governor Protection"),
                   words.thermalGovernorDetail),
        flagSwitch(Flag::reduceDioramaMotion, QStringLiteral("Reduced Motion for 3D Diorama"),
                   words.reducedMotionDetail),
        flagSwitch(Flag::showMenuBarExtra, words.menuBarLabel, words.menuBarDetail),
    };
}

SettingsScreen::Heading SettingsScreen::alertsSection()
{
    return {QStringLiteral("Alert Thresholds"),
            QStringLiteral("Notify when disk storage or sweepable bloat reaches limits")};
}

QString SettingsScreen::alertsNote()
{
    return QStringLiteral("Alerts aren't sent yet. These choices are saved and will apply once notifications ship.");
}

SettingsScreen::Switch SettingsScreen::junkAlertSwitch() const
{
    return flagSwitch(Flag::notifyOnThreshold, QStringLiteral("Developer Junk Threshold Alert"),
                      QStringLiteral("Notify when safe sweepable cache bloat exceeds configured size"));
}

QString SettingsScreen::thresholdLabel()
{
    return QStringLiteral("Trigger Threshold:");
}

std::vector<SettingsScreen::Choice> SettingsScreen::junkThresholdChoices() const
{
    return choices({{10, "10 GB"}, {25, "25 GB (Recommended)"}, {50, "50 GB"}, {100, "100 GB"}},
                   m_state.settings().junkThresholdGB());
}

SettingsScreen::Heading SettingsScreen::lowDiskSection()
{
    return {QStringLiteral("Low Disk Space Alert"),
            QStringLiteral("Warn when free storage falls below safe working room")};
}

std::vector<SettingsScreen::Choice> SettingsScreen::lowDiskChoices() const
{
    return choices({{15, "15 GB"}, {20, "20 GB"}, {30, "30 GB (Recommended)"}, {50, "50 GB"}},
                   m_state.settings().lowDiskAlertGB());
}

QString SettingsScreen::targetsNote()
{
    return QStringLiteral("Targets you switch off are skipped by the app's scans and sweeps, from the next scan on. "
                          "The kestrow CLI and MCP server don't read these settings.");
}

std::vector<SettingsScreen::Switch> SettingsScreen::targetSwitches() const
{
    std::vector<Switch> switches;
    for (const TargetText& target : targetTexts)
        switches.push_back(flagSwitch(target.flag, QString::fromUtf8(target.label), QString::fromUtf8(target.detail),
                                      QLatin1String(target.tag)));
    return switches;
}

SettingsScreen::Heading SettingsScreen::deletionModeSection()
{
    return {QStringLiteral("Primary Deletion Mode"), PlatformWords::current().permanentPurgeNote};
}

std::vector<SettingsScreen::DeletionMode> SettingsScreen::deletionModes()
{
    return {
        {.title = QStringLiteral("Trash-First Pipeline"),
         .mark = QStringLiteral("RECOMMENDED"),
         .detail = PlatformWords::current().trashFirstDetail},
        {.title = QStringLiteral("Permanent Purge"),
         .mark = QStringLiteral("COMING SOON"),
         .detail = QStringLiteral("Unlinks files immediately without Trash staging. Cannot be undone."),
         .note = QStringLiteral("Not available yet. Sweeps from the app always go to the Trash.")},
    };
}

SettingsScreen::Switch SettingsScreen::confirmationSwitch() const
{
    return flagSwitch(Flag::confirmBeforeClean, QStringLiteral("Require Confirmation Before Sweep"),
                      QStringLiteral("Show what Run sweep will move, by category, and ask before anything goes to "
                                     "the Trash"));
}

QString SettingsScreen::accessSectionTitle()
{
    return PlatformWords::current().fullDiskAccessTitle;
}

SettingsScreen::AccessRow SettingsScreen::accessRow() const
{
    const PlatformWords& words = PlatformWords::current();
    if (m_state.hasFullDiskAccess())
        return {.title = QStringLiteral("Full Disk Access Granted"),
                .detail = words.fullDiskAccessGrantedDetail,
                .symbol = QStringLiteral("checkmark.shield.fill")};
    return {.title = QStringLiteral("Full Disk Access Optional"),
            .detail = words.fullDiskAccessOptionalDetail,
            .symbol = QStringLiteral("lock.shield"),
            .offersSettings = true};
}

SettingsScreen::Button SettingsScreen::accessButton()
{
    return {.title = QStringLiteral("System Settings…")};
}

QString SettingsScreen::accessButtonHelp()
{
    return PlatformWords::current().grantAccessHelp;
}

SettingsScreen::Heading SettingsScreen::auditSection()
{
    return {QStringLiteral("Cryptographic Audit Chain (SHA-256)"),
            QStringLiteral("Every sweep operation is cryptographically hashed in an append-only JSONL ledger. Any "
                           "tampering or deletion breaks the hash chain.")};
}

QString SettingsScreen::auditLogPath()
{
    return QStringLiteral("~/.kestrow/audit.jsonl");
}

SettingsScreen::Button SettingsScreen::verifyButton() const
{
    return {.title = QStringLiteral("Verify Audit Integrity"),
            .symbol = QStringLiteral("checkmark.seal"),
            .isEnabled = !m_auditCheck.isVerifyingAudit()};
}

SettingsScreen::Button SettingsScreen::revealButton()
{
    return {.title = PlatformWords::current().revealInFileManager, .symbol = QStringLiteral("folder")};
}

std::optional<SettingsScreen::Verdict> SettingsScreen::verdict() const
{
    const std::optional<QString>& message = m_auditCheck.auditVerificationMessage();
    if (!message)
        return std::nullopt;
    const bool passed = message->contains(QLatin1String("Verified")) || message->contains(QLatin1String("Valid"));
    return Verdict{.message = *message,
                   .passed = passed,
                   .symbol = passed ? QStringLiteral("checkmark.seal.fill")
                                    : QStringLiteral("exclamationmark.triangle.fill")};
}

QString SettingsScreen::recentEntriesTitle()
{
    return QStringLiteral("Recent Logged Operations:");
}

std::vector<SettingsScreen::EntryRow> SettingsScreen::recentEntryRows() const
{
    const std::vector<AuditLogEntry>& entries = m_auditCheck.recentAuditEntries();
    const auto shown = std::min<std::ptrdiff_t>(recentEntryCount, std::ssize(entries));
    std::vector<EntryRow> rows;
    for (auto entry = entries.rbegin(); entry != entries.rbegin() + shown; ++entry)
        rows.push_back({.kind = entry->operationType.text(),
                        .time = entryTime(entry->timestamp),
                        .items = QString::number(entry->itemsCount) +
                                 (entry->itemsCount == 1 ? QStringLiteral(" item") : QStringLiteral(" items"))});
    return rows;
}

SettingsScreen::Heading SettingsScreen::serverSection()
{
    return {QStringLiteral("Built-in Stdio MCP Server"), QStringLiteral("JSON-RPC 2.0")};
}

QString SettingsScreen::serverText()
{
    return QStringLiteral("Kestrow embeds a full Model Context Protocol server. AI agents (Claude Desktop, Cursor, "
                          "Antigravity, VS Code Cline) connect via standard I/O to perform automated system "
                          "analysis.");
}

QString SettingsScreen::commandLabel()
{
    return QStringLiteral("Command:");
}

QString SettingsScreen::command()
{
    return QStringLiteral("kestrow mcp");
}

SettingsScreen::Button SettingsScreen::copyButton() const
{
    if (m_isCopiedMCP)
        return {.title = QStringLiteral("Copied JSON!"), .symbol = QStringLiteral("checkmark")};
    return {.title = QStringLiteral("Copy MCP Config"), .symbol = QStringLiteral("doc.on.doc")};
}

QString SettingsScreen::toolsTitle()
{
    return QStringLiteral("Connected MCP Tools (9 Standardized Interfaces):");
}

std::vector<SettingsScreen::ToolLine> SettingsScreen::toolLines()
{
    std::vector<ToolLine> lines;
    for (const auto& [name, line] : tools)
        lines.push_back({QLatin1String(name), QLatin1String(line)});
    return lines;
}

QString SettingsScreen::selfImprovementTitle()
{
    return QStringLiteral("Recursive Self-Improvement Engine");
}

QString SettingsScreen::selfImprovementNote()
{
    return QStringLiteral("Not connected yet: the kestrow MCP server doesn't read these app settings. Agents can "
                          "still use register_rule and inspect_anomalies with their own parameters.");
}

SettingsScreen::Switch SettingsScreen::ruleSynthesisSwitch() const
{
    return flagSwitch(Flag::autonomousRuleSynthesis, QStringLiteral("Autonomous Rule Synthesis"),
                      QStringLiteral("Allow AI agents to propose new cleanup rules into the sandboxed registry"));
}

SettingsScreen::Heading SettingsScreen::sensitivitySection()
{
    return {QStringLiteral("Anomaly Discovery Sensitivity"), PlatformWords::current().anomalySensitivityDetail};
}

std::vector<SettingsScreen::Choice> SettingsScreen::sensitivityChoices() const
{
    return choices({{100, "100 MB"}, {500, "500 MB (Default)"}, {1000, "1 GB"}, {2000, "2 GB"}, {5000, "5 GB"}},
                   m_state.settings().anomalyThresholdMB());
}

QString SettingsScreen::exclusionsTitle()
{
    return QStringLiteral("User Excluded Paths");
}

SettingsScreen::Button SettingsScreen::addFolderButton()
{
    return {.title = QStringLiteral("Add Folder"), .symbol = QStringLiteral("plus")};
}

SettingsScreen::Heading SettingsScreen::folderChooser()
{
    return {QStringLiteral("Exclude Folder"), QStringLiteral("Choose a folder for Kestrow's scans and sweeps to skip")};
}

SettingsScreen::Heading SettingsScreen::noExclusions()
{
    return {QStringLiteral("No custom exclusions added"),
            QStringLiteral("Add project or dataset folders here: the app's scans and sweeps skip anything inside "
                           "them, and anything that contains them.")};
}

QString SettingsScreen::noExclusionsSymbol()
{
    return QStringLiteral("folder.badge.minus");
}

std::vector<SettingsScreen::ExclusionRow> SettingsScreen::exclusionRows() const
{
    std::vector<ExclusionRow> rows;
    const QStringList& paths = m_state.settings().excludedPaths();
    for (int index = 0; index < paths.size(); ++index)
        rows.push_back({.index = index,
                        .path = paths[index],
                        .symbol = QStringLiteral("folder.fill"),
                        .removeSymbol = QStringLiteral("xmark.circle.fill")});
    return rows;
}

QString SettingsScreen::exclusionsNote()
{
    return QStringLiteral("Exclusions apply to the Kestrow app's scans, Run sweep, and orphan sweeps. The kestrow "
                          "CLI and MCP server don't read them.");
}

SettingsScreen::Heading SettingsScreen::inherentProtections()
{
    return {QStringLiteral("Guaranteed Inherent Protections"), PlatformWords::current().inherentProtections};
}

SettingsScreen::Switch SettingsScreen::flagSwitch(Flag flag, QString label, QString detail, QString tag) const
{
    return {.flag = flag,
            .label = std::move(label),
            .detail = std::move(detail),
            .tag = std::move(tag),
            .isOn = m_state.settings().flag(flag)};
}

std::vector<SettingsScreen::Choice> SettingsScreen::choices(const std::vector<std::pair<int, const char*>>& offered,
                                                            int stored)
{
    std::vector<Choice> result;
    for (const auto& [value, text] : offered)
        result.push_back({.value = value, .text = QLatin1String(text), .isSelected = value == stored});
    return result;
}

} // namespace kestrow
