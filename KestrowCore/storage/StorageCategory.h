#pragma once

#include "storage/CategoryGroup.h"
#include "storage/RiskTier.h"
#include "support/EnumValue.h"

#include <QString>

#include <optional>
#include <set>

namespace kestrow {

class JsonDecoder;

// The sixteen kinds of storage a scan reports. The raw value is the JSON and rule-file form.
enum class StorageCategoryValue {
    developerCache,
    aiModelWeights,
    dockerVM,
    xcodeArtifacts,
    strayDependencies,
    systemCaches,
    systemLogs,
    crashReports,
    mailDownloads,
    browserCaches,
    applicationBundles,
    leftovers,
    largeFiles,
    startupItems,
    dynamicRule,
    unknownAnomaly,
};

class StorageCategory : public EnumValue<StorageCategory, StorageCategoryValue, 16> {
public:
    using EnumValue::EnumValue;
    using enum StorageCategoryValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString iconName() const;
    [[nodiscard]] CategoryGroup group() const;
    [[nodiscard]] RiskTier defaultRiskTier() const;

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<StorageCategory> fromRawValue(const QString& raw);
    // Loose text as typed by a person or an agent: "DOCKER_VM", "docker_vm", "DockerVM".
    [[nodiscard]] static std::optional<StorageCategory> parse(const QString& text);
    // Strict raw value at `key`; throws JsonDecodingError.
    [[nodiscard]] static StorageCategory decode(const JsonDecoder& decoder, const QString& key);
};

// A set of categories, iterated in case order.
using CategorySet = std::set<StorageCategory>;

} // namespace kestrow
