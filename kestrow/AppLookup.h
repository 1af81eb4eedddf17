#pragma once

#include "apps/InstalledApp.h"

#include <QString>

#include <vector>

namespace kestrow::cli {

// Finds the one application a NAME-OR-ID argument names among those a scan found: an
// identifier exactly, else an identifier ignoring case, else a display name ignoring case.
// The first of these that matches anything decides.
class AppLookup {
public:
    explicit AppLookup(std::vector<InstalledApp> apps);

    // Throws UsageError when nothing matches, or when several applications do (it lists them).
    [[nodiscard]] const InstalledApp& find(const QString& nameOrId) const;

    [[nodiscard]] const std::vector<InstalledApp>& apps() const { return m_apps; }

private:
    std::vector<InstalledApp> m_apps;
};

} // namespace kestrow::cli
