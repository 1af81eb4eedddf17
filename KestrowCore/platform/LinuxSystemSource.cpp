#include "platform/LinuxSystemSource.h"

#include "platform/PathText.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStorageInfo>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <thread>

namespace kestrow {

namespace {

std::optional<QByteArray> contents(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

// A sysfs attribute: one value, trimmed.
std::optional<QString> attribute(const QString& folder, const QString& name)
{
    const auto text = contents(PathText::appending(folder, name));
    if (!text)
        return std::nullopt;
    return QString::fromUtf8(text->trimmed());
}

std::optional<std::int64_t> numericAttribute(const QString& folder, const QString& name)
{
    const auto text = attribute(folder, name);
    if (!text)
        return std::nullopt;
    bool ok = false;
    const qlonglong value = text->toLongLong(&ok);
    return ok ? std::optional<std::int64_t>(value) : std::nullopt;
}

QStringList subfolders(const QString& folder, const QStringList& nameFilters = {})
{
    return QDir(folder).entryList(nameFilters, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

// /proc/meminfo as key to kibibytes.
QHash<QByteArray, std::int64_t> parseMeminfo(const QByteArray& text)
{
    QHash<QByteArray, std::int64_t> values;
    for (const QByteArray& line : text.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        const QList<QByteArray> fields = line.mid(colon + 1).simplified().split(' ');
        bool ok = false;
        const qlonglong value = fields.value(0).toLongLong(&ok);
        if (ok)
            values.insert(line.left(colon), value);
    }
    return values;
}

std::optional<std::int64_t> ratioPercent(std::optional<std::int64_t> now, std::optional<std::int64_t> full)
{
    if (!now || !full || *full <= 0)
        return std::nullopt;
    return std::llround(static_cast<double>(*now) * 100.0 / static_cast<double>(*full));
}

std::optional<std::int64_t> minutesLeft(std::optional<std::int64_t> stored, std::optional<std::int64_t> rate)
{
    if (!stored || !rate || *rate <= 0)
        return std::nullopt;
    return *stored * 60 / *rate;
}

// One battery in the platform's terms. `adapterOnline` is set when a mains or USB adapter
// reports itself online, empty when the machine lists no adapter at all.
PowerSourceDescription describeBattery(const QString& folder, std::optional<bool> adapterOnline)
{
    const QString status = attribute(folder, QStringLiteral("status")).value_or(QString());
    const bool discharging = status == QLatin1String("Discharging");
    const bool fed = status == QLatin1String("Charging") || status == QLatin1String("Full") ||
                     status == QLatin1String("Not charging");

    PowerSourceDescription description;
    if (adapterOnline.value_or(false) || (!discharging && fed))
        description.powerSourceState = QStringLiteral("AC Power");
    else if (discharging || adapterOnline)
        description.powerSourceState = QStringLiteral("Battery Power");

    auto percent = numericAttribute(folder, QStringLiteral("capacity"));
    if (!percent)
        percent = ratioPercent(numericAttribute(folder, QStringLiteral("energy_now")),
                               numericAttribute(folder, QStringLiteral("energy_full")));
    if (!percent)
        percent = ratioPercent(numericAttribute(folder, QStringLiteral("charge_now")),
                               numericAttribute(folder, QStringLiteral("charge_full")));
    if (percent) {
        description.currentCapacity = std::clamp<std::int64_t>(*percent, 0, 100);
        description.maxCapacity = 100;
    }
    description.isCharging = status == QLatin1String("Charging");

    if (discharging) {
        if (const auto seconds = numericAttribute(folder, QStringLiteral("time_to_empty_now")))
            description.timeToEmpty = *seconds / 60;
        else if (const auto byEnergy = minutesLeft(numericAttribute(folder, QStringLiteral("energy_now")),
                                                   numericAttribute(folder, QStringLiteral("power_now"))))
            description.timeToEmpty = byEnergy;
        else
            description.timeToEmpty = minutesLeft(numericAttribute(folder, QStringLiteral("charge_now")),
                                                  numericAttribute(folder, QStringLiteral("current_now")));
    }
    return description;
}

// The state a trip point of this kind stands for once the zone has reached it: fans running
// ("active") is fair, the kernel throttling ("passive") is serious, "hot" and "critical"
// (shutdown ahead) are critical.
std::optional<ThermalState> tripState(const QString& type)
{
    if (type == QLatin1String("active"))
        return ThermalState::fair;
    if (type == QLatin1String("passive"))
        return ThermalState::serious;
    if (type == QLatin1String("hot") || type == QLatin1String("critical"))
        return ThermalState::critical;
    return std::nullopt;
}

} // namespace

LinuxSystemSource::LinuxSystemSource(QString root)
    : m_root(std::move(root))
{
}

QString LinuxSystemSource::file(const QString& path) const
{
    return PathText::appending(m_root, path);
}

int LinuxSystemSource::activeProcessorCount() const
{
    int count = 0;
    if (const auto stat = contents(file(QStringLiteral("proc/stat")))) {
        for (const QByteArray& line : stat->split('\n'))
            if (line.startsWith("cpu") && line.size() > 3 && std::isdigit(static_cast<unsigned char>(line[3])))
                ++count;
    }
    return count > 0 ? count : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

std::int64_t LinuxSystemSource::physicalMemory() const
{
    if (const auto text = contents(file(QStringLiteral("proc/meminfo")))) {
        const auto total = parseMeminfo(*text).value("MemTotal", 0);
        if (total > 0)
            return total * 1024;
    }
    return static_cast<std::int64_t>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
}

std::optional<CPULoadTicks> LinuxSystemSource::cpuLoadTicks() const
{
    const auto text = contents(file(QStringLiteral("proc/stat")));
    if (!text)
        return std::nullopt;
    for (const QByteArray& line : text->split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.value(0) != "cpu")
            continue;
        if (fields.size() < 5)
            return std::nullopt;
        // user nice system idle iowait irq softirq steal (guest time is already in user and nice)
        std::uint64_t ticks[8] = {};
        for (int i = 0; i < 8 && i + 1 < fields.size(); ++i)
            ticks[i] = fields[i + 1].toULongLong();
        // Waiting for input counts as idle and interrupt work as system; time taken by the
        // hypervisor (steal) belongs to no category, like nice time.
        return CPULoadTicks{.user = ticks[0],
                            .system = ticks[2] + ticks[5] + ticks[6],
                            .idle = ticks[3] + ticks[4],
                            .nice = ticks[1] + ticks[7]};
    }
    return std::nullopt;
}

std::optional<std::int64_t> LinuxSystemSource::pageSize() const
{
    // /proc/meminfo counts in kibibytes; taking that as the page keeps its figures exact.
    return 1024;
}

std::optional<MemoryPageCounts> LinuxSystemSource::memoryPageCounts() const
{
    const auto text = contents(file(QStringLiteral("proc/meminfo")));
    if (!text)
        return std::nullopt;
    const auto values = parseMeminfo(*text);
    if (!values.contains("MemTotal"))
        return std::nullopt;
    std::int64_t available = 0;
    if (values.contains("MemAvailable"))
        available = values.value("MemAvailable");
    else if (values.contains("MemFree"))
        available = values.value("MemFree") + values.value("Buffers") + values.value("Cached");
    else
        return std::nullopt;

    // In use is what the kernel could not hand out at once (total less available). Of that,
    // wired is the kernel's own unreclaimable memory and what may never be swapped out;
    // compressed is the zswap pool; the rest belongs to processes.
    const std::int64_t used = std::max<std::int64_t>(0, values.value("MemTotal") - available);
    const std::int64_t wired = std::min(used, values.value("SUnreclaim") + values.value("KernelStack") +
                                                  values.value("PageTables") + values.value("Unevictable"));
    const std::int64_t compressed = std::min(used - wired, values.value("Zswap"));
    return MemoryPageCounts{.appPages = used - wired - compressed, .wiredPages = wired, .compressedPages = compressed};
}

std::optional<VolumeCapacities> LinuxSystemSource::volumeCapacities(const QString& volumePath) const
{
    const QStorageInfo volume(file(volumePath));
    if (!volume.isValid() || !volume.isReady())
        return std::nullopt;
    QString name = volume.name();
    if (name.isEmpty())
        name = PathText::lastComponent(QString::fromLocal8Bit(volume.device()));
    // Linux keeps no purgeable space, so there is no separate figure for important use.
    return VolumeCapacities{.totalCapacity = volume.bytesTotal(),
                            .availableCapacity = volume.bytesAvailable(),
                            .availableCapacityForImportantUsage = std::nullopt,
                            .name = name.isEmpty() ? std::nullopt : std::optional<QString>(name)};
}

QStringList LinuxSystemSource::systemVolumePaths() const
{
    // The operating system usually shares its volume with the users' data; only volumes of its
    // own are counted, and a machine with none gets the caller's fixed figure.
    return {QStringLiteral("/usr"), QStringLiteral("/boot"), QStringLiteral("/boot/efi")};
}

std::optional<std::int64_t> LinuxSystemSource::volumeSpaceUsed(const QString& volumePath) const
{
    const QString path = QDir::cleanPath(file(volumePath));
    const QStorageInfo volume(path);
    if (!volume.isValid() || !volume.isReady() || QDir::cleanPath(volume.rootPath()) != path)
        return std::nullopt;
    return volume.bytesTotal() - volume.bytesFree();
}

std::optional<std::vector<std::optional<PowerSourceDescription>>> LinuxSystemSource::powerSourceDescriptions() const
{
    const QString supplies = file(QStringLiteral("sys/class/power_supply"));
    std::optional<bool> adapterOnline;
    QStringList batteries;
    for (const QString& name : subfolders(supplies)) {
        const QString folder = PathText::appending(supplies, name);
        const QString type = attribute(folder, QStringLiteral("type")).value_or(QString());
        if (type == QLatin1String("Mains") || type == QLatin1String("USB") || type == QLatin1String("Wireless")) {
            adapterOnline = adapterOnline.value_or(false) || numericAttribute(folder, QStringLiteral("online")) == 1;
        } else if (type == QLatin1String("Battery") || type == QLatin1String("UPS")) {
            // Batteries of mice and headsets ("Device" scope) do not power the machine.
            if (attribute(folder, QStringLiteral("scope")) != QStringLiteral("Device") &&
                numericAttribute(folder, QStringLiteral("present")).value_or(1) != 0)
                batteries.append(folder);
        }
    }
    std::vector<std::optional<PowerSourceDescription>> descriptions;
    for (const QString& folder : batteries)
        descriptions.emplace_back(describeBattery(folder, adapterOnline));
    return descriptions;
}

bool LinuxSystemSource::isLowPowerModeEnabled() const
{
    if (attribute(file(QStringLiteral("sys/firmware/acpi")), QStringLiteral("platform_profile")) ==
        QStringLiteral("low-power"))
        return true;
    const auto state = contents(file(QStringLiteral("var/lib/power-profiles-daemon/state.ini")));
    if (!state)
        return false;
    for (const QByteArray& line : state->split('\n'))
        if (line.trimmed() == "Profile=power-saver")
            return true;
    return false;
}

ThermalState LinuxSystemSource::thermalState() const
{
    const QString zones = file(QStringLiteral("sys/class/thermal"));
    ThermalState state = ThermalState::nominal;
    for (const QString& zoneName : subfolders(zones, {QStringLiteral("thermal_zone*")})) {
        const QString zone = PathText::appending(zones, zoneName);
        const auto temperature = numericAttribute(zone, QStringLiteral("temp"));
        if (!temperature)
            continue;
        const QStringList tripTypes =
            QDir(zone).entryList({QStringLiteral("trip_point_*_type")}, QDir::Files | QDir::System);
        for (const QString& typeFile : tripTypes) {
            const QString trip = typeFile.chopped(int(sizeof("_type") - 1));
            const auto kind = tripState(attribute(zone, typeFile).value_or(QString()));
            const auto tripTemperature = numericAttribute(zone, trip + QStringLiteral("_temp"));
            // A trip point at or below zero is switched off.
            if (kind && tripTemperature && *tripTemperature > 0 && *temperature >= *tripTemperature)
                state = std::max(state, *kind);
        }
    }
    return state;
}

} // namespace kestrow
