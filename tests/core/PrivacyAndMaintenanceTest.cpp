#include "system/FDAChecker.h"
#include "system/MaintenanceTasks.h"
#include "system/TCCIsolationHelper.h"

#include "RefusingFileManager.h"
#include "TestHome.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <vector>

using namespace kestrow;

namespace {

// Records what would run and answers with set output; a listed executable fails to launch.
class RecordingRunner final : public CommandRunner {
public:
    QByteArray output;
    QString unlaunchable;
    mutable std::vector<ChildCommand> ran;

    QByteArray run(const ChildCommand& command) const override
    {
        if (command.executable == unlaunchable)
            throw ProcessLaunchError(command.executable, QStringLiteral("No such file or directory"));
        ran.push_back(command);
        return output;
    }
    bool startDetached(const ChildCommand& command) const override
    {
        ran.push_back(command);
        return true;
    }
};

class NothingInstalled final : public FileManager {
public:
    bool fileExists(const QString&, bool*) const override { return false; }
};

} // namespace

TEST(TCCIsolationHelper, OnlyPermissionRefusalsCount)
{
    EXPECT_TRUE(TCCIsolationHelper::isPermissionOrTCCError(EACCES));
    EXPECT_TRUE(TCCIsolationHelper::isPermissionOrTCCError(EPERM));
    EXPECT_FALSE(TCCIsolationHelper::isPermissionOrTCCError(ENOENT));
    EXPECT_FALSE(TCCIsolationHelper::isPermissionOrTCCError(EROFS));
    EXPECT_TRUE(TCCIsolationHelper::isPermissionOrTCCError(std::error_code(EACCES, std::system_category())));
    const std::filesystem::filesystem_error refused("open", std::make_error_code(std::errc::permission_denied));
    EXPECT_TRUE(TCCIsolationHelper::isPermissionOrTCCError(refused.code()));
    EXPECT_FALSE(
        TCCIsolationHelper::isPermissionOrTCCError(std::make_error_code(std::errc::no_such_file_or_directory)));
    EXPECT_EQ(TCCIsolationHelper::fdaWarning(QStringLiteral("Mail Downloads"), QStringLiteral("/Users/a/Library/Mail")),
              QStringLiteral("Full Disk Access is required to scan Mail Downloads at /Users/a/Library/Mail. Grant Full "
                             "Disk Access in System Settings > Privacy & Security > Full Disk Access."));
}

TEST(FDAChecker, ProbesTheFirstGuardedFolderThatExists)
{
    const test::TestHome home;
    const auto runner = std::make_shared<RecordingRunner>();
    EXPECT_TRUE(FDAChecker(home.path(), HostSystem::macOS).hasFullDiskAccess());

    home.makeDirectory(QStringLiteral("Library/Safari"));
    home.makeDirectory(QStringLiteral("Library/Application Support/MobileSync"));
    home.makeDirectory(QStringLiteral("Library/Mail"));
    const auto refusingSafari =
        std::make_shared<test::RefusingFileManager>(QStringList{home.path(QStringLiteral("Library/Safari"))});
    EXPECT_FALSE(FDAChecker(home.path(), HostSystem::macOS, refusingSafari).hasFullDiskAccess());
    EXPECT_TRUE(FDAChecker(home.path(), HostSystem::macOS).hasFullDiskAccess());
    EXPECT_TRUE(FDAChecker(home.path(), HostSystem::gnuLinux, refusingSafari).hasFullDiskAccess());

    FDAChecker(home.path(), HostSystem::macOS, refusingSafari, runner).openSystemSettings();
    FDAChecker(home.path(), HostSystem::gnuLinux, refusingSafari, runner).openSystemSettings();
    EXPECT_EQ(runner->ran,
              (std::vector<ChildCommand>{
                  {QStringLiteral("/usr/bin/open"),
                   {QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles")}}}));
}

TEST(MaintenanceTasks, RunsTheFixedCommandsAndKeepsTheirTexts)
{
    const auto runner = std::make_shared<RecordingRunner>();
    const MaintenanceTasks mac(HostSystem::macOS, runner);
    runner->output = "Thinned local snapshots: 2\n";
    EXPECT_EQ(mac.freePurgeableSpace(10), QStringLiteral("Thinned local snapshots: 2\n"));
    EXPECT_EQ(runner->ran.back(), (ChildCommand{QStringLiteral("/usr/bin/tmutil"),
                                                {QStringLiteral("thinlocalsnapshots"), QStringLiteral("/"),
                                                 QStringLiteral("10000000000"), QStringLiteral("4")}}));
    runner->output = "/:\n\tIndexing enabled. \n";
    EXPECT_EQ(mac.getSpotlightStatus(QStringLiteral("/")), QStringLiteral("/:\n\tIndexing enabled."));
    EXPECT_EQ(runner->ran.back().arguments, (QStringList{QStringLiteral("-s"), QStringLiteral("/")}));
    runner->output = QByteArray("\xff\xfe broken");
    EXPECT_EQ(mac.getSpotlightStatus(QStringLiteral("/")), QStringLiteral("Unknown"));
    EXPECT_EQ(mac.triggerSpotlightReindex(QStringLiteral("/")), QStringLiteral("Spotlight reindexing initiated."));
    EXPECT_EQ(mac.freePurgeableSpace(1), QStringLiteral("Purgeable release executed."));

    runner->ran.clear();
    EXPECT_EQ(mac.flushDNSCache(), QStringLiteral("DNS cache successfully flushed."));
    ASSERT_EQ(runner->ran.size(), 2u);
    EXPECT_EQ(runner->ran[1], (ChildCommand{QStringLiteral("/usr/bin/killall"),
                                            {QStringLiteral("-HUP"), QStringLiteral("mDNSResponder")}}));
    runner->ran.clear();
    runner->unlaunchable = QStringLiteral("/usr/bin/dscacheutil");
    EXPECT_THROW(static_cast<void>(mac.flushDNSCache()), ProcessLaunchError);
    EXPECT_TRUE(runner->ran.empty());

    const MaintenanceTasks bareLinux(HostSystem::gnuLinux, runner, std::make_shared<NothingInstalled>());
    EXPECT_EQ(bareLinux.flushDNSCache(), QStringLiteral("DNS cache flushing is not available on this system."));
    EXPECT_EQ(bareLinux.freePurgeableSpace(10),
              QStringLiteral("Purgeable space release is not available on this system."));
    EXPECT_EQ(bareLinux.getSpotlightStatus(QStringLiteral("/")),
              QStringLiteral("Search indexing is not available on this system."));
    EXPECT_TRUE(runner->ran.empty());
}

TEST(CommandRunner, RunsWithoutAShellAndReportsWhatCannotStart)
{
    const CommandRunner runner;
    EXPECT_EQ(runner.run({QStringLiteral("/bin/echo"), {QStringLiteral("a b;c"), QStringLiteral("$HOME")}}),
              QByteArray("a b;c $HOME\n"));
    try {
        static_cast<void>(runner.run({QStringLiteral("/nonexistent/kestrow-tool"), {}}));
        FAIL() << "launched a missing tool";
    } catch (const ProcessLaunchError& error) {
        EXPECT_TRUE(error.description().startsWith(QStringLiteral("Could not launch /nonexistent/kestrow-tool: ")));
    }
}
