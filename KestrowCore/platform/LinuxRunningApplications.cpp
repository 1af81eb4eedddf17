#include "platform/ProcessList.h"
#include "platform/RunningApplications.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <sys/types.h>

namespace kestrow {

namespace {

class ProcessApplications final : public RunningApplications {
public:
    std::vector<std::int64_t> processIds(const QString& bundleIdentifier) const override
    {
        std::vector<std::int64_t> ids;
        for (const RunningProcess& process : ProcessList::runningProcesses())
            if (process.name == bundleIdentifier)
                ids.push_back(process.processId);
        return ids;
    }

    QSet<QString> runningIdentifiers() const override
    {
        QSet<QString> names;
        for (const RunningProcess& process : ProcessList::runningProcesses())
            names.insert(process.name);
        return names;
    }

    void requestTermination(std::int64_t processId, bool force) const override
    {
        ::kill(static_cast<pid_t>(processId), force ? SIGKILL : SIGTERM);
    }

    // A zombie has ended; only its parent's wait is missing.
    bool isTerminated(std::int64_t processId) const override
    {
        if (::kill(static_cast<pid_t>(processId), 0) == -1 && errno == ESRCH)
            return true;
        QFile stat(QStringLiteral("/proc/%1/stat").arg(processId));
        if (!stat.open(QIODevice::ReadOnly))
            return true;
        const QByteArray line = stat.read(4096);
        const qsizetype close = line.lastIndexOf(')');
        return close >= 0 && close + 2 < line.size() && line[close + 2] == 'Z';
    }
};

} // namespace

std::shared_ptr<const RunningApplications> RunningApplications::system()
{
    return std::make_shared<ProcessApplications>();
}

} // namespace kestrow
