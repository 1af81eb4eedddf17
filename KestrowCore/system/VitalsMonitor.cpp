#include "system/VitalsMonitor.h"

#include <algorithm>

namespace kestrow {

namespace {

constexpr std::int64_t fallbackSystemVolumeBytes = 20000000000;

double percentOf(std::uint64_t part, std::uint64_t whole)
{
    return static_cast<double>(part) / static_cast<double>(whole) * 100.0;
}

} // namespace

VitalsMonitor::VitalsMonitor(std::shared_ptr<const SystemSource> source)
    : m_source(std::move(source))
{
}

SystemVitals VitalsMonitor::getSystemVitals() const
{
    return SystemVitals{
        .timestamp = QDateTime::currentDateTimeUtc(),
        .cpu = getCPUMetrics(),
        .memory = getMemoryMetrics(),
        .disk = getDiskMetrics(QStringLiteral("/")),
        .battery = getBatteryMetrics(),
        .thermalState = SystemThermalState::fromPlatformValue(static_cast<int>(m_source->thermalState())),
    };
}

CPUMetrics VitalsMonitor::getCPUMetrics() const
{
    CPUMetrics metrics{.coreCount = m_source->activeProcessorCount()};
    const auto ticks = m_source->cpuLoadTicks();
    const std::uint64_t total = ticks ? ticks->user + ticks->system + ticks->idle + ticks->nice : 0;
    if (total == 0)
        return metrics;
    const double idle = percentOf(ticks->idle, total);
    metrics.idlePercentage = std::min(100.0, idle);
    metrics.userPercentage = std::min(100.0, percentOf(ticks->user, total));
    metrics.systemPercentage = std::min(100.0, percentOf(ticks->system, total));
    metrics.totalUsagePercentage = std::clamp(100.0 - idle, 0.0, 100.0);
    return metrics;
}

MemoryMetrics VitalsMonitor::getMemoryMetrics() const
{
    const std::int64_t total = m_source->physicalMemory();
    const std::int64_t pageSize = m_source->pageSize().value_or(4096);
    const auto pages = m_source->memoryPageCounts();
    if (!pages)
        return MemoryMetrics{
            .totalBytes = total, .usedBytes = total / 2, .freeBytes = total / 2, .usedPercentage = 50.0};

    const std::int64_t app = pages->appPages * pageSize;
    const std::int64_t wired = pages->wiredPages * pageSize;
    const std::int64_t compressed = pages->compressedPages * pageSize;
    const std::int64_t used = app + wired + compressed;
    const double percentage = total == 0 ? 0.0 : static_cast<double>(used) / static_cast<double>(total) * 100.0;
    return MemoryMetrics{
        .totalBytes = total,
        .usedBytes = std::min(total, used),
        .freeBytes = std::max<std::int64_t>(0, total - used),
        .appMemoryBytes = app,
        .wiredBytes = wired,
        .compressedBytes = compressed,
        .pressureStatus = MemoryPressureStatus::forUsedPercentage(percentage),
        .usedPercentage = std::clamp(percentage, 0.0, 100.0),
    };
}

DiskMetrics VitalsMonitor::getDiskMetrics(const QString& volumeURL) const
{
    const auto volume = m_source->volumeCapacities(volumeURL);
    if (!volume)
        return DiskMetrics(QStringLiteral("/"), QStringLiteral("Macintosh HD"), 250000000000, 50000000000, 50000000000,
                           0, fallbackSystemVolumeBytes);
    const std::int64_t free = volume->availableCapacity.value_or(0);
    const std::int64_t available = volume->availableCapacityForImportantUsage.value_or(free);
    return DiskMetrics(volumeURL, volume->name.value_or(QStringLiteral("Macintosh HD")),
                       volume->totalCapacity.value_or(0), free, available, available - free, getSystemVolumeBytes());
}

std::optional<BatteryMetrics> VitalsMonitor::getBatteryMetrics() const
{
    const auto sources = m_source->powerSourceDescriptions();
    if (!sources || sources->empty() || !sources->front())
        return std::nullopt;
    const PowerSourceDescription& first = *sources->front();
    const auto current = static_cast<double>(first.currentCapacity.value_or(100));
    const auto maximum = static_cast<double>(first.maxCapacity.value_or(100));
    std::optional<std::int64_t> minutes = first.timeToEmpty;
    if (minutes == -1)
        minutes.reset();
    return BatteryMetrics{
        .percentage = maximum < 1 ? 100.0 : current / maximum * 100.0,
        .isCharging = first.isCharging.value_or(false),
        .isACPowered = first.powerSourceState == QStringLiteral("AC Power"),
        .timeRemainingMinutes = minutes,
    };
}

std::int64_t VitalsMonitor::getSystemVolumeBytes() const
{
    std::int64_t sum = 0;
    for (const QString& volume : m_source->systemVolumePaths())
        sum += m_source->volumeSpaceUsed(volume).value_or(0);
    return sum < 1 ? fallbackSystemVolumeBytes : sum;
}

} // namespace kestrow
