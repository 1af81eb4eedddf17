#pragma once

#include "city/DioramaStyle.h"
#include "city/DiskCityModel.h"

#include <QVariantList>

namespace kestrow {

// What a city stage hands to its QML: the model's chips and the style's robot characters, as
// plain lists and maps.
class CityStageData {
public:
    // Each chip's id, badge, title, detail, tintName ("accentOrange", "safeTeal" or "askAmber")
    // and its anchor x and y in the stage's unit square.
    [[nodiscard]] static QVariantList chips(const DiskCityModel& model);
    // The style's robots in their order, in this system's wording, each with the status line
    // that the activity calls for, its statistics as label and value, and its tint's name.
    [[nodiscard]] static QVariantList agents(DioramaStyle style, bool isScanning, bool isCleaning);
    // The fixed city of the Settings' previews: a half-full disk before its first scan.
    [[nodiscard]] static DiskCityModel previewModel();
};

} // namespace kestrow
