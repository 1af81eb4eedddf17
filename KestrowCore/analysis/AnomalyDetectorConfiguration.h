#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace kestrow {

// Where the anomaly detector looks, how deep, and from what size a folder counts.
struct AnomalyDetectorConfiguration {
    // Without `inspectionRoots`, the default roots of the home.
    AnomalyDetectorConfiguration(std::int64_t minSize, std::optional<QStringList> roots, int depth, QString home);

    // The home's ".cache", "Library/Caches", "Library/Application Support", "Developer" and
    // "Projects", in this order.
    [[nodiscard]] static QStringList defaultInspectionRoots(const QString& homeURL);

    std::int64_t minSizeBytes; // a folder below this allocated size is not reported
    QStringList inspectionRoots;
    int maxSearchDepth; // 1: the roots' own folders; anything else: one level further
    QString homeURL;
};

} // namespace kestrow
