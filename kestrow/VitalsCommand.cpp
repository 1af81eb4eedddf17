#include "VitalsCommand.h"

#include "cleanup/TrashLedger.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"
#include "system/VitalsMonitor.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <optional>
#include <thread>
#include <unistd.h>

namespace kestrow::cli {

namespace {

struct VitalsOptions {
    std::string home;
    bool json = false;
    std::optional<double> watchSeconds;
};

QString percent(double value)
{
    return QString::number(std::lround(value)) + QLatin1Char('%');
}

QString bytes(std::int64_t count)
{
    return ByteCountFormatter::format(count);
}

QString timeLeft(std::int64_t minutes)
{
    if (minutes < 60)
        return QStringLiteral("%1 min left").arg(minutes);
    return QStringLiteral("%1 h %2 min left").arg(minutes / 60).arg(minutes % 60);
}

// What waits in the Trash, beside the disk's free space: it is freed only when the Trash is
// emptied. Left out when the audit log, which tells Kestrow's part, cannot be read.
QString trashLine(const QString& home)
{
    TrashHoldings holdings;
    try {
        holdings =
            TrashLedger({.auditLogger = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home})}).read();
    } catch (const AuditLoggerError&) {
        return {};
    }
    const std::int64_t total = holdings.allocatedBytes() + holdings.foreignBytes;
    QString line = QStringLiteral("Trash    %1 waiting to be emptied").arg(bytes(total));
    if (holdings.itemsCount() > 0)
        line += QStringLiteral(", %1 of it from Kestrow's runs (`kestrow trash empty` frees that)")
                    .arg(bytes(holdings.allocatedBytes()));
    return line + QLatin1Char('\n');
}

QString readable(const SystemVitals& vitals, const QString& home)
{
    const CPUMetrics& cpu = vitals.cpu;
    const MemoryMetrics& memory = vitals.memory;
    const DiskMetrics& disk = vitals.disk;
    QString out;
    out += QStringLiteral("CPU      %1 busy since boot (user %2, system %3), %4 cores\n")
               .arg(percent(cpu.totalUsagePercentage), percent(cpu.userPercentage), percent(cpu.systemPercentage))
               .arg(cpu.coreCount);
    out += QStringLiteral("Memory   %1 of %2 used (%3), pressure %4\n")
               .arg(memory.formattedUsedBytes(), memory.formattedTotalBytes(), percent(memory.usedPercentage),
                    memory.pressureStatus.rawValue());
    out += QStringLiteral("         apps %1, wired %2, compressed %3\n")
               .arg(bytes(memory.appMemoryBytes), bytes(memory.wiredBytes), bytes(memory.compressedBytes));
    out += QStringLiteral("Disk     %1 (%2): %3 free of %4 (%5 used)\n")
               .arg(disk.volumePath, disk.volumeName, disk.formattedFreeBytes(), bytes(disk.totalBytes),
                    percent(disk.usedPercentage));
    if (disk.purgeableBytes > 0)
        out += QStringLiteral("         %1 available with purgeable space\n").arg(disk.formattedAvailableBytes());
    out += trashLine(home);
    if (const auto& battery = vitals.battery) {
        QString state = battery->isCharging
                            ? QStringLiteral("charging")
                            : (battery->isACPowered ? QStringLiteral("on AC power") : QStringLiteral("on battery"));
        if (battery->timeRemainingMinutes && !battery->isACPowered)
            state += QStringLiteral(", ") + timeLeft(*battery->timeRemainingMinutes);
        out += QStringLiteral("Battery  %1, %2\n").arg(percent(battery->percentage), state);
    }
    out += QStringLiteral("Thermal  %1\n").arg(vitals.thermalState.rawValue());
    return out;
}

int runVitals(const VitalsOptions& options)
{
    if (options.watchSeconds && !(*options.watchSeconds > 0))
        throw UsageError("--watch must be a number of seconds above zero, e.g. --watch 2.");
    const QString home = resolveHome(options.home);
    const VitalsMonitor monitor;
    if (!options.watchSeconds) {
        const SystemVitals vitals = monitor.getSystemVitals();
        if (options.json)
            printOut(JsonWriter::write(vitals.toJson(DateEncoding::iso8601), {.pretty = true}) + '\n');
        else
            printOut(readable(vitals, home));
        return exitSuccess;
    }

    // Until interrupted. On a terminal each sample replaces the last one in place.
    const bool inPlace = !options.json && ::isatty(STDOUT_FILENO) == 1;
    const auto interval = std::chrono::duration<double>(*options.watchSeconds);
    qsizetype linesShown = 0;
    for (;;) {
        const SystemVitals vitals = monitor.getSystemVitals();
        if (options.json) {
            printOut(JsonWriter::compact(vitals.toJson(DateEncoding::iso8601)) + '\n');
        } else {
            const QString text = readable(vitals, home);
            if (inPlace && linesShown > 0)
                printOut(QStringLiteral("\x1b[%1A\x1b[J").arg(linesShown));
            printOut(inPlace ? text : text + QLatin1Char('\n'));
            linesShown = text.count(QLatin1Char('\n'));
        }
        std::fflush(stdout);
        std::this_thread::sleep_for(interval);
    }
}

} // namespace

void setupVitalsCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<VitalsOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "vitals", "Show processor load, memory and its pressure, the root disk, the battery (when there is one) "
                  "and the thermal state; beside the disk, what waits in the Trash.");
    addJsonFlag(command, options->json);
    addHomeOption(command, options->home);
    command
        ->add_option("--watch", options->watchSeconds,
                     "Take a new sample every this many seconds until interrupted; with --json, one JSON "
                     "document per line")
        ->type_name("SECONDS");
    commandLine.onRun(command, [options] { return runVitals(*options); });
}

} // namespace kestrow::cli
