#pragma once

#include "TestHome.h"

#include <QStringList>

#include <cstdint>

namespace kestrow::test {

// A developer's home laid out the way Linux tools lay it out: the XDG cache folder with the
// caches of package managers, build tools, editors, browsers and models, Flatpak and Snap
// sandboxes, Maven, conda and rustup below the home, container engines' storage, an
// abandoned Docker Desktop disk and old X session logs; beside them the decoys a scan must
// pass over (profiles, settings, sandboxes' data, the Trash, keyrings, current logs). No
// Docker Desktop is installed in `applicationsFolder()`.
class SyntheticLinuxHome : public TestHome {
public:
    SyntheticLinuxHome();

    [[nodiscard]] QString applicationsFolder() const { return path(QStringLiteral("opt")); }
    // Bytes of all the cache files, and the decoy files, below the home.
    [[nodiscard]] std::int64_t cacheBytes() const { return m_cacheBytes; }
    [[nodiscard]] const QStringList& decoys() const { return m_decoys; }

private:
    std::int64_t m_cacheBytes = 0;
    QStringList m_decoys;
};

} // namespace kestrow::test
