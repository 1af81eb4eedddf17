#pragma once

#include "platform/LinkResolver.h"
#include "platform/SystemCalls.h"
#include "safety/ProtectedHomeGround.h"
#include "safety/SandboxSecurityError.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kestrow {

// The hard limit on what the program may touch: decides from the path text and the home
// alone (plus the symbolic links on disk, and the names the user gave the personal folders)
// whether a path or a rule pattern lies in allowed ground. Every operation returns normally
// when it does and throws SandboxSecurityError when it does not. Stateless; callable from
// any thread.
//
// The home counts as given and, when a symbolic link leads elsewhere, as resolved: the home
// itself, the protected folders and the depth rule hold for both forms (the given form is
// tested first). Links are read through `systemCalls`; a link that cannot be read for any
// reason but absence refuses the path, since where it leads is unknown.
class SandboxValidator {
public:
    // The fourteen system prefixes, in their order. The last five have exceptions and are
    // tested before the loop over the first nine.
    [[nodiscard]] static const QStringList& forbiddenSystemPrefixes();
    // The ten folders below the home that are never touched, relative to the home. Each
    // platform adds its own (ProtectedHomeGround), refused the same way.
    [[nodiscard]] static const QStringList& forbiddenUserDirectories();

    // A path that may begin with "~". Resolves symbolic links on disk and checks the target
    // as well.
    static void validate(const QString& path, const QString& homeURL,
                         const SystemCalls& systemCalls = *SystemCalls::real());
    // The same with the platform's ground already read, for a batch of paths below one home:
    // `ground` must be built for this home's forms.
    static void validate(const QString& path, const QString& homeURL, const SystemCalls& systemCalls,
                         const ProtectedHomeGround& ground);
    // A rule pattern, which may hold wildcards and so is checked on its fixed stem; with a
    // base directory the pattern is taken below it and "~" means nothing.
    static void validatePattern(const QString& pattern, const std::optional<QString>& baseDirectory,
                                const QString& homeURL, const SystemCalls& systemCalls = *SystemCalls::real());
    // A rule's patterns in order, without a base directory, up to the first failure. (A rule's
    // excluded patterns are not checked: callers pass its `patterns` only.)
    static void validatePatterns(const QStringList& patterns, const QString& homeURL,
                                 const SystemCalls& systemCalls = *SystemCalls::real());

private:
    static void validateBelow(const QString& path, const QString& homePath, const QStringList& homes,
                              const LinkResolver& resolver, const ProtectedHomeGround& ground);
    // `homes`: the home as given, then as resolved when that differs.
    static void checkSystemPrefixes(const QString& path, const QStringList& homes);
    // The fixed list below `homePath`, then the platform's own ground.
    static void checkUserDirectories(const QString& path, const QString& homePath, const ProtectedHomeGround& ground);
    static void checkDepth(const QString& path, const QString& homePath);
    static void checkAllLists(const QString& path, const QStringList& homes, const ProtectedHomeGround& ground);
};

} // namespace kestrow
