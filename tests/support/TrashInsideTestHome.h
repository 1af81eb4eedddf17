#pragma once

#include "TestHome.h"

#include <QByteArray>

namespace kestrow::test {

// Points HOME at a test home for as long as it lives. The platform Trash files an item in
// the home Trash (below XDG_DATA_HOME, which TestHome already redirects) only when the item
// lies on the same file system as HOME; elsewhere it uses a Trash at the top of that file
// system. With HOME inside the test home, everything a test trashes lands in its own Trash.
class TrashInsideTestHome {
public:
    explicit TrashInsideTestHome(const TestHome& home);
    ~TrashInsideTestHome();
    TrashInsideTestHome(const TrashInsideTestHome&) = delete;
    TrashInsideTestHome& operator=(const TrashInsideTestHome&) = delete;

    // The folder trashed items go to, and the one of their .trashinfo files.
    [[nodiscard]] const QString& filesFolder() const { return m_files; }
    [[nodiscard]] const QString& infoFolder() const { return m_info; }

private:
    QByteArray m_savedHome;
    QString m_files;
    QString m_info;
};

} // namespace kestrow::test
