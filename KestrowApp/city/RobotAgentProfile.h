#pragma once

#include "city/DioramaStyle.h"
#include "platform/HostSystem.h"

#include <QString>

#include <map>
#include <optional>
#include <vector>

namespace kestrow {

// A robot character of the city: its file card, three status lines and a panel of invented
// figures. All of it is constant decoration; `id` is also the name of the robot's stage node.
struct RobotAgentProfile {
    struct StatItem {
        QString label;
        QString value;

        [[nodiscard]] const QString& id() const { return label; }
        friend bool operator==(const StatItem&, const StatItem&) = default;
    };

    QString id;
    QString designation;
    QString name;
    QString role;
    QString district;
    QString idleStatus;
    QString scanStatus;
    QString cleanStatus;
    QString loreBio;
    QString macBenefit;
    QString emoteLabel;
    QString emoteIcon;
    QString systemIcon;
    QString badgeTint; // "orange", "teal" or "amber"
    std::vector<StatItem> stats;

    // A Sweep outranks a scan.
    [[nodiscard]] const QString& currentStatus(bool isScanning, bool isCleaning) const;

    // Every profile of both styles, by id, in this system's wording; built once.
    [[nodiscard]] static const std::map<QString, RobotAgentProfile>& allProfiles();
    // The profiles as a user of `host` reads them: texts that name the Mac's programs and
    // places have a Linux wording.
    [[nodiscard]] static std::map<QString, RobotAgentProfile> profilesFor(HostSystem host);
    [[nodiscard]] static std::optional<RobotAgentProfile> profile(const QString& id);
    [[nodiscard]] static std::vector<RobotAgentProfile> agents(DioramaStyle style);

    friend bool operator==(const RobotAgentProfile&, const RobotAgentProfile&) = default;
};

} // namespace kestrow
