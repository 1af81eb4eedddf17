#include "SyntheticLinuxSoftware.h"
#include "TestHome.h"

#include "apps/AppScanner.h"
#include "apps/AppUninstaller.h"
#include "apps/AppUninstallerError.h"
#include "apps/DependencyResolver.h"
#include "apps/LeftoversHunter.h"
#include "platform/DesktopApplications.h"

#include <gtest/gtest.h>

#include <map>

using namespace kestrow;
using namespace kestrow::test;

namespace {

struct LinuxMachine {
    TestHome home;
    SyntheticLinuxSoftware software{home};

    [[nodiscard]] AppScanner scanner() const
    {
        return AppScanner({.homeURL = home.path(),
                           .runningAppsProvider = [](const QString& id) { return id == QStringLiteral("htop"); },
                           .maxConcurrentInspections = 2,
                           .host = HostSystem::gnuLinux,
                           .softwareRoot = software.root()});
    }
    [[nodiscard]] DependencyResolver resolver() const
    {
        return DependencyResolver({.homeURL = home.path(), .host = HostSystem::gnuLinux});
    }
};

std::map<QString, InstalledApp> byIdentifier(const std::vector<InstalledApp>& apps)
{
    std::map<QString, InstalledApp> found;
    for (const InstalledApp& app : apps)
        found.emplace(app.bundleIdentifier, app);
    return found;
}

QStringList relativePaths(const AppFootprint& footprint, const TestHome& home)
{
    QStringList paths;
    for (const ResolvedDependency& dependency : footprint.dependencies())
        paths.append(dependency.location.rawValue() + QLatin1Char(' ') + dependency.path.mid(home.path().size() + 1));
    return paths;
}

} // namespace

TEST(LinuxApplications, InventoryOfEntriesFlatpaksSnapsAndAppImages)
{
    const LinuxMachine machine;
    const std::map<QString, InstalledApp> apps = byIdentifier(machine.scanner().scanInstalledApps(false));
    QStringList identifiers;
    for (const auto& [identifier, app] : apps)
        identifiers.append(identifier);
    // The user's entries (the Joplin entry is the AppImage's), the Flatpaks, the Snap and both
    // AppImages; no system entry without --all, and VLC is hidden by the user.
    EXPECT_EQ(identifiers, (QStringList{QStringLiteral("Bitwarden"), QStringLiteral("appimagekit-joplin"),
                                        QStringLiteral("com.spotify.Client"), QStringLiteral("md.obsidian.Obsidian"),
                                        QStringLiteral("mytool"), QStringLiteral("org.gnome.TextEditor"),
                                        QStringLiteral("org.signal.Signal"), QStringLiteral("slack")}));

    const InstalledApp& joplin = apps.at(QStringLiteral("appimagekit-joplin"));
    EXPECT_EQ(joplin.displayName, QStringLiteral("Joplin"));
    EXPECT_EQ(joplin.version, QStringLiteral("2.13.4"));
    EXPECT_EQ(joplin.bundlePath, machine.home.path(QStringLiteral("Applications/Joplin-2.13.4.AppImage")));
    EXPECT_EQ(joplin.executablePath, joplin.bundlePath);
    EXPECT_EQ(joplin.architecture, QStringLiteral("x86_64"));
    EXPECT_EQ(joplin.iconPath,
              machine.home.path(QStringLiteral(".local/share/icons/hicolor/256x256/apps/appimagekit-joplin.png")));
    EXPECT_EQ(joplin.bundleName, QStringLiteral("Joplin"));
    EXPECT_GT(joplin.bundleSizeBytes, 20000);
    EXPECT_FALSE(joplin.isProtected);

    const InstalledApp& bitwarden = apps.at(QStringLiteral("Bitwarden"));
    EXPECT_EQ(bitwarden.version, QStringLiteral("Unknown"));
    EXPECT_EQ(bitwarden.architecture, QStringLiteral("unknown"));
    EXPECT_FALSE(bitwarden.isProtected);

    const InstalledApp& mytool = apps.at(QStringLiteral("mytool"));
    EXPECT_EQ(mytool.bundlePath, machine.home.path(QStringLiteral(".local/share/applications/mytool.desktop")));
    EXPECT_EQ(mytool.executablePath, machine.home.path(QStringLiteral(".local/bin/mytool")));
    EXPECT_FALSE(mytool.isProtected);

    // The user's own entry for the package manager's editor wins over the system's, and is as
    // protected as the program it starts.
    const InstalledApp& editor = apps.at(QStringLiteral("org.gnome.TextEditor"));
    EXPECT_EQ(editor.displayName, QStringLiteral("My Editor"));
    EXPECT_EQ(editor.protectionReason, QStringLiteral("Application resides in protected system directory '/usr'"));

    const InstalledApp& spotify = apps.at(QStringLiteral("com.spotify.Client"));
    EXPECT_EQ(spotify.version, QStringLiteral("1.2.31"));
    EXPECT_EQ(spotify.architecture, QStringLiteral("arm64"));
    EXPECT_EQ(spotify.bundlePath,
              machine.software.rootPath() + QStringLiteral("/var/lib/flatpak/app/com.spotify.Client"));
    EXPECT_TRUE(spotify.isSystemApp);
    EXPECT_EQ(spotify.protectionReason, QStringLiteral("Installed with Flatpak: remove it with `flatpak uninstall "
                                                       "--system com.spotify.Client`; its data can still be swept"));
    EXPECT_EQ(apps.at(QStringLiteral("md.obsidian.Obsidian")).protectionReason,
              QStringLiteral("Installed with Flatpak: remove it with `flatpak uninstall --user md.obsidian.Obsidian`; "
                             "its data can still be swept"));
    const InstalledApp& slack = apps.at(QStringLiteral("slack"));
    EXPECT_EQ(slack.bundlePath, machine.software.rootPath() + QStringLiteral("/snap/slack"));
    EXPECT_EQ(slack.protectionReason,
              QStringLiteral("Installed with Snap: remove it with `snap remove slack`; its data can still be swept"));

    // With the system's: every displayed entry of the system data folder, protected, and
    // running by its program's name; nothing undisplayed, hidden or of another type.
    const std::map<QString, InstalledApp> all = byIdentifier(machine.scanner().scanInstalledApps(true));
    EXPECT_EQ(all.size(), apps.size() + 15);
    EXPECT_FALSE(all.contains(QStringLiteral("python3.11")));
    EXPECT_FALSE(all.contains(QStringLiteral("vlc")));
    EXPECT_FALSE(all.contains(QStringLiteral("debian-doc")));
    const InstalledApp& okular = all.at(QStringLiteral("kde4-okular"));
    EXPECT_TRUE(okular.isProtected);
    EXPECT_EQ(okular.protectionReason, QStringLiteral("Application resides in protected system directory '") +
                                           machine.software.rootPath() + QStringLiteral("/usr/share'"));
    EXPECT_TRUE(all.at(QStringLiteral("htop")).isRunning);
    EXPECT_EQ(all.at(QStringLiteral("code")).protectionReason,
              QStringLiteral("Application resides in protected system directory '/usr'"));

    // Names in the user's language.
    const DesktopApplications german(std::make_shared<const FileManager>(), machine.software.root(),
                                     machine.home.path(), {}, QStringLiteral("de_DE.UTF-8"));
    const std::vector<DesktopApplication> entries = german.entries();
    const auto gimp = std::find_if(entries.begin(), entries.end(), [](const DesktopApplication& entry) {
        return entry.desktopId == QLatin1String("gimp");
    });
    ASSERT_NE(gimp, entries.end());
    EXPECT_EQ(gimp->name, QStringLiteral("GNU-Bildbearbeitungsprogramm"));
    EXPECT_EQ(gimp->program, QStringLiteral("gimp-2.10"));
}

TEST(LinuxApplications, FootprintInTheXdgFoldersAndAnAppImageUninstalledThroughTheTrash)
{
    const LinuxMachine machine;
    const TestHome& home = machine.home;
    home.writeFile(QStringLiteral(".local/state/joplin/window"), 100);
    home.writeFile(QStringLiteral(".local/share/fonts/a.ttf"), 100);
    const std::map<QString, InstalledApp> apps = byIdentifier(machine.scanner().scanInstalledApps(false));
    const InstalledApp& joplin = apps.at(QStringLiteral("appimagekit-joplin"));

    const AppFootprint footprint = machine.resolver().resolveDependencies(joplin);
    EXPECT_EQ(relativePaths(footprint, home),
              (QStringList{QStringLiteral("APPLICATION_BUNDLE Applications/Joplin-2.13.4.AppImage"),
                           QStringLiteral("APPLICATION_BUNDLE .local/share/applications/appimagekit-joplin.desktop"),
                           QStringLiteral("APPLICATION_BUNDLE .local/share/icons/hicolor/128x128/apps/"
                                          "appimagekit-joplin.png"),
                           QStringLiteral("APPLICATION_BUNDLE .local/share/icons/hicolor/256x256/apps/"
                                          "appimagekit-joplin.png"),
                           QStringLiteral("PREFERENCES .config/Joplin"), QStringLiteral("CACHES .cache/joplin"),
                           QStringLiteral("SAVED_APPLICATION_STATE .local/state/joplin"),
                           QStringLiteral("LAUNCH_AGENTS .config/autostart/Joplin.desktop")}));
    EXPECT_TRUE(footprint.canUninstall());

    // A Flatpak's footprint reaches its sandbox's data and says why it stays.
    const AppFootprint spotify = machine.resolver().resolveDependencies(apps.at(QStringLiteral("com.spotify.Client")));
    EXPECT_TRUE(relativePaths(spotify, home).contains(QStringLiteral("CONTAINERS .var/app/com.spotify.Client")));
    EXPECT_TRUE(relativePaths(spotify, home).contains(QStringLiteral("PREFERENCES .config/spotify")));
    EXPECT_FALSE(spotify.canUninstall());

    // Shared names of the desktop never become candidates.
    InstalledApp fonts = joplin;
    fonts.displayName = QStringLiteral("Fonts");
    fonts.bundleIdentifier = QStringLiteral("fonts");
    fonts.bundleName = std::nullopt;
    fonts.iconPath = std::nullopt;
    EXPECT_EQ(relativePaths(machine.resolver().resolveDependencies(fonts), home),
              QStringList{QStringLiteral("APPLICATION_BUNDLE Applications/Joplin-2.13.4.AppImage")});

    const AppUninstaller uninstaller(
        {.dependencyResolver = std::make_shared<const DependencyResolver>(machine.resolver()),
         .runningAppsProvider = [](const QString&) { return false; },
         .homeURL = home.path()});
    EXPECT_THROW((void)uninstaller.uninstall(apps.at(QStringLiteral("com.spotify.Client")), true, {}),
                 AppUninstallerError);
    // Keeping the program keeps its entry and icons too.
    const UninstallSummary dataOnly =
        uninstaller.uninstall(joplin, true, {.includeBundle = false, .includeDependencies = true});
    EXPECT_EQ(dataOnly.deletedPaths.size(), 4);
    const UninstallSummary summary =
        uninstaller.uninstall(joplin, false, {.includeBundle = true, .includeDependencies = true});
    EXPECT_EQ(summary.deletedPaths.size(), 8);
    EXPECT_FALSE(QFile::exists(joplin.bundlePath));
    EXPECT_FALSE(QFile::exists(home.path(QStringLiteral(".local/share/applications/appimagekit-joplin.desktop"))));
    EXPECT_TRUE(QFile::exists(home.trashFilesFolder() + QStringLiteral("/Joplin-2.13.4.AppImage")));
}

TEST(LinuxApplications, LeftoversAreEveryTrueOneWithItsTierAndNothingOwned)
{
    const LinuxMachine machine;
    const SyntheticLinuxSoftware& software = machine.software;
    ASSERT_GE(software.ownedEntries().size(), 60);
    ASSERT_GE(software.leftovers().size(), 10U);

    const LeftoversHunter hunter(
        {.homeURL = machine.home.path(), .host = HostSystem::gnuLinux, .softwareRoot = software.root()});
    QStringList labels;
    const std::vector<AppLeftover> found = hunter.scanForLeftovers(
        machine.scanner().scanInstalledApps(false), [&labels](const QString& label, double) { labels.append(label); });
    std::map<QString, const AppLeftover*> byPath;
    for (const AppLeftover& leftover : found)
        byPath.emplace(leftover.path.mid(machine.home.path().size() + 1), &leftover);
    for (const SyntheticLinuxSoftware::Leftover& expected : software.leftovers()) {
        ASSERT_TRUE(byPath.contains(expected.path)) << expected.path.toStdString();
        EXPECT_EQ(byPath.at(expected.path)->suggestedRiskTier, expected.tier) << expected.path.toStdString();
    }
    QStringList unexpected;
    for (const auto& reported : byPath) {
        const QString& path = reported.first;
        if (std::none_of(software.leftovers().begin(), software.leftovers().end(),
                         [&path](const SyntheticLinuxSoftware::Leftover& expected) { return expected.path == path; }))
            unexpected.append(path);
    }
    EXPECT_TRUE(unexpected.isEmpty()) << unexpected.join(QLatin1Char(' ')).toStdString();

    const AppLeftover& discord = *byPath.at(QStringLiteral(".var/app/com.discordapp.Discord"));
    EXPECT_EQ(discord.location, DependencyLocation::containers);
    EXPECT_EQ(discord.confidence, 0.95);
    EXPECT_EQ(discord.orphanReason,
              QStringLiteral("Sandbox container for uninstalled bundle identifier 'com.discordapp.Discord'."));
    EXPECT_EQ(discord.logicalSizeBytes, 1600);
    EXPECT_EQ(byPath.at(QStringLiteral(".cache/etcher"))->orphanReason,
              QStringLiteral("Cache directory 'etcher' has no corresponding installed application."));
    EXPECT_EQ(byPath.at(QStringLiteral(".cache/org.example.OldViewer"))->confidence, 1.0);
    EXPECT_EQ(byPath.at(QStringLiteral(".config/Atom"))->orphanReason,
              QStringLiteral("Item 'Atom' has no corresponding installed application."));
    EXPECT_EQ(byPath.at(QStringLiteral(".local/share/gedit"))->orphanReason,
              QStringLiteral("Application Support directory 'gedit' has no corresponding installed application."));
    EXPECT_EQ(byPath.at(QStringLiteral(".local/share/com.example.Gone"))->orphanReason,
              QStringLiteral("Orphaned dependency item for uninstalled bundle identifier 'com.example.Gone'."));
    EXPECT_EQ(byPath.at(QStringLiteral(".config/autostart/oldsync.desktop"))->candidateAppName,
              QStringLiteral("oldsync"));
    EXPECT_EQ(labels.size(), 7);
    EXPECT_EQ(labels.at(4), QStringLiteral("Scanning Sandbox Containers"));

    // An empty home holds no leftovers, whatever the system has installed.
    const TestHome empty;
    EXPECT_TRUE(
        LeftoversHunter({.homeURL = empty.path(), .host = HostSystem::gnuLinux, .softwareRoot = software.root()})
            .scanForLeftovers(std::vector<InstalledApp>{})
            .empty());
}
