#pragma once

#include "platform/SystemCalls.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrow {

// The platform's own protected folders of a home, beyond the sandbox's fixed list of user
// folders: on Linux the personal folders in the user's language, secrets, profiles and the
// Trash. Each is refused like "~/Documents" and explained by `check`. Built once for one
// validation or one checker; a plain value.
class ProtectedHomeGround {
public:
    struct Folder {
        QString path;   // absolute
        QString name;   // as a refusal names it: below the home relative ("Dokumente"), else absolute
        QString reason; // one sentence for display
    };

    // The ground of each form of the home in `homes` (as given, then as resolved).
    ProtectedHomeGround(const QStringList& homes, const SystemCalls& systemCalls);

    // The folder that is `path` or holds it, compared ignoring case as the fixed list is;
    // nullptr when there is none.
    [[nodiscard]] const Folder* folderHolding(const QString& path) const;

private:
    std::vector<Folder> m_folders;
};

} // namespace kestrow
