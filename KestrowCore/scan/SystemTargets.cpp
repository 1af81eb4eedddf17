#include "scan/SystemTargets.h"

#include "support/PathText.h"
#include "system/TCCIsolationHelper.h"

#include <QUuid>

#include <algorithm>

namespace kestrow {

namespace {

bool isRefusal(const DirectoryListing& listing)
{
    return !listing.ok() && TCCIsolationHelper::isPermissionOrTCCError(listing.errorCode);
}

// Name parts of the browsers' own cache folders, which the browser sub-scan reports.
bool isBrowserCacheName(const QString& lower)
{
    constexpr QLatin1String tokens[] = {
        QLatin1String("google"),
        QLatin1String("chrome"),
        QLatin1String("firefox"),
        QLatin1String("microsoft edge"),
        QLatin1String("company.thebrowser.browser"),
        QLatin1String("com.apple.safari"),
        QLatin1String("bravesoftware"),
        QLatin1String("com.operasoftware.opera"),
        QLatin1String("vivaldi"),
    };
    return std::any_of(std::begin(tokens), std::end(tokens),
                       [&](QLatin1String token) { return lower.contains(token); });
}

// Caches the developer scanner reports.
bool isDeveloperCacheName(const QString& lower)
{
    constexpr QLatin1String names[] = {
        QLatin1String("uv"),       QLatin1String("pip"),   QLatin1String("pnpm"),     QLatin1String("yarn"),
        QLatin1String("go-build"), QLatin1String("cargo"), QLatin1String("homebrew"), QLatin1String("gradle"),
    };
    return std::find(std::begin(names), std::end(names), lower) != std::end(names);
}

TargetScan::Location systemLocation(const QString& path, StorageCategory category, const QString& description,
                                    const char* ruleId)
{
    return {.path = path, .category = category, .description = description, .defaultRuleId = QLatin1String(ruleId)};
}

} // namespace

SystemTargets::SystemTargets(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_ruleRegistry(std::move(options.ruleRegistry))
    , m_riskClassifier(options.riskClassifier ? std::move(*options.riskClassifier)
                                              : RiskClassifier(m_homeURL, m_ruleRegistry, m_fileManager))
    , m_measurer(*m_fileManager, [](int errorCode) { return TCCIsolationHelper::isPermissionOrTCCError(errorCode); })
{
}

QString SystemTargets::home(const QString& relative) const
{
    return relative.startsWith(QLatin1Char('/')) ? relative : PathText::appending(m_homeURL, relative);
}

SystemTargetsOutcome SystemTargets::scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                         std::stop_token stop) const
{
    TargetScan scan(m_measurer, m_riskClassifier, progress, std::move(stop));
    SystemTargetsOutcome outcome;
    const std::pair<StorageCategory::Value, void (SystemTargets::*)(TargetScan&, QStringList&) const> steps[] = {
        {StorageCategory::systemCaches, &SystemTargets::scanUserCaches},
        {StorageCategory::systemLogs, &SystemTargets::scanUserLogs},
        {StorageCategory::crashReports, &SystemTargets::scanCrashReports},
        {StorageCategory::mailDownloads, &SystemTargets::scanMailDownloads},
        {StorageCategory::browserCaches, &SystemTargets::scanBrowserCaches},
    };
    for (const auto& [category, subScan] : steps) {
        if (!categories.contains(category))
            continue;
        scan.checkCancellation();
        (this->*subScan)(scan, outcome.warnings);
    }
    outcome.items = scan.takeItems();
    return outcome;
}

void SystemTargets::reportRefusal(TargetScan& scan, QStringList& warnings, const QString& label,
                                  const TargetScan::Location& location)
{
    warnings.append(TCCIsolationHelper::fdaWarning(label, location.path));
    // Not classified: nothing could be seen to classify. Mail may hold the only copy of an
    // attachment, so its stand-in asks for review like its items.
    scan.emitUnclassified(DiscoveredItem{
        .id = QUuid::createUuid(),
        .path = location.path,
        .category = location.category,
        .riskTier =
            location.category == StorageCategory::mailDownloads ? RiskTier::reviewRequired : RiskTier::safeToDelete,
        .requiresFullDiskAccess = true,
        .itemDescription = location.description + QStringLiteral(" (Requires Full Disk Access)"),
        .ruleId = location.defaultRuleId,
    });
}

void SystemTargets::emitUnlessRefused(TargetScan& scan, QStringList& warnings,
                                      const TargetScan::Location& location) const
{
    if (!m_fileManager->fileExists(location.path))
        return;
    if (isRefusal(m_fileManager->contentsOfDirectory(location.path, true)))
        reportRefusal(scan, warnings, location.description, location);
    else
        scan.emitIfContent(location);
}

std::vector<DirectoryEntry> SystemTargets::listTopFolder(TargetScan& scan, QStringList& warnings,
                                                         const TargetScan::Location& location) const
{
    if (!m_fileManager->fileExists(location.path))
        return {};
    DirectoryListing listing = m_fileManager->contentsOfDirectory(location.path, true);
    if (isRefusal(listing))
        reportRefusal(scan, warnings, location.description, location);
    return std::move(listing.entries);
}

void SystemTargets::scanUserCaches(TargetScan& scan, QStringList& warnings) const
{
    const char* ruleId = "sys.user.caches";
    const QString caches = home(QStringLiteral("Library/Caches"));
    const std::vector<DirectoryEntry> entries = listTopFolder(
        scan, warnings, systemLocation(caches, StorageCategory::systemCaches, QStringLiteral("User Caches"), ruleId));
    for (const DirectoryEntry& entry : entries) {
        scan.checkCancellation();
        const QString lower = entry.name.toLower();
        if (isBrowserCacheName(lower) || isDeveloperCacheName(lower))
            continue;
        const QString path = PathText::appending(caches, entry.name);
        // A plain file fails to list too, and is measured like any other entry.
        if (isRefusal(m_fileManager->contentsOfDirectory(path, false)))
            reportRefusal(scan, warnings, entry.name,
                          systemLocation(path, StorageCategory::systemCaches, entry.name, ruleId));
        else
            scan.emitIfContent(
                systemLocation(path, StorageCategory::systemCaches, entry.name + QStringLiteral(" Cache"), ruleId));
    }
}

void SystemTargets::scanUserLogs(TargetScan& scan, QStringList& warnings) const
{
    const char* ruleId = "sys.user.logs";
    const QString logs = home(QStringLiteral("Library/Logs"));
    const std::vector<DirectoryEntry> entries = listTopFolder(
        scan, warnings, systemLocation(logs, StorageCategory::systemLogs, QStringLiteral("User Logs"), ruleId));
    for (const DirectoryEntry& entry : entries) {
        scan.checkCancellation();
        // Crash reports have a sub-scan of their own.
        if (entry.name == QLatin1String("DiagnosticReports") || entry.name == QLatin1String("CrashReporter"))
            continue;
        scan.emitIfContent(systemLocation(PathText::appending(logs, entry.name), StorageCategory::systemLogs,
                                          entry.name + QStringLiteral(" Log Data"), ruleId));
    }
}

void SystemTargets::scanCrashReports(TargetScan& scan, QStringList& warnings) const
{
    const std::pair<const char*, const char*> rows[] = {
        {"Library/Logs/DiagnosticReports", "User Diagnostic & Crash Reports (.ips)"},
        {"Library/Logs/CrashReporter", "Legacy User Crash Reports"},
        {"/Library/Logs/DiagnosticReports", "System Diagnostic & Panic Reports"},
    };
    for (const auto& [folder, label] : rows) {
        scan.checkCancellation();
        emitUnlessRefused(scan, warnings,
                          systemLocation(home(QLatin1String(folder)), StorageCategory::crashReports,
                                         QLatin1String(label), "sys.crash.user_reports"));
    }
}

void SystemTargets::scanMailDownloads(TargetScan& scan, QStringList& warnings) const
{
    const char* ruleId = "sys.mail.downloads";
    const QString container = home(QStringLiteral("Library/Containers/com.apple.mail"));
    const QString library = PathText::appending(container, QStringLiteral("Data/Library"));
    const TargetScan::Location downloads =
        systemLocation(PathText::appending(library, QStringLiteral("Mail Downloads")), StorageCategory::mailDownloads,
                       QStringLiteral("Apple Mail Attachment Downloads"), ruleId);
    // The container's library is what privacy protection guards; its downloads folder can't
    // be seen without it.
    if (m_fileManager->fileExists(library) && isRefusal(m_fileManager->contentsOfDirectory(library, true)))
        reportRefusal(scan, warnings, QStringLiteral("Apple Mail Downloads"), downloads);
    else
        scan.emitIfContent(downloads);

    scan.emitIfContent(systemLocation(home(QStringLiteral("Library/Mail Downloads")), StorageCategory::mailDownloads,
                                      QStringLiteral("Legacy Mail Downloads"), ruleId));
}

void SystemTargets::scanBrowserCaches(TargetScan& scan, QStringList& warnings) const
{
    const std::pair<const char*, const char*> safari[] = {
        {"Library/Containers/com.apple.Safari/Data/Library/Caches", "Safari WebKit Container Cache"},
        {"Library/Caches/com.apple.Safari", "Safari WebKit User Cache"},
    };
    for (const auto& [folder, label] : safari)
        emitUnlessRefused(scan, warnings,
                          systemLocation(home(QLatin1String(folder)), StorageCategory::browserCaches,
                                         QLatin1String(label), "sys.browser.safari"));

    // These lie outside the protected containers, so no refusal is looked for.
    struct Browser {
        const char* name;
        const char* folder;
        const char* ruleId;
    };
    constexpr Browser browsers[] = {
        {"Google Chrome", "Library/Caches/Google/Chrome", "sys.browser.chrome"},
        {"Microsoft Edge", "Library/Caches/Microsoft Edge", "sys.browser.edge"},
        {"Arc Browser", "Library/Caches/company.thebrowser.Browser", "sys.browser.arc"},
        {"Brave Browser", "Library/Caches/BraveSoftware/Brave-Browser", "sys.browser.brave"},
        {"Opera Browser", "Library/Caches/com.operasoftware.Opera", "sys.browser.other"},
        {"Vivaldi Browser", "Library/Caches/Vivaldi", "sys.browser.other"},
    };
    for (const Browser& browser : browsers)
        scan.emitIfContent(systemLocation(home(QLatin1String(browser.folder)), StorageCategory::browserCaches,
                                          QLatin1String(browser.name) + QStringLiteral(" Cache"), browser.ruleId));

    scan.emitIfContent(systemLocation(home(QStringLiteral("Library/Caches/Firefox/Profiles")),
                                      StorageCategory::browserCaches, QStringLiteral("Mozilla Firefox Profile Caches"),
                                      "sys.browser.firefox"));
}

} // namespace kestrow
