#include "TrashInsideTestHome.h"

#include <QFile>

namespace kestrow::test {

TrashInsideTestHome::TrashInsideTestHome(const TestHome& home)
    : m_savedHome(qgetenv("HOME"))
    , m_files(home.path(QStringLiteral(".local/share/Trash/files")))
    , m_info(home.path(QStringLiteral(".local/share/Trash/info"))) {
    qputenv("HOME", QFile::encodeName(home.path()));
}

TrashInsideTestHome::~TrashInsideTestHome() {
    qputenv("HOME", m_savedHome);
}

} // namespace kestrow::test
