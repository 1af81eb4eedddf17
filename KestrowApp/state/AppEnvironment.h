#pragma once

#include "platform/FileManager.h"
#include "platform/SoftwareRoot.h"
#include "platform/SystemSource.h"
#include "scan/DeepScanEngine.h"
#include "system/StartupLocations.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace kestrow {

class AppSettings;
class SweepConfirmation;

// Where the application state works and with what; every part absent takes the running
// user's own. Tests point it at a temporary home and store.
struct AppEnvironment {
    QString homeURL;                                  // empty: the user's home
    AppSettings* settings = nullptr;                  // absent: AppSettings::shared()
    std::shared_ptr<const FileManager> fileManager;   // absent: the real disk
    std::shared_ptr<const SystemSource> systemSource; // where vitals are read; absent: this machine
    // Asked before a Sweep when the settings want it; absent: such a Sweep never goes ahead.
    std::shared_ptr<SweepConfirmation> confirmation;
    std::optional<QStringList> applicationsURLs;      // absent: the platform's application folders
    std::optional<SoftwareRoot> softwareRoot;         // absent: the machine's own
    std::optional<StartupLocations> startupLocations; // absent: the home's standard ones
    int workerThreads = 2;                            // for the work of all flows together
    // Runs the scan of a scan flow on the engine built for it; absent: the engine's own scan.
    // Called on a worker thread.
    std::function<ScanResult(DeepScanEngine& engine, const std::optional<CategorySet>& categories,
                             std::stop_token stop)>
        scan;
};

} // namespace kestrow
