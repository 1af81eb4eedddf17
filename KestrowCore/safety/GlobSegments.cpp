#include "safety/GlobSegments.h"

#include <algorithm>

namespace kestrow {

GlobSegments::GlobSegments(QString text)
    : m_text(std::move(text))
{
    const QStringView whole(m_text);
    for (qsizetype start = 0; start < whole.size();) {
        qsizetype end = whole.indexOf(QLatin1Char('/'), start);
        if (end < 0)
            end = whole.size();
        if (end > start) {
            const QStringView segment = whole.mid(start, end - start);
            m_segments.push_back({.start = start,
                                  .length = segment.size(),
                                  .plainAscii = isPlainAscii(segment),
                                  .globstar = segment == QLatin1String("**")});
        }
        start = end + 1;
    }
    while (m_leadingCount < size() && !isGlobstar(m_leadingCount))
        ++m_leadingCount;
}

bool GlobSegments::isPlainAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7f; });
}

} // namespace kestrow
