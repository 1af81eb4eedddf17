#include "platform/PlatformSystemPaths.h"

namespace kestrow {

#if defined(__APPLE__)

const QStringList& PlatformSystemPaths::userHomeRoots()
{
    static const QStringList none;
    return none;
}

const QStringList& PlatformSystemPaths::sharedRoots()
{
    static const QStringList none;
    return none;
}

const QStringList& PlatformSystemPaths::systemPrefixes()
{
    static const QStringList none;
    return none;
}

#else

const QStringList& PlatformSystemPaths::userHomeRoots()
{
    static const QStringList roots{QStringLiteral("/home"), QStringLiteral("/root")};
    return roots;
}

const QStringList& PlatformSystemPaths::sharedRoots()
{
    static const QStringList roots{QStringLiteral("/opt"), QStringLiteral("/srv"), QStringLiteral("/mnt"),
                                   QStringLiteral("/media"), QStringLiteral("/nix")};
    return roots;
}

const QStringList& PlatformSystemPaths::systemPrefixes()
{
    static const QStringList prefixes{QStringLiteral("/boot"),  QStringLiteral("/lib"),    QStringLiteral("/lib32"),
                                      QStringLiteral("/lib64"), QStringLiteral("/libx32"), QStringLiteral("/proc"),
                                      QStringLiteral("/sys"),   QStringLiteral("/run"),    QStringLiteral("/snap")};
    return prefixes;
}

#endif

} // namespace kestrow
