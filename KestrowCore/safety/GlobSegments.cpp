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
        if (end > start)
            m_segments.push_back(
                {.start = start, .length = end - start, .plainAscii = isPlainAscii(whole.mid(start, end - start))});
        start = end + 1;
    }
}

bool GlobSegments::isPlainAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7f; });
}

QStringView GlobSegments::at(qsizetype index) const
{
    const Segment& segment = m_segments[static_cast<size_t>(index)];
    return QStringView(m_text).mid(segment.start, segment.length);
}

bool GlobSegments::isGlobstar(qsizetype index) const
{
    return at(index) == QLatin1String("**");
}

} // namespace kestrow
