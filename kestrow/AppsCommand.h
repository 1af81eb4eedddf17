#pragma once

#include "CommandLine.h"

#include "apps/AppScanner.h"
#include "apps/InstalledApp.h"
#include "platform/SoftwareRoot.h"

#include <string>
#include <vector>

namespace kestrow::cli {

// Where the `kestrow apps` commands look for applications.
struct AppsLocationOptions {
    std::string home;
    std::vector<std::string> applications; // replaces /Applications and ~/Applications when given
    std::string systemRoot;                // Linux: a folder standing for "/" when given
};

// The help text for this platform: the macOS one, or the Linux one.
[[nodiscard]] std::string perPlatform(const char* macOSText, const char* linuxText);
// Adds --home, the repeatable --applications and, on Linux, --system-root to a command of the
// group.
void addAppsLocationOptions(CLI::App* command, AppsLocationOptions& options);
// The system the options name: the machine's, or the one below --system-root. Throws
// UsageError for a root that isn't a folder.
[[nodiscard]] std::optional<SoftwareRoot> softwareRoot(const AppsLocationOptions& options);
// A scanner over the folders the options name. Throws UsageError for a folder that isn't one.
[[nodiscard]] AppScanner appScanner(const AppsLocationOptions& options);
// The installed applications, sorted by name, with the measuring shown on a terminal.
[[nodiscard]] std::vector<InstalledApp> scanApps(const AppsLocationOptions& options, bool includeSystemApps);

// Registers `kestrow apps` and its `list` command, and returns the group. Each further command
// of the group lives in a file of its own with a setup function that takes the group and adds
// itself to it, `setupAppsFootprintCommand(commandLine, apps)` for instance; Commands.cpp
// calls them in turn with what this returns. Their options take addAppsLocationOptions, their
// NAME-OR-ID goes through AppLookup over scanApps.
CLI::App& setupAppsCommand(CommandLine& commandLine);

} // namespace kestrow::cli
