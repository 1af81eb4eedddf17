#pragma once

#include "platform/SystemCalls.h"

#include <QString>

namespace kestrow {

// Where a path leads once its symbolic links are followed.
struct LinkResolution {
    // The path with every link that could be examined followed, the rest as written.
    QString path;
    // 0 when every component was examined, or the rest does not exist (ENOENT, ENOTDIR): then
    // `path` is where the path leads. Otherwise the errno of the first component that could not
    // be examined (EACCES, ENAMETOOLONG, EIO...; ELOOP after more links than the kernel
    // follows), and where the path leads is unknown.
    int errorCode = 0;
    // That component, as far as it was resolved; empty when `errorCode` is 0.
    QString unexaminedPath;
};

// Follows symbolic links in path text by reading the disk, one component at a time, through
// the system calls it is given. Cheap to make; stateless apart from the calls it holds.
class LinkResolver {
public:
    // `systemCalls` must outlive the resolver.
    explicit LinkResolver(const SystemCalls& systemCalls = *SystemCalls::real());

    // `path` with every symbolic link in it followed, links within link targets too. A path
    // without links comes back as it stands, dot components resolved as text; a leading
    // "/private" is dropped as `droppingPrivatePrefix` does. Relative text is taken against
    // the working directory. `linkFreeFolder`, when given, is a folder whose own resolution came
    // back as itself without an error: a path inside it is looked at only below it.
    [[nodiscard]] LinkResolution resolve(const QString& path, const QString& linkFreeFolder = {}) const;
    // The path of `resolve`, whether or not every component could be examined.
    [[nodiscard]] QString resolvingSymbolicLinks(const QString& path, const QString& linkFreeFolder = {}) const;
    // "/private/x" becomes "/x" when "/x" exists, as the platform's standard form has it;
    // anything else stays as it is.
    [[nodiscard]] QString droppingPrivatePrefix(const QString& path) const;
    // Something is at `path`, following links as an ordinary open would.
    [[nodiscard]] bool exists(const QString& path) const;

private:
    const SystemCalls& m_systemCalls;
};

} // namespace kestrow
