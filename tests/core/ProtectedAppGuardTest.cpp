#include "TestHome.h"

#include "apps/ProtectedAppGuard.h"
#include "apps/UninstallerError.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

std::optional<QString> reason(const ProtectedAppGuard& guard, const QString& path, const QString& identifier,
                              std::optional<CodeSignatureReport> report = CodeSignatureReport{})
{
    const ProtectionEvaluation verdict = guard.evaluateProtection(path, identifier, report);
    EXPECT_EQ(verdict.isProtected, verdict.reason.has_value());
    EXPECT_EQ(verdict.canUninstall, !verdict.isProtected);
    return verdict.reason;
}

// Reports the restricted flag on every file, as System Integrity Protection sets it.
class RestrictedFlags : public FileManager {
public:
    std::optional<FileStatus> status(const QString& path, bool followLinks) const override
    {
        std::optional<FileStatus> found = FileManager::status(path, followLinks);
        if (found)
            found->fileFlags |= 0x00080000;
        return found;
    }
};

// Applications that end on a forced termination only, or never.
class StubbornApplications : public RunningApplications {
public:
    explicit StubbornApplications(bool diesWhenForced)
        : m_diesWhenForced(diesWhenForced)
    {
    }
    std::vector<std::int64_t> processIds(const QString&) const override { return {41}; }
    QSet<QString> runningIdentifiers() const override { return {}; }
    void requestTermination(std::int64_t, bool force) const override
    {
        const std::lock_guard lock(m_mutex);
        requests.push_back(force);
    }
    bool isTerminated(std::int64_t) const override
    {
        const std::lock_guard lock(m_mutex);
        return m_diesWhenForced && !requests.empty() && requests.back();
    }
    mutable std::vector<bool> requests;

private:
    bool m_diesWhenForced;
    mutable std::mutex m_mutex;
};

} // namespace

TEST(ProtectedAppGuard, EachRuleFiresInItsOrderWithItsOwnWords)
{
    TestHome root;
    const QString system = root.makeDirectory(QStringLiteral("System/Applications"));
    root.makeDirectory(QStringLiteral("System/Real.app"));
    root.makeDirectory(QStringLiteral("SYSTEM/Foo.app"));
    const QString link =
        root.makeSymbolicLink(QStringLiteral("Applications/Link.app"), root.path(QStringLiteral("System/Real.app")));
    const QString systemPrefix = root.path(QStringLiteral("System"));
    const ProtectedAppGuard guard(
        {.protectedPathPrefixes = QStringList{systemPrefix, system, root.path(QStringLiteral("usr"))}});
    const QString acme = QStringLiteral("com.acme.tool");

    // The first prefix wins over the longer one, compared ignoring case.
    EXPECT_EQ(reason(guard, system + QStringLiteral("/Foo.app"), acme),
              QStringLiteral("Application resides in protected system directory '") + systemPrefix +
                  QStringLiteral("'"));
    EXPECT_EQ(reason(guard, root.path(QStringLiteral("SYSTEM/Foo.app")), acme),
              QStringLiteral("Application resides in protected system directory '") + systemPrefix +
                  QStringLiteral("'"));
    EXPECT_EQ(reason(guard, link, acme),
              QStringLiteral("Application resolves via symlink to protected system directory '") + systemPrefix +
                  QStringLiteral("'"));
    // Whole components only.
    EXPECT_EQ(reason(guard, root.path(QStringLiteral("usrlocal/Foo.app")), acme), std::nullopt);
    EXPECT_EQ(reason(guard, root.path(QStringLiteral("Volumes/Cryptexes/Foo.app")), acme),
              QStringLiteral("Application is hosted on sealed macOS Cryptex volume"));

    // The restricted flag comes before identity.
    const ProtectedAppGuard sealed(
        {.fileManager = std::make_shared<RestrictedFlags>(), .protectedPathPrefixes = QStringList{}});
    EXPECT_EQ(reason(sealed, link, QStringLiteral("com.apple.Safari")),
              QStringLiteral("Application is protected by macOS System Integrity Protection (SIP)"));

    EXPECT_EQ(reason(guard, QStringLiteral("/Applications/Safari.app"), QStringLiteral("com.apple.Safari"),
                     CodeSignatureReport{.isApplePlatformSigned = true}),
              QStringLiteral("Protected Apple core operating system bundle 'com.apple.Safari'"));
    EXPECT_EQ(reason(guard, QStringLiteral("/Applications/Tool.app"), acme,
                     CodeSignatureReport{.category = CodeSignerCategory::applePlatform, .isApplePlatformSigned = true}),
              QStringLiteral("Signed with Apple Platform OS authority (Platform)"));
    EXPECT_EQ(
        reason(guard, QStringLiteral("/Applications/Tool.app"), acme,
               CodeSignatureReport{.authority = QStringLiteral("Software Signing"), .isApplePlatformSigned = true}),
        QStringLiteral("Signed with Apple Platform OS authority (Software Signing)"));
    EXPECT_EQ(reason(guard, QStringLiteral("/Library/Apple/Foo.app"), QStringLiteral("com.apple.foo")),
              QStringLiteral("Apple system component 'com.apple.foo'"));
    EXPECT_EQ(reason(guard, QStringLiteral("/Applications/Utilities/Foo.app"), QStringLiteral("com.apple.foo")),
              std::nullopt);
    EXPECT_EQ(reason(guard, QStringLiteral("/Users/ann/Apps/Foo.app"), QStringLiteral("com.apple.foo")), std::nullopt);
    EXPECT_EQ(reason(guard, QStringLiteral("/Library/Apple/Foo.app"), QStringLiteral("COM.APPLE.foo")), std::nullopt);
    // Without a report the bundle's own signature is read: none on this platform.
    EXPECT_EQ(guard.evaluateProtection(QStringLiteral("/Applications/Tool.app"), acme),
              (ProtectionEvaluation{.isProtected = false, .canUninstall = true, .reason = std::nullopt}));
}

TEST(ProtectedAppGuard, TheSystemFoldersAreProtectedByDefault)
{
    const ProtectedAppGuard guard;
    EXPECT_EQ(reason(guard, QStringLiteral("/System/Volumes/Data/Applications/Foo.app"), QStringLiteral("x.y.z")),
              QStringLiteral("Application resides in protected system directory '/System'"));
    EXPECT_EQ(reason(guard, QStringLiteral("/private/var/db/Foo.app"), QStringLiteral("x.y.z")),
              QStringLiteral("Application resides in protected system directory '/private/var/db'"));
    EXPECT_EQ(reason(guard, QStringLiteral("/usrlocal/Foo.app"), QStringLiteral("x.y.z")), std::nullopt);
    EXPECT_EQ(ProtectedAppGuard::defaultProtectedPathPrefixes().size(), 11);
}

TEST(ProtectedAppGuard, SignaturesAreClassifiedByTheirFirstMatchingRule)
{
    const auto category = [](std::optional<QString> authority, bool platform = false) {
        return ProtectedAppGuard::report(SigningInformation{.hasPlatformIdentifier = platform,
                                                            .leafCertificateSummary = std::move(authority)})
            .category;
    };
    EXPECT_EQ(category(QStringLiteral("Developer ID Application: Example"), true), CodeSignerCategory::applePlatform);
    EXPECT_EQ(category(std::nullopt), CodeSignerCategory::unsignedCode);
    EXPECT_EQ(category(QStringLiteral("Apple Software Signing")), CodeSignerCategory::applePlatform);
    EXPECT_EQ(category(QStringLiteral("3rd Party Mac Developer Application: Acme")), CodeSignerCategory::macAppStore);
    EXPECT_EQ(category(QStringLiteral("Apple Mac OS Application Signing")), CodeSignerCategory::macAppStore);
    EXPECT_EQ(category(QStringLiteral("Apple Development: Ann")), CodeSignerCategory::adHoc);

    const CodeSignatureReport developer = ProtectedAppGuard::report(
        SigningInformation{.teamIdentifier = QStringLiteral("TEAM123"),
                           .codeFlags = 0x10000,
                           .leafCertificateSummary = QStringLiteral("Developer ID Application: Example")});
    EXPECT_EQ(developer, (CodeSignatureReport{.authority = QStringLiteral("Developer ID Application: Example"),
                                              .teamIdentifier = QStringLiteral("TEAM123"),
                                              .category = CodeSignerCategory::developerId,
                                              .isApplePlatformSigned = false,
                                              .isHardenedRuntime = true}));
    EXPECT_EQ(ProtectedAppGuard().inspectCodeSignature(QStringLiteral("/bin")), CodeSignatureReport{});
    EXPECT_EQ(CodeSignerCategory(CodeSignerCategory::unsignedCode).rawValue(), QStringLiteral("Unsigned"));
    EXPECT_EQ(CodeSignerCategory(CodeSignerCategory::adHoc).rawValue(), QStringLiteral("Ad-Hoc / Self-Signed"));
}

TEST(ProtectedAppGuard, UninstallIsRefusedForProtectedThenRunningApplications)
{
    const ProtectedAppGuard guard(
        {.runningAppsProvider = [](const QString& id) { return id == QStringLiteral("com.acme.busy"); }});
    InstalledApp app{.bundleIdentifier = QStringLiteral("com.acme.busy"),
                     .bundlePath = QStringLiteral("/Applications/Busy.app"),
                     .displayName = QStringLiteral("Busy")};
    const auto refusal = [&guard](const InstalledApp& candidate) -> QString {
        try {
            guard.validateUninstall(candidate);
        } catch (const UninstallerError& error) {
            return error.description();
        }
        return {};
    };
    EXPECT_EQ(refusal(app), QStringLiteral("Cannot uninstall 'Busy' (com.acme.busy) because it is currently running."));
    app.isSystemApp = true;
    EXPECT_EQ(refusal(app), QStringLiteral("Refusing uninstallation of protected system application 'com.acme.busy' at "
                                           "'/Applications/Busy.app': Protected macOS system application"));
    app.isSystemApp = false;
    app.isProtected = true;
    app.protectionReason = QStringLiteral("Apple system component 'com.acme.busy'");
    EXPECT_EQ(refusal(app), QStringLiteral("Refusing uninstallation of protected system application 'com.acme.busy' at "
                                           "'/Applications/Busy.app': Apple system component 'com.acme.busy'"));
    app.isProtected = false;
    app.bundleIdentifier = QStringLiteral("com.acme.idle");
    EXPECT_EQ(refusal(app), QString());
}

TEST(ProtectedAppGuard, ErrorsSayWhatWentWrong)
{
    const QString path = QStringLiteral("/Applications/A.app");
    EXPECT_EQ(UninstallerError::applicationNotFound(path).description(),
              QStringLiteral("Application bundle not found at path: /Applications/A.app"));
    EXPECT_EQ(UninstallerError::bundleInspectionFailed(path, QStringLiteral("no plist")).description(),
              QStringLiteral("Failed to inspect application bundle at '/Applications/A.app': no plist"));
    EXPECT_EQ(UninstallerError::uninstallationFailed(path, QStringLiteral("busy")).description(),
              QStringLiteral("Failed to uninstall application at '/Applications/A.app': busy"));
    EXPECT_EQ(UninstallerError::permissionDenied(path).description(),
              QStringLiteral("Access denied to application bundle at '/Applications/A.app'. Full Disk Access may be "
                             "required."));
    EXPECT_EQ(UninstallerError::deletionFailed(path, QStringLiteral("EPERM")).description(),
              QStringLiteral("Failed to delete item at '/Applications/A.app': EPERM"));
}

TEST(ProtectedAppGuard, TerminationEscalatesOnceAndThenGivesUp)
{
    const auto failure = [](const ProtectedAppGuard& guard, bool force) -> QString {
        try {
            guard.terminate(QStringLiteral("com.acme.stuck"), force);
        } catch (const UninstallerError& error) {
            return error.description();
        }
        return {};
    };
    const QString stuck =
        QStringLiteral("Cannot uninstall 'com.acme.stuck' (com.acme.stuck) because it is currently running.");
    EXPECT_EQ(failure(ProtectedAppGuard({.processTerminator = [](const QString&, bool) { return false; }}), false),
              stuck);

    const auto forcedOnly = std::make_shared<StubbornApplications>(true);
    const auto started = std::chrono::steady_clock::now();
    EXPECT_TRUE(
        ProtectedAppGuard({.runningApplications = forcedOnly}).terminate(QStringLiteral("com.acme.stuck"), false));
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(2900));
    EXPECT_EQ(forcedOnly->requests, (std::vector<bool>{false, true}));

    const auto never = std::make_shared<StubbornApplications>(false);
    EXPECT_EQ(failure(ProtectedAppGuard({.runningApplications = never}), true), stuck);
    EXPECT_EQ(never->requests, std::vector<bool>{true});
}

TEST(ProtectedAppGuard, ARunningProcessIsFoundByItsIdentifierAndStopped)
{
    TestHome home;
    const QString program = home.path(QStringLiteral("com.kestrow.sleeper"));
    ASSERT_TRUE(QFile::copy(QStringLiteral("/bin/sleep"), program));
    QProcess sleeper;
    sleeper.start(program, {QStringLiteral("60")});
    ASSERT_TRUE(sleeper.waitForStarted());

    const ProtectedAppGuard guard;
    EXPECT_TRUE(guard.isRunning(QStringLiteral("com.kestrow.sleeper")));
    EXPECT_TRUE(RunningApplications::system()->runningIdentifiers().contains(QStringLiteral("com.kestrow.sleeper")));
    EXPECT_FALSE(guard.isRunning(QStringLiteral("com.kestrow.sleep")));
    EXPECT_TRUE(guard.terminate(QStringLiteral("com.kestrow.sleeper"), false));
    EXPECT_TRUE(sleeper.waitForFinished(2000));
    EXPECT_EQ(sleeper.exitStatus(), QProcess::CrashExit); // ended by its signal
    EXPECT_FALSE(guard.isRunning(QStringLiteral("com.kestrow.sleeper")));
}
