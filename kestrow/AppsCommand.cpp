#include "AppsCommand.h"

#include "ProgressLine.h"

#include "apps/AppArchitecture.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"
#include "platform/PathText.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <QStringList>

#include <memory>

namespace kestrow::cli {

namespace {

struct AppsListOptions {
    AppsLocationOptions location;
    bool all = false;
    bool json = false;
};

QString protectionText(const InstalledApp& app)
{
    if (!app.isProtected)
        return QStringLiteral("no");
    return QStringLiteral("yes: ") +
           app.protectionReason.value_or(QStringLiteral("Protected macOS system application"));
}

QString architectureText(const InstalledApp& app)
{
    const std::optional<AppArchitecture> architecture =
        app.architecture ? AppArchitecture::fromRawValue(*app.architecture) : std::nullopt;
    return architecture ? architecture->displayName() : QStringLiteral("Unknown");
}

QString table(const std::vector<InstalledApp>& apps)
{
    const QStringList header{QStringLiteral("NAME"), QStringLiteral("VERSION"), QStringLiteral("SIZE"),
                             QStringLiteral("ARCHITECTURE"), QStringLiteral("PROTECTED")};
    std::vector<QStringList> rows{header};
    std::int64_t total = 0;
    for (const InstalledApp& app : apps) {
        rows.push_back(
            {app.displayName, app.version, app.formattedBundleSize(), architectureText(app), protectionText(app)});
        total += app.bundleSizeBytes;
    }
    std::vector<qsizetype> widths(static_cast<std::size_t>(header.size()), 0);
    for (const QStringList& row : rows)
        for (qsizetype column = 0; column + 1 < row.size(); ++column)
            widths[static_cast<std::size_t>(column)] =
                std::max(widths[static_cast<std::size_t>(column)], row[column].size());
    QString out;
    for (const QStringList& row : rows) {
        for (qsizetype column = 0; column + 1 < row.size(); ++column) {
            // Sizes line up on the right, as numbers do.
            const qsizetype width = widths[static_cast<std::size_t>(column)];
            out += (column == 2 ? row[column].rightJustified(width) : row[column].leftJustified(width)) +
                   QStringLiteral("  ");
        }
        out += row.last() + QLatin1Char('\n');
    }
    out += QStringLiteral("\n%1 %2, %3 in all.\n")
               .arg(apps.size())
               .arg(apps.size() == 1 ? QStringLiteral("application") : QStringLiteral("applications"),
                    ByteCountFormatter::format(total));
    return out;
}

int runList(const AppsListOptions& options)
{
    const std::vector<InstalledApp> apps = scanApps(options.location, options.all);
    if (options.json) {
        JsonValue::Array array;
        for (const InstalledApp& app : apps)
            array.push_back(app.toJson());
        printOut(JsonWriter::prettySorted(JsonValue(std::move(array))) + '\n');
    } else {
        printOut(table(apps));
    }
    return exitSuccess;
}

} // namespace

std::string perPlatform(const char* macOSText, const char* linuxText)
{
    return currentHostSystem() == HostSystem::gnuLinux ? linuxText : macOSText;
}

void addAppsLocationOptions(CLI::App* command, AppsLocationOptions& options)
{
    addHomeOption(command, options.home);
    command
        ->add_option("--applications", options.applications,
                     perPlatform("Look for applications in this folder instead of /Applications and ~/Applications "
                                 "(repeatable)",
                                 "Look for desktop entries and AppImages in this folder instead of "
                                 "~/.local/share/applications and the AppImage folders (repeatable)"))
        ->type_name("DIR")
        // One folder per occurrence, so that a name after it is not taken for another folder.
        ->allow_extra_args(false);
    if (currentHostSystem() == HostSystem::gnuLinux)
        command
            ->add_option("--system-root", options.systemRoot,
                         "Read the system's desktop entries, package lists, Flatpaks, Snaps and programs below this "
                         "folder instead of the machine's own")
            ->type_name("DIR");
}

namespace {

QString existingFolder(const std::string& given, const char* option)
{
    const QString folder = PathText::removingDotComponents(absoluteFromWorkingFolder(pathArgument(given)));
    bool isDirectory = false;
    if (!FileManager().fileExists(folder, &isDirectory) || !isDirectory)
        throw UsageError(std::string(option) + " " + given + ": no such folder; give an existing folder.");
    return folder;
}

} // namespace

std::optional<SoftwareRoot> softwareRoot(const AppsLocationOptions& options)
{
    if (options.systemRoot.empty())
        return std::nullopt;
    return SoftwareRoot::below(existingFolder(options.systemRoot, "--system-root"));
}

AppScanner appScanner(const AppsLocationOptions& options)
{
    const QString home = resolveHome(options.home);
    std::optional<QStringList> folders;
    if (!options.applications.empty()) {
        folders.emplace();
        for (const std::string& given : options.applications)
            folders->append(existingFolder(given, "--applications"));
    }
    return AppScanner({.applicationsURLs = folders, .homeURL = home, .softwareRoot = softwareRoot(options)});
}

std::vector<InstalledApp> scanApps(const AppsLocationOptions& options, bool includeSystemApps)
{
    const AppScanner scanner = appScanner(options);
    ProgressLine progress;
    return scanner.scanInstalledApps(includeSystemApps, {}, [&progress](std::size_t inspected, std::size_t total) {
        progress.update(QStringLiteral("Measuring applications: %1 of %2").arg(inspected).arg(total));
    });
}

CLI::App& setupAppsCommand(CommandLine& commandLine)
{
    CLI::App* apps = commandLine.app().add_subcommand(
        "apps", "List installed applications, with their size, architecture and whether they may be removed.");
    apps->require_subcommand(1);

    auto list = std::make_shared<AppsListOptions>();
    CLI::App* command = apps->add_subcommand(
        "list", perPlatform("List the applications in /Applications and ~/Applications by name: version, size on "
                            "disk, architecture, and whether the system protects them",
                            "List the applications by name (the desktop entries of ~/.local/share/applications, "
                            "Flatpak and Snap, and the AppImages of ~/Applications, ~/.local/bin, ~/bin and "
                            "~/Downloads): version, size on disk, architecture, and whether they may be removed"));
    command->add_flag("--all", list->all,
                      perPlatform("Include the system's own folders (/System/Applications, its Utilities and "
                                  "/System/Library/CoreServices/Applications)",
                                  "Include the system's own entries (/usr/share/applications and the other data "
                                  "folders of XDG_DATA_DIRS), installed by the package manager"));
    addJsonFlag(command, list->json);
    addAppsLocationOptions(command, list->location);
    commandLine.onRun(command, [list] { return runList(*list); });
    return *apps;
}

} // namespace kestrow::cli
