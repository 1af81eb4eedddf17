#include "StartupCommand.h"

#include "support/JsonWriter.h"
#include "system/StartupManager.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace kestrow::cli {

namespace {

struct StartupOptions {
    std::string home;
    bool json = false;
    std::string item;
};

QString table(const std::vector<StartupItem>& items)
{
    using Row = std::array<QString, 6>;
    std::vector<Row> rows{{QStringLiteral("NAME"), QStringLiteral("TYPE"), QStringLiteral("STATUS"),
                           QStringLiteral("IMPACT"), QStringLiteral("EXECUTABLE"), QStringLiteral("FILE")}};
    for (const StartupItem& item : items)
        rows.push_back({item.name, item.type.displayName(), item.status.rawValue(), item.impact.rawValue(),
                        item.targetExecutablePath.value_or(QStringLiteral("-")),
                        item.fileURL.value_or(QStringLiteral("-"))});
    std::array<qsizetype, 6> widths{};
    for (const Row& row : rows)
        for (size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    QString out;
    for (const Row& row : rows) {
        QString line;
        for (size_t column = 0; column + 1 < row.size(); ++column)
            line += row[column].leftJustified(widths[column]) + QStringLiteral("  ");
        out += line + row.back() + QLatin1Char('\n');
    }
    const auto disabled = std::count_if(items.begin(), items.end(),
                                        [](const StartupItem& item) { return item.status == StartupStatus::disabled; });
    const auto orphans = std::count_if(items.begin(), items.end(),
                                       [](const StartupItem& item) { return item.status == StartupStatus::orphan; });
    out += QStringLiteral("\n%1 launch items: %2 disabled, %3 whose program is missing.\n")
               .arg(items.size())
               .arg(disabled)
               .arg(orphans);
    return out;
}

int runList(const StartupOptions& options)
{
    const StartupManager manager(StartupLocations::standard(resolveHome(options.home)));
    const std::vector<StartupItem> items = manager.listItems();
    if (options.json) {
        JsonValue::Array array;
        for (const StartupItem& item : items)
            array.push_back(item.toJson());
        printOut(JsonWriter::write(array, {.pretty = true}) + '\n');
    } else {
        printOut(table(items));
    }
    return exitSuccess;
}

// The one item the argument names by its name, its label or its file.
StartupItem findItem(const std::vector<StartupItem>& items, const std::string& argument)
{
    const QString given = pathArgument(argument);
    std::vector<StartupItem> matches;
    std::copy_if(items.begin(), items.end(), std::back_inserter(matches), [&](const StartupItem& item) {
        return item.name == given || item.label == given || item.fileURL == given;
    });
    if (matches.size() == 1)
        return matches.front();
    if (matches.empty())
        throw UsageError("'" + argument +
                         "': no launch item has this name, label or file; `kestrow startup list` "
                         "shows them.");
    QStringList candidates;
    for (const StartupItem& item : matches)
        candidates.append(item.label + QStringLiteral(" (") + item.fileURL.value_or(QStringLiteral("-")) +
                          QLatin1Char(')'));
    throw UsageError("'" + argument + "' names " + std::to_string(matches.size()) + " launch items: " +
                     candidates.join(QStringLiteral(", ")).toStdString() + ". Give its label or its file instead.");
}

int runSwitch(const StartupOptions& options, bool enable)
{
    const StartupManager manager(StartupLocations::standard(resolveHome(options.home)));
    const StartupItem item = findItem(manager.listItems(), options.item);
    const QString state = enable ? QStringLiteral("enabled") : QStringLiteral("disabled");
    if (item.isEnabled == enable) {
        printOut(QStringLiteral("%1 is already %2; nothing was changed.\n").arg(item.label, state));
        return exitSuccess;
    }
    const QString changed = manager.toggle(item, enable);
    printOut(QStringLiteral("%1 %2 (%3).\n")
                 .arg(enable ? QStringLiteral("Enabled") : QStringLiteral("Disabled"), item.label, changed));
    return exitSuccess;
}

CLI::App* addStartupSubcommand(CommandLine& commandLine, CLI::App* startup, const char* name, const char* help,
                               std::shared_ptr<StartupOptions> options, std::function<int(const StartupOptions&)> run)
{
    CLI::App* command = startup->add_subcommand(name, help);
    addHomeOption(command, options->home);
    commandLine.onRun(command, [options, run = std::move(run)] { return run(*options); });
    return command;
}

void addSwitchSubcommand(CommandLine& commandLine, CLI::App* startup, bool enable)
{
    auto options = std::make_shared<StartupOptions>();
    CLI::App* command =
        addStartupSubcommand(commandLine, startup, enable ? "enable" : "disable",
                             enable ? "Let a disabled item start again" : "Stop an item from starting; it stays listed",
                             options, [enable](const StartupOptions& given) { return runSwitch(given, enable); });
    command->add_option("item", options->item, "The item's name, label or file, as `list` shows them")
        ->required()
        ->type_name("NAME-OR-LABEL");
}

} // namespace

void setupStartupCommand(CommandLine& commandLine)
{
    CLI::App* startup = commandLine.app().add_subcommand(
        "startup", "List what starts with your session or the machine (autostart entries, systemd units, launchd "
                   "jobs), and turn items off or on.");
    startup->require_subcommand(1);
    auto list = std::make_shared<StartupOptions>();
    addJsonFlag(addStartupSubcommand(commandLine, startup, "list",
                                     "List every launch item, highest impact first: name, type, status, impact, "
                                     "program, file",
                                     list, runList),
                list->json);
    addSwitchSubcommand(commandLine, startup, false);
    addSwitchSubcommand(commandLine, startup, true);
}

} // namespace kestrow::cli
