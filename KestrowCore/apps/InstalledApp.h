#pragma once

#include "support/JsonValue.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// One installed application as an inspection found it. `id` is new at each inspection.
struct InstalledApp {
    QUuid id;
    QString bundleIdentifier;
    QString bundlePath; // the bundle's URL in JSON
    QString displayName;
    QString version;
    std::optional<QString> shortVersion;
    bool isSystemApp = false;
    bool isRunning = false;
    std::int64_t bundleSizeBytes = 0;    // allocated
    std::int64_t logicalSizeBytes = 0;   // the allocated figure when the logical one is 0
    std::optional<QString> architecture; // an AppArchitecture raw value
    std::optional<QString> codeSignatureAuthority;
    std::optional<QString> iconPath; // the icon's URL in JSON
    std::optional<QString> executablePath;
    std::optional<QString> teamIdentifier;
    bool isProtected = false;
    std::optional<QString> protectionReason;
    std::optional<QString> bundleName;
    std::optional<QStringList> appGroupIdentifiers; // never filled by an inspection

    [[nodiscard]] QString bundleURL() const;
    [[nodiscard]] std::optional<QString> iconURL() const;
    [[nodiscard]] QString formattedBundleSize() const;
    [[nodiscard]] QString formattedLogicalSize() const;

    // Keys are the field names; paths are file URL strings, absent optionals left out.
    [[nodiscard]] JsonValue toJson() const;
    // Throws JsonDecodingError.
    [[nodiscard]] static InstalledApp fromJson(const JsonValue& json);

    friend bool operator==(const InstalledApp&, const InstalledApp&) = default;
};

} // namespace kestrow
