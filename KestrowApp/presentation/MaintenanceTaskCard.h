#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace kestrow {

// One quick task of the Tune-Up screen. Its action blocks until done and returns the text
// to show; it may throw.
struct MaintenanceTaskCard {
    QString id;
    QString section;
    QString title;
    QString detail;
    QString icon;
    QString runningText;
    std::function<QString()> action;

    // Flush DNS, free purgeable space, reindex the search index of `volumePath`.
    [[nodiscard]] static std::vector<MaintenanceTaskCard> standardCards(const QString& volumePath);
};

} // namespace kestrow
