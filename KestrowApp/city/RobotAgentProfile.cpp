#include "city/RobotAgentProfile.h"

#include "platform/HostSystem.h"

#include <array>
#include <utility>

namespace kestrow {

namespace {

struct StatRow {
    const char* label;
    const char* value;
};

struct ProfileRow {
    const char* id;
    const char* designation;
    const char* name;
    const char* role;
    const char* district;
    const char* idleStatus;
    const char* scanStatus;
    const char* cleanStatus;
    const char* loreBio;
    const char* macBenefit;
    const char* emoteLabel;
    const char* emoteIcon;
    const char* systemIcon;
    const char* badgeTint;
    std::array<StatRow, 4> stats;
};

constexpr std::array<ProfileRow, 7> profileRows{{
    {"patrol_bot",
     "[PATROL-01]",
     "Unit-01 Sentinel",
     "Central Avenue Sentinel",
     "SYSTEM QUARTER · MAIN BLVD",
     "ROUTINE PATROL · NOMINAL",
     "SECTOR SWEEP ACTIVE",
     "TRAFFIC CONTROL ACTIVE",
     "Guards system storage integrity along Central Avenue. Routinely verifies APFS file system boundaries, "
     "inspects mount points, and routes data traffic safely away from fragmented blocks.",
     "Protects APFS snapshot safety and avoids volume metadata corruption during heavy disk I/O.",
     "Wave & Salute",
     "hand.wave.fill",
     "shield.righthalf.filled",
     "orange",
     {{{"EFFICIENCY", "99.4%"}, {"PATROLS", "1,420"}, {"UPTIME", "99.98%"}, {"STATUS", "NOMINAL"}}}},
    {"sweeper_bot",
     "[CLEAN-BOT]",
     "Broomster 3000",
     "Sanitation Specialist",
     "CACHE ALLEY · WEST SIDEWALK",
     "CLEARING ORPHAN BYTES · CLEAN",
     "IDENTIFYING CACHE CLUSTERS",
     "FULL SWEEP IN PROGRESS",
     "Paces the western sidewalks relentlessly sweeping cache remnants, temporary logs, and build artifacts. "
     "Keeps system gutters sparkling clean and free of leftover debris.",
     "Frees gigabytes from dormant application caches, Xcode derived data, and stale Safari temporary files.",
     "Turbo Sweep",
     "wind",
     "wind",
     "teal",
     {{{"BROOM RPM", "1,200"}, {"FREED", "18.4 GB"}, {"BRISTLE WEAR", "2%"}, {"STATUS", "ACTIVE"}}}},
    {"dev_worker",
     "[DEV-01]",
     "Hacker-Dev",
     "Lead Systems Optimizer",
     "DEV QUARTER · LOFT STUDIO",
     "REFACTORING SWIFTUI · 0 ERRORS",
     "PROFILING MEMORY ALLOCATIONS",
     "PR MERGED · CACHE INVALIDATED",
     "Hard at work behind twin high-refresh displays in the open-air Dev Loft. Burns midnight oil shipping clean "
     "native APIs, removing memory leaks, and crafting delightful 60fps animations.",
     "Audits bloated node_modules and simulator dependencies while keeping memory footprints minimal.",
     "Sip Coffee & Type",
     "cup.and.saucer.fill",
     "laptopcomputer",
     "teal",
     {{{"SPEED", "140 WPM"}, {"COFFEE", "85%"}, {"LINT ERRORS", "0"}, {"TARGET", "60 FPS"}}}},
    {"hauler_bot",
     "[HAULER-9000]",
     "Hauler-9000",
     "Heavy Waste Specialist",
     "RECYCLING DEPOT · DOCK 1",
     "BALANCING CRATES · COMPACTOR READY",
     "TALLYING RECYCLABLE JUNK",
     "CRUSHING CORRUPTED DATA",
     "Hydraulic powerlifter stationed at the Trash Dock. Takes obsolete Xcode archives, dead downloads, and stale "
     "DMG files directly to the compactor for safe zero-fill release.",
     "Zeroes freed storage clusters, allowing macOS to return contiguous blocks directly to APFS free space.",
     "Hoist Crate",
     "shippingbox.fill",
     "shippingbox.fill",
     "orange",
     {{{"HYDRAULICS", "3,200 PSI"}, {"RATED LOAD", "500 KG"}, {"COMPACTED", "42.6 GB"}, {"STATUS", "READY"}}}},
    {"engineer_bot",
     "[TECH-04]",
     "Tech-04",
     "Diagnostic Systems Architect",
     "AI WEIGHTS VAULT · PLAZA",
     "RUNNING SYSTEM HEURISTICS",
     "CROSS-EXAMINING LOG BLOCKS",
     "COMPACTING MODEL WEIGHTS",
     "Diagnostic field technician carrying an encrypted holo-tablet. Constantly inspects server rack blades, "
     "monitors thermal telemetry, and tunes background memory release.",
     "Audits AI checkpoint caches and verifies disk block health across Apple Silicon unified memory.",
     "Diagnostic Ping",
     "waveform.path.ecg",
     "waveform.path.ecg",
     "amber",
     {{{"LATENCY", "0.8 MS"}, {"SENSORS", "64 / 64"}, {"AI CACHE", "CLEAN"}, {"STATUS", "NOMINAL"}}}},
    {"amr_inspector",
     "[AMR-01]",
     "AMR Rover 01",
     "Fulfillment Inspector",
     "CONTAINER TERMINAL · TRACK 2",
     "NAVIGATING GUIDELINES · ALL CLEAR",
     "READING QR WAYPOINTS",
     "ROUTING CARGO FREIGHT",
     "Autonomous Mobile Robot (AMR) using lidar and ground fiducials. Ensures automated container racking aligns "
     "with macOS APFS volume structures.",
     "Indexes high-churn container directories so scanning finishes in seconds without disk grinding.",
     "Spin & Beep",
     "arrow.clockwise",
     "car.side.fill",
     "orange",
     {{{"BATTERY", "98%"}, {"LIDAR", "100%"}, {"WAYPOINTS", "312"}, {"STATUS", "PATROL"}}}},
    {"amr_hauler",
     "[AMR-02]",
     "AMR Carrier 02",
     "Intermodal Freight Shuttle",
     "SHREDDER DOCK · SLIPWAY",
     "STANDBY CHARGE PAD · READY",
     "WEIGHING PALLET DISPATCH",
     "HAULING UNUSED BLOCKS",
     "High-torque omnidirectional platform. Transports oversized storage chunks and old simulator caches directly "
     "into the industrial release hopper.",
     "Quickly offloads heavy clutter volumes without causing UI frame drops or kernel memory pressure.",
     "Honk & Lift",
     "speaker.wave.2.fill",
     "truck.box.fill",
     "teal",
     {{{"TORQUE", "450 NM"}, {"BATTERY", "94%"}, {"CARGO", "0 KG"}, {"STATUS", "STANDBY"}}}},
}};

// The texts above that name the Mac's programs and places, as a Linux user reads them.
struct LinuxWording {
    const char* id;
    QString RobotAgentProfile::*field;
    const char* text;
};

constexpr std::array<LinuxWording, 8> linuxWordings{{
    {"patrol_bot", &RobotAgentProfile::loreBio,
     "Guards system storage integrity along Central Avenue. Routinely verifies file system boundaries, inspects "
     "mount points, and routes data traffic safely away from fragmented blocks."},
    {"patrol_bot", &RobotAgentProfile::macBenefit,
     "Protects file system snapshot safety and avoids volume metadata corruption during heavy disk I/O."},
    {"sweeper_bot", &RobotAgentProfile::macBenefit,
     "Frees gigabytes from dormant application caches, build tool output, and stale browser temporary files."},
    {"dev_worker", &RobotAgentProfile::idleStatus, "REFACTORING QT QUICK · 0 ERRORS"},
    {"hauler_bot", &RobotAgentProfile::loreBio,
     "Hydraulic powerlifter stationed at the Trash Dock. Takes obsolete build archives, dead downloads, and stale "
     "disk images directly to the compactor for safe zero-fill release."},
    {"hauler_bot", &RobotAgentProfile::macBenefit,
     "Zeroes freed storage clusters, allowing Linux to return contiguous blocks directly to file system free space."},
    {"engineer_bot", &RobotAgentProfile::macBenefit,
     "Audits AI checkpoint caches and verifies disk block health across the machine's memory and drives."},
    {"amr_inspector", &RobotAgentProfile::loreBio,
     "Autonomous Mobile Robot (AMR) using lidar and ground fiducials. Ensures automated container racking aligns "
     "with Linux volume structures."},
}};

RobotAgentProfile fromRow(const ProfileRow& row)
{
    RobotAgentProfile profile{
        .id = QString::fromUtf8(row.id),
        .designation = QString::fromUtf8(row.designation),
        .name = QString::fromUtf8(row.name),
        .role = QString::fromUtf8(row.role),
        .district = QString::fromUtf8(row.district),
        .idleStatus = QString::fromUtf8(row.idleStatus),
        .scanStatus = QString::fromUtf8(row.scanStatus),
        .cleanStatus = QString::fromUtf8(row.cleanStatus),
        .loreBio = QString::fromUtf8(row.loreBio),
        .macBenefit = QString::fromUtf8(row.macBenefit),
        .emoteLabel = QString::fromUtf8(row.emoteLabel),
        .emoteIcon = QString::fromUtf8(row.emoteIcon),
        .systemIcon = QString::fromUtf8(row.systemIcon),
        .badgeTint = QString::fromUtf8(row.badgeTint),
    };
    for (const StatRow& stat : row.stats)
        profile.stats.push_back({QString::fromUtf8(stat.label), QString::fromUtf8(stat.value)});
    return profile;
}

} // namespace

const QString& RobotAgentProfile::currentStatus(bool isScanning, bool isCleaning) const
{
    if (isCleaning)
        return cleanStatus;
    return isScanning ? scanStatus : idleStatus;
}

std::map<QString, RobotAgentProfile> RobotAgentProfile::profilesFor(HostSystem host)
{
    std::map<QString, RobotAgentProfile> byId;
    for (const ProfileRow& row : profileRows)
        byId.emplace(QString::fromUtf8(row.id), fromRow(row));
    if (host == HostSystem::gnuLinux)
        for (const LinuxWording& wording : linuxWordings)
            byId.at(QLatin1String(wording.id)).*wording.field = QString::fromUtf8(wording.text);
    return byId;
}

const std::map<QString, RobotAgentProfile>& RobotAgentProfile::allProfiles()
{
    static const std::map<QString, RobotAgentProfile> profiles = profilesFor(currentHostSystem());
    return profiles;
}

std::optional<RobotAgentProfile> RobotAgentProfile::profile(const QString& id)
{
    const auto& profiles = allProfiles();
    const auto found = profiles.find(id);
    if (found == profiles.end())
        return std::nullopt;
    return found->second;
}

std::vector<RobotAgentProfile> RobotAgentProfile::agents(DioramaStyle style)
{
    static constexpr std::array classicCast{"patrol_bot", "sweeper_bot", "dev_worker", "hauler_bot", "engineer_bot"};
    static constexpr std::array freightCast{"amr_inspector", "amr_hauler"};
    std::vector<RobotAgentProfile> cast;
    const auto add = [&cast](const auto& ids) {
        for (const char* robotId : ids)
            cast.push_back(allProfiles().at(QLatin1String(robotId)));
    };
    if (style == DioramaStyle::freightTerminal)
        add(freightCast);
    else
        add(classicCast);
    return cast;
}

} // namespace kestrow
