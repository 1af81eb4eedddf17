#include "AppsFootprintCommand.h"

#include "AppLookup.h"

#include "apps/DependencyResolver.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <memory>

namespace kestrow::cli {

namespace {

struct FootprintOptions {
    AppsLocationOptions location;
    std::string nameOrId;
    bool json = false;
};

int runFootprint(const FootprintOptions& options)
{
    const QString home = resolveHome(options.location.home);
    // The system's applications too: what they leave in the home is worth seeing, even though
    // they cannot be uninstalled from here.
    const AppLookup lookup(scanApps(options.location, true));
    const InstalledApp& app = lookup.find(pathArgument(options.nameOrId));
    const AppFootprint footprint = DependencyResolver({.homeURL = home}).resolveDependencies(app);
    if (options.json)
        printOut(JsonWriter::write(footprint.toJson(DateEncoding::iso8601), {.pretty = true}) + '\n');
    else
        printOut(footprintText(footprint));
    return exitSuccess;
}

} // namespace

QString footprintText(const AppFootprint& footprint)
{
    const InstalledApp& app = footprint.app();
    QString out = app.displayName + QStringLiteral(" (") + app.bundleIdentifier + QStringLiteral(")\n");
    qsizetype locationWidth = 0;
    qsizetype sizeWidth = 0;
    for (const ResolvedDependency& dependency : footprint.dependencies()) {
        locationWidth = std::max(locationWidth, dependency.location.displayName().size());
        sizeWidth = std::max(sizeWidth, ByteCountFormatter::format(dependency.allocatedSizeBytes).size());
    }
    for (const ResolvedDependency& dependency : footprint.dependencies())
        out += QStringLiteral("  ") + dependency.location.displayName().leftJustified(locationWidth) +
               QStringLiteral("  ") +
               ByteCountFormatter::format(dependency.allocatedSizeBytes).rightJustified(sizeWidth) +
               QStringLiteral("  ") + dependency.path + QLatin1Char('\n');
    out += QStringLiteral("\n%1 %2, %3 on disk.\n")
               .arg(footprint.totalItemCount())
               .arg(footprint.totalItemCount() == 1 ? QStringLiteral("item") : QStringLiteral("items"),
                    ByteCountFormatter::format(footprint.totalAllocatedSizeBytes()));
    if (footprint.blockingReason())
        out += QStringLiteral("Cannot be uninstalled: ") + *footprint.blockingReason() + QStringLiteral(".\n");
    return out;
}

void setupAppsFootprintCommand(CommandLine& commandLine, CLI::App& apps)
{
    auto options = std::make_shared<FootprintOptions>();
    CLI::App* command = apps.add_subcommand(
        "footprint",
        perPlatform("Show everything on the disk that belongs to one application: its bundle and the items of "
                    "~/Library named after it, each with its place and size, and what would block an uninstall",
                    "Show everything on the disk that belongs to one application: its program (AppImage, entry and "
                    "icons, Flatpak or Snap) and the items of ~/.config, ~/.local/share, ~/.cache, ~/.local/state, "
                    "~/.var/app, ~/snap and ~/.config/autostart named after it, each with its place and size, and "
                    "what would block an uninstall"));
    command
        ->add_option("NAME-OR-ID", options->nameOrId,
                     "The application's bundle identifier (exactly, else ignoring case) or its name (ignoring case)")
        ->required();
    addJsonFlag(command, options->json);
    addAppsLocationOptions(command, options->location);
    commandLine.onRun(command, [options] { return runFootprint(*options); });
}

} // namespace kestrow::cli
