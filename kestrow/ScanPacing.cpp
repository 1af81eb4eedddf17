#include "ScanPacing.h"

#include "CommandLine.h"

#include "platform/SystemSource.h"

#include <atomic>

namespace kestrow::cli {

namespace {

// A scan is held back when it sleeps at checkpoints or stops at them; fewer parallel permits
// alone do not slow one scan, which holds a single permit.
bool holdsBack(const ConcurrencyProfile& profile)
{
    return profile.isPaused || profile.directorySleepMs > 0;
}

// Tells on standard error how the governor paces the scan and why. On a terminal the progress
// line is wiped first; its next update draws it again.
void reportPacing(const ConcurrencyProfile& profile)
{
    const QString state = profile.isPaused
                              ? QStringLiteral("paused")
                              : (holdsBack(profile) ? QStringLiteral("slowed") : QStringLiteral("back to full speed"));
    printError((standardErrorIsTerminal() ? QStringLiteral("\r\x1b[K") : QString()) + QStringLiteral("kestrow: scan ") +
               state + QStringLiteral(": ") + profile.reason);
}

} // namespace

std::shared_ptr<ThermalGovernor> makeScanGovernor(bool paced)
{
    if (!paced)
        return ThermalGovernor::unrestricted(SystemSource::current()->activeProcessorCount());
    auto governor = ThermalGovernor::makeDefault();
    const ConcurrencyProfile first = governor->currentProfile();
    if (holdsBack(first))
        reportPacing(first);
    governor->setProfileChangeHandler(
        [heldBack = std::make_shared<std::atomic<bool>>(holdsBack(first))](const ConcurrencyProfile& profile) {
            if (heldBack->exchange(holdsBack(profile)) || holdsBack(profile))
                reportPacing(profile);
        });
    return governor;
}

} // namespace kestrow::cli
