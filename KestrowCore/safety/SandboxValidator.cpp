#include "safety/SandboxValidator.h"

#include "platform/SystemMessage.h"

#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "platform/PlatformSystemPaths.h"
#include "safety/ProtectedHomeGround.h"

#include <algorithm>
#include <system_error>

namespace kestrow {

namespace {

// The leading entries of the system prefixes that have no exceptions.
constexpr qsizetype unconditionalPrefixCount = 9;

bool hasTraversalComponent(const QString& path)
{
    // A ".." component covers every traversal form: "/../" inside, "../" in front, "/.." at
    // the end and ".." alone.
    const auto components = QStringView(path).split(QLatin1Char('/'));
    return std::any_of(components.begin(), components.end(),
                       [](QStringView component) { return component == QLatin1String(".."); });
}

// `text` begins with `folder` and a slash; tested without building that text.
template <typename Text> bool startsWithFolder(const QString& text, const Text& folder)
{
    return text.size() > folder.size() && text.at(folder.size()) == QLatin1Char('/') && text.startsWith(folder);
}

bool isInside(const QString& path, const QString& directory)
{
    return path == directory || startsWithFolder(path, directory);
}

bool isInsideAny(const QString& path, const QStringList& homes)
{
    return std::any_of(homes.begin(), homes.end(), [&path](const QString& home) { return isInside(path, home); });
}

// Where `path` leads; a path whose links could not all be read is refused, as it might lead
// anywhere.
QString resolvedOrRefused(const QString& path, const LinkResolver& resolver, const QString& linkFreeFolder = {})
{
    const LinkResolution resolution = resolver.resolve(path, linkFreeFolder);
    if (resolution.errorCode != 0)
        throw SandboxSecurityError::symlinkEscapedSandbox(
            path, resolution.path,
            QStringLiteral("Symlinks could not be followed at '%1' (%2).")
                .arg(resolution.unexaminedPath, SystemMessage::of(resolution.errorCode)));
    return PathText::removingDotComponents(resolution.path);
}

// The home as given and, when links lead elsewhere, as resolved.
QStringList homeForms(const QString& homePath, const LinkResolver& resolver)
{
    const QString resolved = resolvedOrRefused(homePath, resolver);
    return resolved == homePath ? QStringList{homePath} : QStringList{homePath, resolved};
}

// Lower-case prefix tests of the system check. `lowered` is the path in lower case.
template <typename Text> bool isOrUnder(const QString& lowered, const Text& directory)
{
    return lowered == directory || startsWithFolder(lowered, directory);
}

} // namespace

const QStringList& SandboxValidator::forbiddenSystemPrefixes()
{
    static const QStringList prefixes{
        QStringLiteral("/System"),      QStringLiteral("/usr"),
        QStringLiteral("/bin"),         QStringLiteral("/sbin"),
        QStringLiteral("/Library"),     QStringLiteral("/etc"),
        QStringLiteral("/private/etc"), QStringLiteral("/private/var/db"),
        QStringLiteral("/dev"),         QStringLiteral("/private"),
        QStringLiteral("/private/var"), QStringLiteral("/var"),
        QStringLiteral("/Users"),       QStringLiteral("/Volumes"),
    };
    return prefixes;
}

const QStringList& SandboxValidator::forbiddenUserDirectories()
{
    static const QStringList directories{
        QStringLiteral("Documents"),  QStringLiteral("Desktop"),
        QStringLiteral("Pictures"),   QStringLiteral("Music"),
        QStringLiteral("Movies"),     QStringLiteral(".ssh"),
        QStringLiteral(".gnupg"),     QStringLiteral("Library/Keychains"),
        QStringLiteral(".cargo/bin"), QStringLiteral(".local/bin"),
    };
    return directories;
}

void SandboxValidator::validate(const QString& path, const QString& homeURL, const SystemCalls& systemCalls)
{
    if (hasTraversalComponent(path))
        throw SandboxSecurityError::directoryTraversalDetected(path);
    const LinkResolver resolver(systemCalls);
    const QString homePath = PathText::standardizing(homeURL);
    const QStringList homes = homeForms(homePath, resolver);
    validateBelow(path, homePath, homes, resolver, ProtectedHomeGround(homes, systemCalls));
}

void SandboxValidator::validate(const QString& path, const QString& homeURL, const SystemCalls& systemCalls,
                                const ProtectedHomeGround& ground)
{
    if (hasTraversalComponent(path))
        throw SandboxSecurityError::directoryTraversalDetected(path);
    const LinkResolver resolver(systemCalls);
    const QString homePath = PathText::standardizing(homeURL);
    validateBelow(path, homePath, homeForms(homePath, resolver), resolver, ground);
}

void SandboxValidator::validateBelow(const QString& path, const QString& homePath, const QStringList& homes,
                                     const LinkResolver& resolver, const ProtectedHomeGround& ground)
{
    const QString canonical = PathText::standardizedLocation(PathText::expandingTilde(path, homePath));
    if (canonical == QLatin1String("/"))
        throw SandboxSecurityError::rootDirectoryTargeted(canonical);
    if (homes.contains(canonical))
        throw SandboxSecurityError::homeDirectoryTargeted(canonical);
    checkAllLists(canonical, homes, ground);

    // A home that resolved to itself has just been looked at: only what lies below it is looked at again.
    const QString resolved = resolvedOrRefused(canonical, resolver, homes.size() == 1 ? homePath : QString());
    if (resolved == canonical)
        return;
    if (resolved == QLatin1String("/"))
        throw SandboxSecurityError::symlinkEscapedSandbox(canonical, resolved,
                                                          QStringLiteral("Symlink points to root directory"));
    if (homes.contains(resolved))
        throw SandboxSecurityError::symlinkEscapedSandbox(canonical, resolved,
                                                          QStringLiteral("Symlink points to home directory"));
    try {
        checkAllLists(resolved, homes, ground);
    } catch (const SandboxSecurityError& inner) {
        throw SandboxSecurityError::symlinkEscapedSandbox(canonical, resolved, inner.description());
    }
}

void SandboxValidator::validatePattern(const QString& pattern, const std::optional<QString>& baseDirectory,
                                       const QString& homeURL, const SystemCalls& systemCalls)
{
    if (pattern.contains(QLatin1String("..")))
        throw SandboxSecurityError::directoryTraversalDetected(pattern);
    const QString homePath = PathText::standardizing(homeURL);
    const QStringList homes = homeForms(homePath, LinkResolver(systemCalls));
    const QString expanded =
        baseDirectory ? PathText::appending(*baseDirectory, pattern) : PathText::expandingTilde(pattern, homePath);

    qsizetype wildcard = -1;
    for (qsizetype i = 0; i < expanded.size() && wildcard < 0; ++i)
        if (QStringView(u"*?[]{}").contains(expanded.at(i)))
            wildcard = i;
    const QString stem = PathText::standardizing(wildcard < 0 ? expanded : expanded.left(wildcard));
    if (stem.isEmpty() || stem == QLatin1String("/"))
        throw SandboxSecurityError::wildcardTargetsForbiddenScope(pattern, QStringLiteral("Root filesystem"));
    if (homes.contains(stem))
        throw SandboxSecurityError::wildcardTargetsForbiddenScope(pattern, QStringLiteral("Entire home directory"));
    if (wildcard < 0) {
        validate(stem, homeURL, systemCalls);
        return;
    }

    for (const QString& home : homes) {
        if (!expanded.startsWith(home))
            continue;
        // Wildcard components count towards the depth below the home.
        QString belowHome = expanded;
        belowHome.remove(home);
        const auto count = static_cast<int>(belowHome.split(QLatin1Char('/'), Qt::SkipEmptyParts).size());
        if (count < 2)
            throw SandboxSecurityError::insufficientPathDepth(pattern, count);
    }
    const QString location = PathText::standardizedLocation(stem);
    if (location == QLatin1String("/"))
        throw SandboxSecurityError::rootDirectoryTargeted(location);
    if (homes.contains(location))
        throw SandboxSecurityError::homeDirectoryTargeted(location);
    checkSystemPrefixes(location, homes);
    const ProtectedHomeGround ground(homes, systemCalls);
    for (const QString& home : homes)
        checkUserDirectories(location, home, ground);
}

void SandboxValidator::validatePatterns(const QStringList& patterns, const QString& homeURL,
                                        const SystemCalls& systemCalls)
{
    for (const QString& pattern : patterns)
        validatePattern(pattern, std::nullopt, homeURL, systemCalls);
}

void SandboxValidator::checkAllLists(const QString& path, const QStringList& homes, const ProtectedHomeGround& ground)
{
    checkSystemPrefixes(path, homes);
    for (const QString& home : homes) {
        checkUserDirectories(path, home, ground);
        checkDepth(path, home);
    }
}

void SandboxValidator::checkSystemPrefixes(const QString& path, const QStringList& homes)
{
    const QString lowered = path.toLower();
    const bool inOwnHome = isInsideAny(path, homes);
    const auto fail = [&path](const char* prefix) {
        throw SandboxSecurityError::forbiddenSystemPath(path, QLatin1String(prefix));
    };
    // The five prefixes with exceptions come first; their order decides which one a
    // message names and what stays open (other homes closed, the per-user temporary tree
    // and /private/tmp open).
    if (lowered == QLatin1String("/users") || lowered == QLatin1String("/users/"))
        fail("/Users");
    if (lowered.startsWith(QLatin1String("/users/")) && !inOwnHome)
        fail("/Users");
    if (isOrUnder(lowered, QLatin1String("/volumes")))
        fail("/Volumes");
    if (lowered == QLatin1String("/var") || lowered == QLatin1String("/var/"))
        fail("/var");
    if (lowered.startsWith(QLatin1String("/var/")) && !isOrUnder(lowered, QLatin1String("/var/folders")))
        fail("/var");
    if (lowered == QLatin1String("/private/var") || lowered == QLatin1String("/private/var/"))
        fail("/private/var");
    if (lowered.startsWith(QLatin1String("/private/var/")) &&
        !isOrUnder(lowered, QLatin1String("/private/var/folders")))
        fail("/private/var");
    if (lowered == QLatin1String("/private") || lowered == QLatin1String("/private/"))
        fail("/private");
    if (lowered.startsWith(QLatin1String("/private/")) && !lowered.startsWith(QLatin1String("/private/var/folders/")) &&
        !lowered.startsWith(QLatin1String("/private/tmp/")) && !inOwnHome)
        fail("/private");

    for (const QString& prefix : forbiddenSystemPrefixes().first(unconditionalPrefixCount)) {
        if (path.compare(prefix, Qt::CaseInsensitive) == 0 || startsWithFolder(lowered, prefix.toLower()))
            throw SandboxSecurityError::forbiddenSystemPath(path, prefix);
    }

    // What this platform adds: other users' homes as "/Users" closes them, mounted media and
    // installed software (where the own home may live), and its system trees.
    for (const QStringList* roots : {&PlatformSystemPaths::userHomeRoots(), &PlatformSystemPaths::sharedRoots()}) {
        for (const QString& root : *roots) {
            if (isOrUnder(lowered, root) && !inOwnHome)
                throw SandboxSecurityError::forbiddenSystemPath(path, root);
        }
    }
    for (const QString& prefix : PlatformSystemPaths::systemPrefixes()) {
        if (isOrUnder(lowered, prefix))
            throw SandboxSecurityError::forbiddenSystemPath(path, prefix);
    }
}

void SandboxValidator::checkUserDirectories(const QString& path, const QString& homePath,
                                            const ProtectedHomeGround& ground)
{
    const QString lowered = path.toLower();
    for (const QString& directory : forbiddenUserDirectories()) {
        const QString full = PathText::appending(homePath, directory);
        if (path.compare(full, Qt::CaseInsensitive) == 0 || startsWithFolder(lowered, full.toLower()))
            throw SandboxSecurityError::forbiddenUserDirectory(path, directory);
    }
    if (const ProtectedHomeGround::Folder* folder = ground.folderHolding(path))
        throw SandboxSecurityError::forbiddenUserDirectory(path, folder->name);
}

void SandboxValidator::checkDepth(const QString& path, const QString& homePath)
{
    const QString relevant = isInside(path, homePath) ? path.mid(homePath.size()) : path;
    const auto count = static_cast<int>(relevant.split(QLatin1Char('/'), Qt::SkipEmptyParts).size());
    if (count < 2)
        throw SandboxSecurityError::insufficientPathDepth(path, count);
}

} // namespace kestrow
