#include "safety/CacheDirTagWriteError.h"

namespace kestrow {

QString CacheDirTagWriteError::description() const
{
    return QStringLiteral("Could not write the cache directory tag '") + m_tagFilePath + QStringLiteral("': ") +
           m_systemMessage;
}

} // namespace kestrow
