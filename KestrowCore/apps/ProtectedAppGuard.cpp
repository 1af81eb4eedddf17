#include "apps/ProtectedAppGuard.h"

#include "apps/UninstallerError.h"
#include "platform/LinkResolver.h"

#include <QSet>

#include <chrono>
#include <thread>

namespace kestrow {

namespace {

constexpr std::uint32_t hardenedRuntimeFlag = 0x10000;
// SF_RESTRICTED: set by the system on what System Integrity Protection guards.
constexpr std::uint32_t restrictedFileFlag = 0x00080000;
constexpr auto terminationWait = std::chrono::milliseconds(3000);
constexpr auto terminationPoll = std::chrono::milliseconds(100);

const QSet<QString>& coreAppleBundleIdentifiers()
{
    static const QSet<QString> identifiers{
        QStringLiteral("com.apple.Safari"),
        QStringLiteral("com.apple.finder"),
        QStringLiteral("com.apple.dock"),
        QStringLiteral("com.apple.SystemSettings"),
        QStringLiteral("com.apple.systempreferences"),
        QStringLiteral("com.apple.mail"),
        QStringLiteral("com.apple.Music"),
        QStringLiteral("com.apple.Photos"),
        QStringLiteral("com.apple.TV"),
        QStringLiteral("com.apple.Podcasts"),
        QStringLiteral("com.apple.Notes"),
        QStringLiteral("com.apple.reminders"),
        QStringLiteral("com.apple.Preview"),
        QStringLiteral("com.apple.QuickTimePlayerX"),
        QStringLiteral("com.apple.FaceTime"),
        QStringLiteral("com.apple.iChat"),
        QStringLiteral("com.apple.Maps"),
        QStringLiteral("com.apple.weather"),
        QStringLiteral("com.apple.news"),
        QStringLiteral("com.apple.stocks"),
        QStringLiteral("com.apple.clock"),
        QStringLiteral("com.apple.Home"),
        QStringLiteral("com.apple.shortcuts"),
        QStringLiteral("com.apple.Freeform"),
        QStringLiteral("com.apple.ActivityMonitor"),
        QStringLiteral("com.apple.Console"),
        QStringLiteral("com.apple.Terminal"),
        QStringLiteral("com.apple.DiskUtility"),
        QStringLiteral("com.apple.KeychainAccess"),
        QStringLiteral("com.apple.ArchiveUtility"),
        QStringLiteral("com.apple.Screenshot"),
        QStringLiteral("com.apple.calculator"),
        QStringLiteral("com.apple.TextEdit"),
    };
    return identifiers;
}

// Whole components only: "/usrlocal" is not under "/usr".
bool isAtOrUnder(const QString& lowerPath, const QString& lowerPrefix)
{
    return lowerPath == lowerPrefix || (lowerPath.startsWith(lowerPrefix) && lowerPath.size() > lowerPrefix.size() &&
                                        lowerPath[lowerPrefix.size()] == QLatin1Char('/'));
}

} // namespace

const QStringList& ProtectedAppGuard::defaultProtectedPathPrefixes()
{
    static const QStringList prefixes{
        QStringLiteral("/System"),
        QStringLiteral("/System/Applications"),
        QStringLiteral("/System/Applications/Utilities"),
        QStringLiteral("/System/Library"),
        QStringLiteral("/System/Library/CoreServices"),
        QStringLiteral("/System/Volumes/Preboot/Cryptexes"),
        QStringLiteral("/System/Cryptexes"),
        QStringLiteral("/usr"),
        QStringLiteral("/bin"),
        QStringLiteral("/sbin"),
        QStringLiteral("/private/var/db"),
    };
    return prefixes;
}

bool ProtectedAppGuard::isCoreAppleBundleIdentifier(const QString& bundleIdentifier)
{
    return coreAppleBundleIdentifiers().contains(bundleIdentifier);
}

ProtectionEvaluation ProtectedAppGuard::flatpakProtection(const QString& applicationId, bool userInstallation)
{
    return ProtectionEvaluation::from(QStringLiteral("Installed with Flatpak: remove it with `flatpak uninstall ") +
                                      (userInstallation ? QStringLiteral("--user ") : QStringLiteral("--system ")) +
                                      applicationId + QStringLiteral("`; its data can still be swept"));
}

ProtectionEvaluation ProtectedAppGuard::snapProtection(const QString& snapName)
{
    return ProtectionEvaluation::from(QStringLiteral("Installed with Snap: remove it with `snap remove ") + snapName +
                                      QStringLiteral("`; its data can still be swept"));
}

ProtectedAppGuard::ProtectedAppGuard(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<const FileManager>())
    , m_runningAppsProvider(std::move(options.runningAppsProvider))
    , m_processTerminator(std::move(options.processTerminator))
    , m_runningApplications(options.runningApplications ? std::move(options.runningApplications)
                                                        : RunningApplications::system())
    , m_protectedPathPrefixes(options.protectedPathPrefixes ? std::move(*options.protectedPathPrefixes)
                                                            : defaultProtectedPathPrefixes())
{
}

CodeSignatureReport ProtectedAppGuard::inspectCodeSignature(const QString& bundlePath) const
{
    return report(CodeSignatureSource::read(bundlePath));
}

CodeSignatureReport ProtectedAppGuard::report(const std::optional<SigningInformation>& information)
{
    if (!information)
        return {};
    CodeSignatureReport result{
        .authority = information->leafCertificateSummary,
        .teamIdentifier = information->teamIdentifier,
        .category = CodeSignerCategory::adHoc,
        .isApplePlatformSigned = false,
        .isHardenedRuntime = (information->codeFlags & hardenedRuntimeFlag) != 0,
    };
    const QString authority = result.authority.value_or(QString());
    if (information->hasPlatformIdentifier) {
        result.category = CodeSignerCategory::applePlatform;
        result.isApplePlatformSigned = true;
    } else if (!result.authority) {
        result.category = CodeSignerCategory::unsignedCode;
    } else if (authority == QLatin1String("Software Signing") || authority == QLatin1String("Apple Software Signing")) {
        result.category = CodeSignerCategory::applePlatform;
        result.isApplePlatformSigned = true;
    } else if (authority.startsWith(QLatin1String("Developer ID Application:"))) {
        result.category = CodeSignerCategory::developerId;
    } else if (authority.startsWith(QLatin1String("3rd Party Mac Developer Application:")) ||
               authority == QLatin1String("Apple Mac OS Application Signing")) {
        result.category = CodeSignerCategory::macAppStore;
    }
    return result;
}

ProtectionEvaluation
ProtectedAppGuard::evaluateProtection(const QString& bundlePath, const QString& bundleIdentifier,
                                      const std::optional<CodeSignatureReport>& codeSignature) const
{
    return ProtectionEvaluation::from(evaluateSystemProtection(bundlePath, bundleIdentifier, codeSignature));
}

std::optional<QString>
ProtectedAppGuard::evaluateSystemProtection(const QString& bundlePath, const QString& bundleIdentifier,
                                            const std::optional<CodeSignatureReport>& codeSignature) const
{
    const QString resolved = LinkResolver(m_fileManager->systemCalls()).resolvingSymbolicLinks(bundlePath);
    const QString lowerPath = bundlePath.toLower();
    const QString lowerResolved = resolved.toLower();

    for (const QString& prefix : m_protectedPathPrefixes) {
        const QString lowerPrefix = prefix.toLower();
        if (isAtOrUnder(lowerPath, lowerPrefix))
            return QStringLiteral("Application resides in protected system directory '") + prefix + QLatin1Char('\'');
        if (isAtOrUnder(lowerResolved, lowerPrefix))
            return QStringLiteral("Application resolves via symlink to protected system directory '") + prefix +
                   QLatin1Char('\'');
    }

    const QLatin1String cryptexes("cryptexes");
    if (lowerPath.contains(cryptexes) || lowerResolved.contains(cryptexes))
        return QStringLiteral("Application is hosted on sealed macOS Cryptex volume");

    if (const std::optional<FileStatus> status = m_fileManager->status(resolved);
        status && (status->fileFlags & restrictedFileFlag) != 0)
        return QStringLiteral("Application is protected by macOS System Integrity Protection (SIP)");

    if (isCoreAppleBundleIdentifier(bundleIdentifier))
        return QStringLiteral("Protected Apple core operating system bundle '") + bundleIdentifier + QLatin1Char('\'');

    const CodeSignatureReport signature = codeSignature ? *codeSignature : inspectCodeSignature(bundlePath);
    if (signature.isApplePlatformSigned)
        return QStringLiteral("Signed with Apple Platform OS authority (") +
               signature.authority.value_or(QStringLiteral("Platform")) + QLatin1Char(')');

    if (bundleIdentifier.startsWith(QLatin1String("com.apple.")) &&
        !lowerPath.startsWith(QLatin1String("/applications/")) && !lowerPath.contains(QLatin1String("/users/")))
        return QStringLiteral("Apple system component '") + bundleIdentifier + QLatin1Char('\'');

    return std::nullopt;
}

void ProtectedAppGuard::validateUninstall(const InstalledApp& app) const
{
    if (app.isSystemApp || app.isProtected)
        throw UninstallerError::protectedSystemApp(
            app.bundleIdentifier, app.bundlePath,
            app.protectionReason.value_or(QStringLiteral("Protected macOS system application")));
    if (isRunning(app.bundleIdentifier))
        throw UninstallerError::applicationRunning(app.bundleIdentifier, app.displayName);
}

bool ProtectedAppGuard::isRunning(const QString& bundleIdentifier) const
{
    if (m_runningAppsProvider)
        return m_runningAppsProvider(bundleIdentifier);
    return !m_runningApplications->processIds(bundleIdentifier).empty();
}

bool ProtectedAppGuard::terminate(const QString& bundleIdentifier, bool force) const
{
    if (m_processTerminator) {
        if (m_processTerminator(bundleIdentifier, force))
            return true;
        throw UninstallerError::applicationRunning(bundleIdentifier, bundleIdentifier);
    }
    const std::vector<std::int64_t> running = m_runningApplications->processIds(bundleIdentifier);
    if (running.empty())
        return true;
    for (const std::int64_t processId : running)
        m_runningApplications->requestTermination(processId, force);

    const auto deadline = std::chrono::steady_clock::now() + terminationWait;
    while (std::chrono::steady_clock::now() < deadline) {
        const std::vector<std::int64_t> still = m_runningApplications->processIds(bundleIdentifier);
        const bool anyAlive = std::any_of(still.begin(), still.end(), [this](std::int64_t processId) {
            return !m_runningApplications->isTerminated(processId);
        });
        if (!anyAlive)
            return true;
        std::this_thread::sleep_for(terminationPoll);
    }
    if (!force)
        return terminate(bundleIdentifier, true);
    throw UninstallerError::applicationRunning(bundleIdentifier, bundleIdentifier);
}

} // namespace kestrow
