#pragma once

#include <QString>

#include <chrono>

namespace kestrow::cli {

// One line of progress on standard error, redrawn in place, shown only when standard error
// is a terminal and never more often than ten times a second.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();

    void update(const QString& text);
    void clear();

private:
    bool m_enabled;
    bool m_shown = false;
    std::chrono::steady_clock::time_point m_lastDraw;
};

} // namespace kestrow::cli
