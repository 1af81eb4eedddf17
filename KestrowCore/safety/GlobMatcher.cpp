#include "safety/GlobMatcher.h"

#include "platform/PathText.h"

#include <QTextBoundaryFinder>

#include <optional>
#include <vector>

namespace kestrow {

namespace {

// The user-perceived characters of `text`, each in its decomposed form so that canonically
// equivalent characters compare equal.
std::vector<QString> characters(QStringView text)
{
    std::vector<QString> result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (finder.toNextBoundary() >= 0) {
        const qsizetype end = finder.position();
        result.push_back(text.mid(start, end - start).toString().normalized(QString::NormalizationForm_D));
        start = end;
    }
    return result;
}

bool is(QChar character, char16_t wanted)
{
    return character == wanted;
}

bool is(const QString& character, char16_t wanted)
{
    return character.size() == 1 && character.at(0) == wanted;
}

// The single-backtrack scan over two sequences of characters.
template <typename Sequence> bool wildcardScan(const Sequence& pattern, const Sequence& text)
{
    const auto patternSize = static_cast<size_t>(pattern.size());
    const auto textSize = static_cast<size_t>(text.size());
    size_t p = 0;
    size_t t = 0;
    std::optional<size_t> lastStar;
    size_t savedText = 0;
    while (t < textSize) {
        // The literal test comes first: a "*" in the pattern meets a "*" in the text as itself.
        if (p < patternSize && (is(pattern[p], u'?') || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (p < patternSize && is(pattern[p], u'*')) {
            lastStar = p;
            savedText = t;
            ++p;
        } else if (!lastStar) {
            return false;
        } else {
            p = *lastStar + 1;
            t = ++savedText;
        }
    }
    while (p < patternSize && is(pattern[p], u'*'))
        ++p;
    return p == patternSize;
}

} // namespace

bool GlobMatcher::matches(const QString& pattern, const QString& path, const QString& homeURL)
{
    return matches(patternSegments(pattern, homeURL), pathSegments(path));
}

bool GlobMatcher::matches(const GlobSegments& pattern, const GlobSegments& path)
{
    // Each segment before the first "**" stands for the path's segment at the same place. The
    // last of them is the one that most often tells apart the patterns below one home, so it is
    // tried first.
    if (const qsizetype leading = pattern.leadingCount(); leading > 0) {
        if (path.size() < leading || !matchSegment(pattern, leading - 1, path, leading - 1))
            return false;
    }
    return matchSegments(pattern, 0, path, 0);
}

GlobSegments GlobMatcher::patternSegments(const QString& pattern, const QString& homeURL)
{
    return GlobSegments(expandHome(pattern, homeURL));
}

GlobSegments GlobMatcher::pathSegments(const QString& path)
{
    return GlobSegments(normalizePath(path));
}

QString GlobMatcher::expandHome(const QString& pattern, const QString& homeURL)
{
    const QString homePath = PathText::standardizing(homeURL);
    if (pattern == QLatin1String("~"))
        return homePath;
    if (pattern.startsWith(QLatin1String("~/")))
        return PathText::appending(homePath, pattern.mid(2));
    return normalizePath(pattern);
}

QString GlobMatcher::normalizePath(const QString& path)
{
    const QString standardized = PathText::standardizing(path);
    return standardized.isEmpty() ? QStringLiteral("/") : standardized;
}

bool GlobMatcher::matchSegments(const GlobSegments& pattern, qsizetype pIdx, const GlobSegments& path, qsizetype sIdx)
{
    if (pIdx == pattern.size() && sIdx == path.size())
        return true;
    if (sIdx == path.size()) {
        for (; pIdx < pattern.size(); ++pIdx)
            if (!pattern.isGlobstar(pIdx))
                return false;
        return true;
    }
    if (pIdx == pattern.size())
        return false;
    if (pattern.isGlobstar(pIdx)) {
        // Zero or more whole segments, shortest first.
        for (qsizetype next = sIdx; next <= path.size(); ++next)
            if (matchSegments(pattern, pIdx + 1, path, next))
                return true;
        return false;
    }
    return matchSegment(pattern, pIdx, path, sIdx) && matchSegments(pattern, pIdx + 1, path, sIdx + 1);
}

bool GlobMatcher::matchSegment(const GlobSegments& pattern, qsizetype pIdx, const GlobSegments& path, qsizetype sIdx)
{
    return matchWildcard(pattern.at(pIdx), path.at(sIdx), pattern.isPlainAscii(pIdx) && path.isPlainAscii(sIdx));
}

bool GlobMatcher::matchWildcard(const QString& pattern, const QString& text)
{
    return matchWildcard(pattern, text, GlobSegments::isPlainAscii(pattern) && GlobSegments::isPlainAscii(text));
}

bool GlobMatcher::matchWildcard(QStringView pattern, QStringView text, bool plain)
{
    if (plain)
        return wildcardScan(pattern, text);
    return wildcardScan(characters(pattern), characters(text));
}

} // namespace kestrow
