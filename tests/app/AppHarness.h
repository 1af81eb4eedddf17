#pragma once

#include "TestHome.h"

#include "settings/AppSettings.h"
#include "state/AppState.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace kestrow::test {

// How a harness starts its application state.
struct AppHarnessSetup {
    bool autoScan = false;
    std::function<void(AppSettings&)> settings;  // before the state exists
    std::function<void(AppEnvironment&)> adjust; // the environment, before the state exists
};

// An application state on a temporary home, with its settings in a file of that home, no
// installed software to find but what a test puts in "apps", and every status message kept.
class AppHarness {
public:
    explicit AppHarness(const AppHarnessSetup& setup = {});

    // Pumps the event loop until every flow has published.
    void settle() const;

    TestHome home;
    AppSettings settings;
    std::unique_ptr<AppState> state;
    QStringList messages;
};

// Pumps the event loop until `done`, failing the test after 30 seconds.
void pumpUntil(const std::function<bool()>& done);

} // namespace kestrow::test
