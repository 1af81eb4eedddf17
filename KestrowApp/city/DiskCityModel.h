#pragma once

#include "city/DiskCityInputs.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace kestrow {

// Everything the city stage shows, as one value: tower heights, district labels and the
// activity flags that the robots act out. After a scan it tells measured figures; before the
// first scan it draws a sample city from the volume's used space alone.
struct DiskCityModel {
    enum class ChipTint { orange, teal, amber };

    // A district label, anchored in the stage's unit square.
    struct Chip {
        int id = 0;
        QString badge;
        QString title;
        QString detail;
        ChipTint tint = ChipTint::orange;
        double x = 0;
        double y = 0;

        friend bool operator==(const Chip&, const Chip&) = default;
    };

    std::vector<Chip> chips;
    double systemScale = 0.8;
    double appsScale = 1.15;
    bool isScanning = false;
    bool isCleaning = false;
    bool hasCleaned = false;
    bool isDiskScanning = false;
    bool isLoadingApps = false;
    bool isAnalyzingSystem = false;
    bool isSample = false;
    std::int64_t sweepableBytes = 0;
    QString accessibilitySummary = QStringLiteral("Interactive 3D storage city diorama");

    // Height factor of a district: 0.55 when empty, 1.0 at the baseline, growing with the
    // logarithm of the size so that a terabyte does not dwarf the scene; never above 1.45.
    [[nodiscard]] static double districtScale(std::int64_t bytes, double baselineGB);

    [[nodiscard]] static DiskCityModel from(const DiskCityInputs& inputs);

    friend bool operator==(const DiskCityModel&, const DiskCityModel&) = default;
};

} // namespace kestrow
