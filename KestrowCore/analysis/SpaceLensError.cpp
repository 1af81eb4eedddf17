#include "analysis/SpaceLensError.h"

namespace kestrow {

SpaceLensError::SpaceLensError(Case kind, QString path)
    : m_case(kind)
    , m_path(std::move(path))
{
}

QString SpaceLensError::description() const
{
    switch (m_case) {
    case Case::noSuchFile:
        break;
    }
    return QStringLiteral("No such file or directory: ") + m_path;
}

} // namespace kestrow
