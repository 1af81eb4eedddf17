#pragma once

#include "support/JsonValue.h"
#include "system/StartupImpact.h"
#include "system/StartupStatus.h"
#include "system/StartupType.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace kestrow {

// One thing that starts with the machine or the session, as a listing found it.
struct StartupItem {
    QUuid id; // new at each listing
    QString name;
    QString label;
    StartupType type = StartupType::userLaunchAgent;
    std::optional<QString> fileURL; // the path of the file that defines it
    std::optional<QString> targetExecutablePath;
    bool isEnabled = true;
    bool isRunning = false; // a listing does not look
    bool requiresAdministrator = false;
    StartupStatus status = StartupStatus::enabled;
    StartupImpact impact = StartupImpact::low;
    std::optional<QString> bundleIdentifier;

    // Keys in field order, the file as a file URL, absent fields left out.
    [[nodiscard]] JsonValue toJson() const;

    friend bool operator==(const StartupItem&, const StartupItem&) = default;
};

} // namespace kestrow
