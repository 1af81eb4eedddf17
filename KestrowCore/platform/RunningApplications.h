#pragma once

#include <QSet>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

namespace kestrow {

// The running applications of the session, found by bundle identifier, and the means to stop
// them. On macOS these are the workspace's applications; on Linux the processes whose name is
// the identifier (the name /proc gives, completed from the first argument when cut short).
// Safe to call from any thread.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;

    // The platform's own.
    [[nodiscard]] static std::shared_ptr<const RunningApplications> system();

    // The process ids of the applications with `bundleIdentifier` running now.
    [[nodiscard]] virtual std::vector<std::int64_t> processIds(const QString& bundleIdentifier) const = 0;
    // Every identifier with at least one application running now: one look for many questions.
    [[nodiscard]] virtual QSet<QString> runningIdentifiers() const = 0;
    // Asks the application to quit, or with `force` ends it at once. Gone already is no failure.
    virtual void requestTermination(std::int64_t processId, bool force) const = 0;
    [[nodiscard]] virtual bool isTerminated(std::int64_t processId) const = 0;
};

} // namespace kestrow
