#pragma once

#include "safety/GlobSegments.h"

#include <QString>
#include <QStringView>

namespace kestrow {

// Decides whether a path falls under a rule's glob pattern. Both are split on "/" into
// segments; "**" as a whole segment takes zero or more segments, "*" any run of characters
// within one segment, "?" exactly one character. Case-sensitive; characters compare by
// canonical equivalence; no escapes and no character classes. Stateless.
class GlobMatcher {
public:
    [[nodiscard]] static bool matches(const QString& pattern, const QString& path, const QString& homeURL);
    // The same on both sides cut once: a pattern from `patternSegments`, a path from
    // `pathSegments`. This is how one path is tried against many patterns.
    [[nodiscard]] static bool matches(const GlobSegments& pattern, const GlobSegments& path);
    [[nodiscard]] static GlobSegments patternSegments(const QString& pattern, const QString& homeURL);
    [[nodiscard]] static GlobSegments pathSegments(const QString& path);
    // "~" becomes the standardized home, "~/rest" the home joined with the rest (stars kept
    // as written); any other pattern is standardized, the empty result becoming "/".
    [[nodiscard]] static QString expandHome(const QString& pattern, const QString& homeURL);
    // The standardized path, "/" when that is empty.
    [[nodiscard]] static QString normalizePath(const QString& path);
    // One pattern segment against one path segment, character by character (grapheme
    // clusters), with the single-backtrack scan for "*".
    [[nodiscard]] static bool matchWildcard(const QString& pattern, const QString& text);

private:
    static bool matchSegments(const GlobSegments& pattern, qsizetype pIdx, const GlobSegments& path, qsizetype sIdx);
    static bool matchSegment(const GlobSegments& pattern, qsizetype pIdx, const GlobSegments& path, qsizetype sIdx);
    // `plain`: both segments are printable ASCII and can be scanned as they stand.
    static bool matchWildcard(QStringView pattern, QStringView text, bool plain);
};

} // namespace kestrow
