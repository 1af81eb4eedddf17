#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace kestrow {

// A path or an expanded glob pattern cut at "/" once, empty segments dropped, so that one side
// can be tried against many of the other without cutting it again. Keeps its own text.
class GlobSegments {
public:
    explicit GlobSegments(QString text);

    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_segments.size()); }
    [[nodiscard]] QStringView at(qsizetype index) const
    {
        const Segment& segment = m_segments[static_cast<size_t>(index)];
        return QStringView(m_text).mid(segment.start, segment.length);
    }
    // Every character is printable ASCII, so each is a whole user-perceived character with no
    // other canonical form and the text can be compared as it stands. The common case of paths.
    [[nodiscard]] static bool isPlainAscii(QStringView text);
    [[nodiscard]] bool isPlainAscii(qsizetype index) const { return m_segments[static_cast<size_t>(index)].plainAscii; }
    // The segment is "**", which stands for zero or more whole segments.
    [[nodiscard]] bool isGlobstar(qsizetype index) const { return m_segments[static_cast<size_t>(index)].globstar; }
    // How many segments come before the first "**" (all of them when there is none).
    [[nodiscard]] qsizetype leadingCount() const { return m_leadingCount; }

private:
    struct Segment {
        qsizetype start = 0;
        qsizetype length = 0;
        bool plainAscii = true;
        bool globstar = false;
    };

    QString m_text;
    std::vector<Segment> m_segments;
    qsizetype m_leadingCount = 0;
};

} // namespace kestrow
