#include "platform/MacSystemSource.h"

#include "platform/CFOwned.h"
#include "platform/NativePath.h"

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/ps/IOPowerSources.h>
#include <mach/mach.h>
#include <objc/message.h>
#include <objc/runtime.h>
#include <sys/attr.h>

namespace kestrow {

namespace {

// NSProcessInfo's answers, reached through the Objective-C runtime so that this file stays C++.
template <typename Result> Result processInfoValue(const char* selector)
{
    const auto sendForObject = reinterpret_cast<id (*)(id, SEL)>(&objc_msgSend);
    const id processInfo =
        sendForObject(reinterpret_cast<id>(objc_getClass("NSProcessInfo")), sel_registerName("processInfo"));
    const auto send = reinterpret_cast<Result (*)(id, SEL)>(&objc_msgSend);
    return send(processInfo, sel_registerName(selector));
}

std::optional<std::int64_t> numberValue(CFTypeRef value)
{
    if (!value || CFGetTypeID(value) != CFNumberGetTypeID())
        return std::nullopt;
    std::int64_t number = 0;
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &number);
    return number;
}

std::optional<QString> stringValue(CFTypeRef value)
{
    if (!value || CFGetTypeID(value) != CFStringGetTypeID())
        return std::nullopt;
    return QString::fromCFString(static_cast<CFStringRef>(value));
}

std::optional<bool> booleanValue(CFTypeRef value)
{
    if (!value || CFGetTypeID(value) != CFBooleanGetTypeID())
        return std::nullopt;
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
}

struct __attribute__((aligned(4), packed)) SpaceUsedReply {
    u_int32_t length;
    off_t spaceUsed;
};

} // namespace

int MacSystemSource::activeProcessorCount() const
{
    return static_cast<int>(processInfoValue<unsigned long>("activeProcessorCount"));
}

std::int64_t MacSystemSource::physicalMemory() const
{
    return static_cast<std::int64_t>(processInfoValue<unsigned long long>("physicalMemory"));
}

std::optional<CPULoadTicks> MacSystemSource::cpuLoadTicks() const
{
    host_cpu_load_info_data_t load{};
    mach_msg_type_number_t count = HOST_CPU_LOAD_INFO_COUNT;
    if (host_statistics(mach_host_self(), HOST_CPU_LOAD_INFO, reinterpret_cast<host_info_t>(&load), &count) !=
        KERN_SUCCESS)
        return std::nullopt;
    return CPULoadTicks{.user = load.cpu_ticks[CPU_STATE_USER],
                        .system = load.cpu_ticks[CPU_STATE_SYSTEM],
                        .idle = load.cpu_ticks[CPU_STATE_IDLE],
                        .nice = load.cpu_ticks[CPU_STATE_NICE]};
}

std::optional<std::int64_t> MacSystemSource::pageSize() const
{
    vm_size_t size = 0;
    if (host_page_size(mach_host_self(), &size) != KERN_SUCCESS)
        return std::nullopt;
    return static_cast<std::int64_t>(size);
}

std::optional<MemoryPageCounts> MacSystemSource::memoryPageCounts() const
{
    vm_statistics64_data_t statistics{};
    mach_msg_type_number_t count = HOST_VM_INFO64_COUNT;
    if (host_statistics64(mach_host_self(), HOST_VM_INFO64, reinterpret_cast<host_info64_t>(&statistics), &count) !=
        KERN_SUCCESS)
        return std::nullopt;
    return MemoryPageCounts{
        .appPages = static_cast<std::int64_t>(statistics.active_count) + statistics.inactive_count,
        .wiredPages = statistics.wire_count,
        .compressedPages = statistics.compressor_page_count,
    };
}

std::optional<VolumeCapacities> MacSystemSource::volumeCapacities(const QString& volumePath) const
{
    const QByteArray path = NativePath::encode(volumePath);
    const CFOwned url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.constData()), path.size(), true));
    if (!url.get())
        return std::nullopt;
    const void* keys[] = {kCFURLVolumeTotalCapacityKey, kCFURLVolumeAvailableCapacityKey,
                          kCFURLVolumeAvailableCapacityForImportantUsageKey, kCFURLVolumeNameKey};
    const CFOwned keyList(CFArrayCreate(kCFAllocatorDefault, keys, 4, &kCFTypeArrayCallBacks));
    const CFOwned values(CFURLCopyResourcePropertiesForKeys(static_cast<CFURLRef>(url.get()),
                                                            static_cast<CFArrayRef>(keyList.get()), nullptr));
    if (!values.get())
        return std::nullopt;
    const auto dictionary = static_cast<CFDictionaryRef>(values.get());
    return VolumeCapacities{
        .totalCapacity = numberValue(CFDictionaryGetValue(dictionary, kCFURLVolumeTotalCapacityKey)),
        .availableCapacity = numberValue(CFDictionaryGetValue(dictionary, kCFURLVolumeAvailableCapacityKey)),
        .availableCapacityForImportantUsage =
            numberValue(CFDictionaryGetValue(dictionary, kCFURLVolumeAvailableCapacityForImportantUsageKey)),
        .name = stringValue(CFDictionaryGetValue(dictionary, kCFURLVolumeNameKey)),
    };
}

QStringList MacSystemSource::systemVolumePaths() const
{
    return {QStringLiteral("/"), QStringLiteral("/System/Volumes/VM"), QStringLiteral("/System/Volumes/Preboot")};
}

std::optional<std::int64_t> MacSystemSource::volumeSpaceUsed(const QString& volumePath) const
{
    attrlist request{};
    request.bitmapcount = ATTR_BIT_MAP_COUNT;
    request.volattr = ATTR_VOL_INFO | ATTR_VOL_SPACEUSED;
    SpaceUsedReply reply{};
    if (getattrlist(NativePath::encode(volumePath).constData(), &request, &reply, sizeof reply, 0) != 0)
        return std::nullopt;
    return static_cast<std::int64_t>(reply.spaceUsed);
}

std::optional<std::vector<std::optional<PowerSourceDescription>>> MacSystemSource::powerSourceDescriptions() const
{
    const CFOwned info(IOPSCopyPowerSourcesInfo());
    if (!info.get())
        return std::nullopt;
    const CFOwned list(IOPSCopyPowerSourcesList(info.get()));
    if (!list.get())
        return std::nullopt;
    const auto sources = static_cast<CFArrayRef>(list.get());
    std::vector<std::optional<PowerSourceDescription>> descriptions;
    for (CFIndex index = 0; index < CFArrayGetCount(sources); ++index) {
        const CFDictionaryRef description =
            IOPSGetPowerSourceDescription(info.get(), CFArrayGetValueAtIndex(sources, index));
        if (!description) {
            descriptions.emplace_back();
            continue;
        }
        descriptions.emplace_back(PowerSourceDescription{
            .powerSourceState = stringValue(CFDictionaryGetValue(description, CFSTR("Power Source State"))),
            .currentCapacity = numberValue(CFDictionaryGetValue(description, CFSTR("Current Capacity"))),
            .maxCapacity = numberValue(CFDictionaryGetValue(description, CFSTR("Max Capacity"))),
            .isCharging = booleanValue(CFDictionaryGetValue(description, CFSTR("Is Charging"))),
            .timeToEmpty = numberValue(CFDictionaryGetValue(description, CFSTR("Time to Empty"))),
        });
    }
    return descriptions;
}

bool MacSystemSource::isLowPowerModeEnabled() const
{
    return processInfoValue<BOOL>("isLowPowerModeEnabled");
}

ThermalState MacSystemSource::thermalState() const
{
    const long state = processInfoValue<long>("thermalState");
    return state >= 0 && state <= 3 ? static_cast<ThermalState>(state) : ThermalState::nominal;
}

} // namespace kestrow
