#include "agent/MCPTools.h"

#include "analysis/AnomalyDetector.h"
#include "analysis/SpaceLensEngine.h"
#include "apps/AppScanner.h"
#include "apps/AppUninstaller.h"
#include "apps/LeftoversHunter.h"
#include "cleanup/AuditLogger.h"
#include "cleanup/TrashPipeline.h"
#include "rules/RuleRegistry.h"
#include "scan/DeepScanEngine.h"
#include "support/JsonWriter.h"
#include "system/VitalsMonitor.h"

#include <QUuid>

#include <algorithm>
#include <climits>
#include <functional>
#include <map>

namespace kestrow {

namespace {

struct Property {
    const char* name;
    const char* type;
    const char* description;
    bool required = false;
    bool arrayOfStrings = false;
};

JSONValue schema(std::initializer_list<Property> properties)
{
    JSONValue::Object described;
    JSONValue::Array required;
    for (const Property& property : properties) {
        const QString name = QString::fromLatin1(property.name);
        JSONValue entry = JSONValue::object({{QStringLiteral("type"), QString::fromLatin1(property.type)}});
        if (property.arrayOfStrings)
            entry.insert(QStringLiteral("items"), JSONValue::object({{QStringLiteral("type"), "string"}}));
        entry.insert(QStringLiteral("description"), QString::fromLatin1(property.description));
        described.emplace_back(name, std::move(entry));
        if (property.required)
            required.push_back(name);
    }
    JSONValue json =
        JSONValue::object({{QStringLiteral("type"), "object"}, {QStringLiteral("properties"), std::move(described)}});
    if (!required.empty())
        json.insert(QStringLiteral("required"), std::move(required));
    return json;
}

MCPTool tool(const char* name, const char* description, JSONValue inputSchema)
{
    return {QString::fromLatin1(name), QString::fromLatin1(description), std::move(inputSchema)};
}

MCPCallToolResult document(const JSONValue& json)
{
    return MCPCallToolResult::text(QString::fromUtf8(JsonWriter::prettySorted(json)), false);
}

template <typename Record, typename Encode> JSONValue array(const std::vector<Record>& records, Encode encode)
{
    JSONValue::Array array;
    array.reserve(records.size());
    for (const Record& record : records)
        array.push_back(encode(record));
    return array;
}

std::optional<CategorySet> restriction(const CategorySet& categories)
{
    return categories.empty() ? std::nullopt : std::optional(categories);
}

std::vector<InstalledApp> installedApps(const QString& home)
{
    return AppScanner({.homeURL = home}).scanInstalledApps(false);
}

} // namespace

MCPTools::MCPTools(QString homeURL)
    : m_homeURL(std::move(homeURL))
{
}

std::vector<MCPTool> MCPTools::listTools()
{
    return {
        tool("scan_storage",
             "Scans disk storage across developer bloat, AI model caches, system junk, and orphaned VM disks. "
             "Strictly read-only.",
             schema({{"categories", "array",
                      "Optional list of categories to scan: uvCache, npmBunCache, pipCondaCache, "
                      "huggingFaceWhisperModels, orphanedDockerVM, xcodeDerivedData, xcodeSimulators, "
                      "strayNodeModules, systemCaches, systemLogs, crashReports, mailDownloads",
                      false, true},
                     {"min_size_mb", "number", "Minimum item size in megabytes to include in results (default: 0)"}})),
        tool("clean_storage",
             "Safely cleans scanned storage items or specified paths using Trash-first safety and audit logging. In "
             "dry-run mode, computes freed bytes without touching files.",
             schema({{"categories", "array", "Categories to clean (e.g. uvCache, orphanedDockerVM)", false, true},
                     {"paths", "array", "Specific file or directory paths to clean", false, true},
                     {"dry_run", "boolean", "If true, simulates cleanup without modifying disk (default: true)"},
                     {"permanent", "boolean",
                      "If true and confirmed, purges permanently bypassing Trash (default: false)"}})),
        tool("inspect_directory",
             "Performs high-speed hierarchical directory breakdown by physical and logical storage size.",
             schema({{"path", "string", "Absolute path of the directory to inspect", true},
                     {"depth", "integer", "Maximum search depth (default: 3)"}})),
        tool("list_apps",
             "Lists installed applications in /Applications and ~/Applications along with orphaned leftovers from "
             "previously deleted apps.",
             schema({{"include_leftovers", "boolean",
                      "Include orphaned leftover files from deleted apps (default: true)"}})),
        tool("uninstall_app",
             "Completely uninstalls an application by moving its bundle, preferences, Application Support, caches, "
             "and LaunchAgents to macOS Trash.",
             schema({{"bundle_id_or_name", "string",
                      "Bundle identifier (e.g. com.docker.docker) or display name (e.g. Docker)", true},
                     {"dry_run", "boolean", "Simulate uninstallation without trashing files (default: true)"},
                     {"force", "boolean", "Force uninstall even if application is running (default: false)"}})),
        tool("get_system_vitals",
             "Returns real-time Mach kernel CPU percentage, memory pressure status, free disk capacity, battery "
             "health, and thermal state.",
             schema({})),
        tool("list_rules", "Returns all active built-in and dynamic cleanup rules from the rule registry.", schema({})),
        tool("register_rule",
             "Dynamically registers a newly synthesized cleanup rule after validating with SandboxValidator.",
             schema(
                 {{"id", "string", "Unique alphanumeric rule ID (e.g. custom_mlx_models)", true},
                  {"name", "string", "Human-readable rule name", true},
                  {"pattern", "string", "Path pattern relative to home (e.g. ~/.cache/mlx/*)", true},
                  {"category", "string", "Storage category: huggingFaceWhisperModels, developerArtifacts, etc.", true},
                  {"risk_tier", "string", "Risk tier: SAFE_TO_DELETE, REVIEW_REQUIRED, KEEP", true},
                  {"description", "string", "Optional description"}})),
        tool("inspect_anomalies",
             "Detects uncataloged heavy directories in ~/.cache and ~/Library that don't match existing cleanup "
             "rules.",
             schema(
                 {{"min_size_mb", "number", "Minimum directory size in megabytes to trigger anomaly (default: 100)"}})),
    };
}

MCPCallToolResult MCPTools::execute(const QString& name, const std::optional<JSONValue::Object>& arguments) const
{
    const ToolArguments given(arguments);
    using Handler = std::function<MCPCallToolResult()>;
    const std::map<QString, Handler> handlers{
        {QStringLiteral("scan_storage"), [&] { return scanStorage(given); }},
        {QStringLiteral("clean_storage"), [&] { return cleanStorage(given); }},
        {QStringLiteral("inspect_directory"), [&] { return inspectDirectory(given); }},
        {QStringLiteral("list_apps"), [&] { return listApps(given); }},
        {QStringLiteral("uninstall_app"), [&] { return uninstallApp(given); }},
        {QStringLiteral("get_system_vitals"), [&] { return getSystemVitals(); }},
        {QStringLiteral("list_rules"), [&] { return listRules(); }},
        {QStringLiteral("register_rule"), [&] { return registerRule(given); }},
        {QStringLiteral("inspect_anomalies"), [&] { return inspectAnomalies(given); }},
    };
    const auto handler = handlers.find(name);
    if (handler == handlers.end())
        return MCPCallToolResult::text(QStringLiteral("Unknown tool: ") + name, true);
    return handler->second();
}

MCPCallToolResult MCPTools::scanStorage(const ToolArguments& arguments) const
{
    const std::optional<CategorySet> categories = restriction(arguments.categories(QStringLiteral("categories")));
    const std::int64_t minimumBytes = arguments.megabytesInBytes(QStringLiteral("min_size_mb")).value_or(0);
    ScanResult result = DeepScanEngine({.homeURL = m_homeURL}).scan(categories);
    std::erase_if(result.items,
                  [minimumBytes](const DiscoveredItem& item) { return item.allocatedSizeBytes < minimumBytes; });
    result.summary = ScanSummary::from(result.items);
    result.scanId = QUuid::createUuid();
    return document(result.toJson(DateEncoding::iso8601));
}

MCPCallToolResult MCPTools::cleanStorage(const ToolArguments& arguments) const
{
    const bool dryRun = arguments.boolean(QStringLiteral("dry_run")).value_or(true);
    const bool permanent = arguments.boolean(QStringLiteral("permanent")).value_or(false);
    QStringList paths = arguments.strings(QStringLiteral("paths"));
    // Every item the scan finds is named, whatever its tier: the pipeline's sandbox is what
    // stops a path that must stay.
    if (const std::optional<CategorySet> categories = restriction(arguments.categories(QStringLiteral("categories"))))
        for (const DiscoveredItem& item : DeepScanEngine({.homeURL = m_homeURL}).scan(categories).items)
            paths.append(item.path);
    if (paths.isEmpty())
        return MCPCallToolResult::text(QStringLiteral("No target paths or categories matched for cleanup."), false);

    const TrashPipeline pipeline(
        {.auditLogger = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = m_homeURL}),
         .homeURL = m_homeURL});
    const QString client = QStringLiteral("mcp");
    // `permanent` deletes whatever `dry_run` says: an agent that asks for it has confirmed it.
    const TrashSummary summary =
        permanent ? pipeline.purgePermanently(paths, true, client) : pipeline.trash(paths, dryRun, client);
    return document(summary.toJson(DateEncoding::iso8601));
}

MCPCallToolResult MCPTools::inspectDirectory(const ToolArguments& arguments) const
{
    const std::optional<QString> path = arguments.string(QStringLiteral("path"));
    if (!path)
        return MCPCallToolResult::text(QStringLiteral("Missing required argument 'path'"), true);
    const std::int64_t depth = arguments.integer(QStringLiteral("depth")).value_or(3);
    const SpaceNode node =
        SpaceLensEngine().buildNode(*path, 0, static_cast<int>(std::clamp<std::int64_t>(depth, INT_MIN, INT_MAX)));
    return document(node.toJson(DateEncoding::secondsSinceReferenceDate));
}

MCPCallToolResult MCPTools::listApps(const ToolArguments& arguments) const
{
    const bool includeLeftovers = arguments.boolean(QStringLiteral("include_leftovers")).value_or(true);
    const std::vector<InstalledApp> apps = installedApps(m_homeURL);
    // No scanner and no list: the hunter judges by what it finds installed itself.
    const std::vector<AppLeftover> leftovers =
        includeLeftovers ? LeftoversHunter({.homeURL = m_homeURL}).scanForLeftovers(std::nullopt)
                         : std::vector<AppLeftover>{};
    return document(JSONValue::object(
        {{QStringLiteral("installedApps"), array(apps, [](const InstalledApp& app) { return app.toJson(); })},
         {QStringLiteral("leftovers"), array(leftovers, [](const AppLeftover& leftover) {
              return leftover.toJson(DateEncoding::secondsSinceReferenceDate);
          })}}));
}

MCPCallToolResult MCPTools::uninstallApp(const ToolArguments& arguments) const
{
    const std::optional<QString> wanted = arguments.string(QStringLiteral("bundle_id_or_name"));
    if (!wanted)
        return MCPCallToolResult::text(QStringLiteral("Missing required argument 'bundle_id_or_name'"), true);
    const bool dryRun = arguments.boolean(QStringLiteral("dry_run")).value_or(true);
    const bool force = arguments.boolean(QStringLiteral("force")).value_or(false);
    const std::vector<InstalledApp> apps = installedApps(m_homeURL);
    const auto app = std::find_if(apps.begin(), apps.end(), [&](const InstalledApp& candidate) {
        return candidate.bundleIdentifier.compare(*wanted, Qt::CaseInsensitive) == 0 ||
               candidate.displayName.compare(*wanted, Qt::CaseInsensitive) == 0;
    });
    if (app == apps.end())
        return MCPCallToolResult::text(QStringLiteral("Application not found matching '") + *wanted + QLatin1Char('\''),
                                       true);
    const AppUninstaller uninstaller(
        {.auditLogger = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = m_homeURL}),
         .homeURL = m_homeURL});
    const UninstallSummary summary = uninstaller.uninstall(
        *app, dryRun, {.force = force, .includeBundle = true, .includeDependencies = true, .permanentPurge = false});
    return document(summary.toJson(DateEncoding::secondsSinceReferenceDate));
}

MCPCallToolResult MCPTools::getSystemVitals() const
{
    return document(VitalsMonitor().getSystemVitals().toJson(DateEncoding::iso8601));
}

MCPCallToolResult MCPTools::listRules() const
{
    // A registry that has not read the rules file: the built-in catalogue alone.
    const RuleRegistry registry({.homeURL = m_homeURL});
    return document(array(registry.allRules(), [](const RuleDefinition& rule) {
        return rule.toJson(DateEncoding::secondsSinceReferenceDate);
    }));
}

MCPCallToolResult MCPTools::registerRule(const ToolArguments& arguments) const
{
    const std::optional<QString> id = arguments.string(QStringLiteral("id"));
    const std::optional<QString> name = arguments.string(QStringLiteral("name"));
    const std::optional<QString> pattern = arguments.string(QStringLiteral("pattern"));
    const std::optional<QString> category = arguments.string(QStringLiteral("category"));
    const std::optional<QString> tier = arguments.string(QStringLiteral("risk_tier"));
    if (!id || !name || !pattern || !category || !tier)
        return MCPCallToolResult::text(QStringLiteral("Missing required arguments for register_rule"), true);

    const QString upperTier = tier->toUpper();
    const RiskTier riskTier = upperTier == QLatin1String("SAFE_TO_DELETE") ? RiskTier::safeToDelete
                              : upperTier == QLatin1String("KEEP")         ? RiskTier::keep
                                                                           : RiskTier::reviewRequired;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const RuleDefinition rule{
        .id = *id,
        .name = *name,
        .description = arguments.string(QStringLiteral("description")).value_or(*name),
        .category = StorageCategory::parse(*category).value_or(StorageCategory::developerCache),
        .riskTier = riskTier,
        .patterns = {*pattern},
        .excludedPatterns = {},
        .isRegenerable = riskTier == RiskTier::safeToDelete,
        .isBuiltIn = false,
        .enabled = true,
        .minAgeDays = std::nullopt,
        .synthesizedBy = std::nullopt,
        .createdAt = now,
        .updatedAt = now,
    };
    // A registry fresh from the built-ins: the file it saves holds this rule alone.
    RuleRegistry({.homeURL = m_homeURL}).registerRule(rule);
    return MCPCallToolResult::text(
        QStringLiteral("Successfully registered rule '%1' matching pattern '%2'").arg(*id, *pattern), false);
}

MCPCallToolResult MCPTools::inspectAnomalies(const ToolArguments& arguments) const
{
    const std::int64_t minimumBytes =
        arguments.megabytesInBytes(QStringLiteral("min_size_mb")).value_or(DeepScanEngine::anomalyMinSizeBytes);
    const AnomalyDetector detector(
        AnomalyDetectorConfiguration(minimumBytes, AnomalyDetectorConfiguration::defaultInspectionRoots(m_homeURL),
                                     DeepScanEngine::anomalySearchDepth, m_homeURL),
        std::make_shared<const RuleRegistry>(RuleRegistry::Options{.homeURL = m_homeURL}));
    return document(array(detector.detectAnomalies(), [](const StorageAnomaly& anomaly) {
        return anomaly.toJson(DateEncoding::secondsSinceReferenceDate);
    }));
}

} // namespace kestrow
