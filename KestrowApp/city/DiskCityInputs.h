#pragma once

#include "apps/InstalledApp.h"
#include "cleanup/TrashSummary.h"
#include "storage/ScanResult.h"
#include "system/SystemVitals.h"

#include <span>

namespace kestrow {

// What the city is computed from: the application's activity flags and the records it holds,
// borrowed for one evaluation. An absent record is a null pointer.
struct DiskCityInputs {
    bool isScanning = false;
    bool isCleaning = false;
    bool isLoadingApps = false;
    bool isAnalyzingSpace = false;
    bool isLoadingStartup = false;
    const TrashSummary* lastCleanupSummary = nullptr;
    const ScanResult* scanResult = nullptr;
    const SystemVitals* vitals = nullptr;
    std::span<const InstalledApp> installedApps;
};

} // namespace kestrow
