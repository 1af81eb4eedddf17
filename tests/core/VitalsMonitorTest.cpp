#include "system/VitalsMonitor.h"

#include "platform/DefaultPowerSourceProvider.h"
#include "platform/DefaultThermalStateProvider.h"
#include "platform/LinuxSystemSource.h"
#include "support/JsonWriter.h"

#include "TestHome.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

// Figures set by the test; everything unset reads as a failed platform call.
class FakeSource final : public SystemSource {
public:
    std::int64_t memory = 0;
    std::optional<MemoryPageCounts> pages;
    std::optional<VolumeCapacities> volume;
    std::optional<std::int64_t> systemVolumeUsed;
    std::optional<std::vector<std::optional<PowerSourceDescription>>> sources;

    int activeProcessorCount() const override { return 4; }
    std::int64_t physicalMemory() const override { return memory; }
    std::optional<CPULoadTicks> cpuLoadTicks() const override { return std::nullopt; }
    std::optional<std::int64_t> pageSize() const override { return std::nullopt; }
    std::optional<MemoryPageCounts> memoryPageCounts() const override { return pages; }
    std::optional<VolumeCapacities> volumeCapacities(const QString&) const override { return volume; }
    QStringList systemVolumePaths() const override { return {QStringLiteral("/"), QStringLiteral("/System")}; }
    std::optional<std::int64_t> volumeSpaceUsed(const QString& path) const override
    {
        return path == QLatin1String("/") ? systemVolumeUsed : std::nullopt;
    }
    std::optional<std::vector<std::optional<PowerSourceDescription>>> powerSourceDescriptions() const override
    {
        return sources;
    }
    bool isLowPowerModeEnabled() const override { return false; }
    ThermalState thermalState() const override { return ThermalState::nominal; }
};

MemoryMetrics memoryWithPages(std::int64_t total, std::int64_t usedPages)
{
    auto source = std::make_shared<FakeSource>();
    source->memory = total;
    source->pages = MemoryPageCounts{.appPages = usedPages};
    return VitalsMonitor(source).getMemoryMetrics();
}

} // namespace

TEST(VitalsMonitor, ReadsALinuxMachineFromItsKernelFiles)
{
    const test::TestHome root;
    root.writeFile(QStringLiteral("proc/stat"), QByteArray("cpu  600 100 200 900 100 50 50 0 0 0\n"
                                                           "cpu0 300 50 100 450 50 25 25 0 0 0\n"
                                                           "cpu1 300 50 100 450 50 25 25 0 0 0\nintr 1 2\n"));
    root.writeFile(QStringLiteral("proc/meminfo"),
                   QByteArray("MemTotal:        1000000 kB\nMemFree:          100000 kB\nMemAvailable:     250000 kB\n"
                              "Unevictable:        2000 kB\nSUnreclaim:         10000 kB\nKernelStack:        3000 kB\n"
                              "PageTables:         5000 kB\nZswap:             30000 kB\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/AC/type"), QByteArray("Mains\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/AC/online"), QByteArray("0\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/BAT0/type"), QByteArray("Battery\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/BAT0/status"), QByteArray("Discharging\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/BAT0/capacity"), QByteArray("42\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/BAT0/time_to_empty_now"), QByteArray("5400\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/hidpp_battery_0/type"), QByteArray("Battery\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/hidpp_battery_0/scope"), QByteArray("Device\n"));
    root.writeFile(QStringLiteral("sys/class/thermal/thermal_zone0/temp"), QByteArray("95000\n"));
    root.writeFile(QStringLiteral("sys/class/thermal/thermal_zone0/trip_point_0_type"), QByteArray("passive\n"));
    root.writeFile(QStringLiteral("sys/class/thermal/thermal_zone0/trip_point_0_temp"), QByteArray("90000\n"));
    root.writeFile(QStringLiteral("sys/class/thermal/thermal_zone0/trip_point_1_type"), QByteArray("critical\n"));
    root.writeFile(QStringLiteral("sys/class/thermal/thermal_zone0/trip_point_1_temp"), QByteArray("105000\n"));
    root.writeFile(QStringLiteral("sys/firmware/acpi/platform_profile"), QByteArray("low-power\n"));
    const auto source = std::make_shared<LinuxSystemSource>(root.path());

    const SystemVitals vitals = VitalsMonitor(source).getSystemVitals();
    // user 600; system 200 + irq 50 + softirq 50; idle 900 + iowait 100; of 2000 ticks with nice.
    EXPECT_EQ(vitals.cpu, (CPUMetrics{.totalUsagePercentage = 50,
                                      .userPercentage = 30,
                                      .systemPercentage = 15,
                                      .idlePercentage = 50,
                                      .coreCount = 2}));
    EXPECT_EQ(vitals.memory, (MemoryMetrics{.totalBytes = 1024000000,
                                            .usedBytes = 768000000,
                                            .freeBytes = 256000000,
                                            .appMemoryBytes = 700000 * 1024,
                                            .wiredBytes = 20000 * 1024,
                                            .compressedBytes = 30000 * 1024,
                                            .pressureStatus = MemoryPressureStatus::warning,
                                            .usedPercentage = 75}));
    EXPECT_EQ(vitals.battery, (BatteryMetrics{.percentage = 42, .isACPowered = false, .timeRemainingMinutes = 90}));
    EXPECT_EQ(vitals.thermalState, SystemThermalState::serious);
    EXPECT_EQ(DefaultThermalStateProvider(source).thermalState(), ThermalState::serious);

    const DefaultPowerSourceProvider power(source);
    EXPECT_FALSE(power.isACPowered());
    EXPECT_EQ(power.batteryPercentage(), 42.0);
    EXPECT_TRUE(power.isLowPowerModeEnabled());

    root.writeFile(QStringLiteral("sys/class/power_supply/AC/online"), QByteArray("1\n"));
    root.writeFile(QStringLiteral("sys/class/power_supply/BAT0/status"), QByteArray("Charging\n"));
    EXPECT_TRUE(power.isACPowered());
    EXPECT_EQ(VitalsMonitor(source).getBatteryMetrics(),
              (BatteryMetrics{.percentage = 42, .isCharging = true, .isACPowered = true}));
}

TEST(VitalsMonitor, AMachineWithoutBatteryOrReadableFiguresFallsBack)
{
    const test::TestHome emptyRoot;
    const auto source = std::make_shared<LinuxSystemSource>(emptyRoot.path());
    const SystemVitals vitals = VitalsMonitor(source).getSystemVitals();
    EXPECT_FALSE(vitals.battery);
    EXPECT_EQ(vitals.thermalState, SystemThermalState::nominal);
    EXPECT_EQ(vitals.cpu.idlePercentage, 100.0);
    EXPECT_EQ(vitals.cpu.totalUsagePercentage, 0.0);
    EXPECT_EQ(vitals.memory.usedBytes, vitals.memory.totalBytes / 2);
    EXPECT_EQ(vitals.memory.usedPercentage, 50.0);
    EXPECT_TRUE(DefaultPowerSourceProvider(source).isACPowered());
    EXPECT_FALSE(DefaultPowerSourceProvider(source).batteryPercentage());

    const JsonValue json = vitals.toJson(DateEncoding::iso8601);
    EXPECT_FALSE(json.find(QStringLiteral("battery")));
    QStringList keys;
    for (const auto& [key, value] : json.toObject())
        keys.append(key);
    EXPECT_EQ(keys, (QStringList{QStringLiteral("timestamp"), QStringLiteral("cpu"), QStringLiteral("memory"),
                                 QStringLiteral("disk"), QStringLiteral("thermalState")}));
    EXPECT_TRUE(json.find(QStringLiteral("timestamp"))->toString().endsWith(QLatin1Char('Z')));
}

TEST(VitalsMonitor, ArithmeticKeepsToItsBoundsAndFixedFigures)
{
    EXPECT_EQ(MemoryPressureStatus::forUsedPercentage(85.0), MemoryPressureStatus::warning);
    EXPECT_EQ(MemoryPressureStatus::forUsedPercentage(85.01), MemoryPressureStatus::critical);
    EXPECT_EQ(MemoryPressureStatus::forUsedPercentage(70.0), MemoryPressureStatus::normal);
    const MemoryMetrics overfull = memoryWithPages(4096 * 10, 12);
    EXPECT_EQ(overfull.usedBytes, overfull.totalBytes);
    EXPECT_EQ(overfull.freeBytes, 0);
    EXPECT_EQ(overfull.usedPercentage, 100.0);
    EXPECT_EQ(overfull.pressureStatus, MemoryPressureStatus::critical);
    EXPECT_EQ(memoryWithPages(0, 3).usedPercentage, 0.0);

    auto source = std::make_shared<FakeSource>();
    const VitalsMonitor monitor(source);
    EXPECT_EQ(monitor.getDiskMetrics(QStringLiteral("/Volumes/X")),
              DiskMetrics(QStringLiteral("/"), QStringLiteral("Macintosh HD"), 250000000000, 50000000000, 50000000000,
                          0, 20000000000));
    EXPECT_EQ(monitor.getDiskMetrics(QStringLiteral("/")).usedPercentage, 80.0);

    source->volume = VolumeCapacities{.totalCapacity = 0, .availableCapacity = 0};
    source->systemVolumeUsed = 7;
    const DiskMetrics empty = monitor.getDiskMetrics(QStringLiteral("/data"));
    EXPECT_EQ(empty.usedPercentage, 0.0);
    EXPECT_EQ(empty.volumeName, QStringLiteral("Macintosh HD"));
    EXPECT_EQ(empty.systemBytes, 7);
    source->volume = VolumeCapacities{.totalCapacity = 1000,
                                      .availableCapacity = 300,
                                      .availableCapacityForImportantUsage = 450,
                                      .name = QStringLiteral("Data")};
    const DiskMetrics data = monitor.getDiskMetrics(QStringLiteral("/data"));
    EXPECT_EQ(data.purgeableBytes, 150);
    EXPECT_EQ(data.usedBytes, 700);
    EXPECT_EQ(data.volumeName, QStringLiteral("Data"));

    source->sources = std::vector<std::optional<PowerSourceDescription>>{
        PowerSourceDescription{.currentCapacity = 30, .maxCapacity = 60, .timeToEmpty = -1}};
    EXPECT_EQ(monitor.getBatteryMetrics(), (BatteryMetrics{.percentage = 50}));
    EXPECT_EQ(JsonWriter::compact(monitor.getBatteryMetrics()->toJson()),
              QByteArray(R"({"percentage":50,"isCharging":false,"isACPowered":false})"));
    source->sources->front() = PowerSourceDescription{.maxCapacity = 0};
    EXPECT_EQ(monitor.getBatteryMetrics()->percentage, 100.0);
    source->sources->front().reset();
    EXPECT_FALSE(monitor.getBatteryMetrics());
}
