#include "platform/ProcessList.h"

#include <QFile>

#include <cstdlib>

#if defined(__APPLE__)
#include <libproc.h>
#else
#include <dirent.h>
#endif

namespace kestrow {

#if defined(__APPLE__)

std::vector<RunningProcess> ProcessList::runningProcesses()
{
    std::vector<RunningProcess> processes;
    pid_t pids[4096];
    // The call's result is taken as a byte count: four bytes an entry.
    const int bytes = proc_listallpids(pids, sizeof pids);
    if (bytes < 1)
        return processes;
    const int count = bytes / 4;
    for (int i = 0; i < count && i < 4096; ++i) {
        char name[1024];
        if (proc_name(pids[i], name, sizeof name) > 0)
            processes.push_back({pids[i], QString::fromUtf8(name)});
    }
    return processes;
}

#else

namespace {

QByteArray readSmallFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.read(4096);
}

} // namespace

// /proc/PID/comm holds at most 15 characters; a name cut there is completed from the first
// argument's last path component, so that "com.docker.backend" is seen whole.
std::vector<RunningProcess> ProcessList::runningProcesses()
{
    std::vector<RunningProcess> processes;
    DIR* proc = ::opendir("/proc");
    if (!proc)
        return processes;
    while (const dirent* entry = ::readdir(proc)) {
        const char* pid = entry->d_name;
        if (pid[0] < '0' || pid[0] > '9')
            continue;
        const QString base = QStringLiteral("/proc/") + QLatin1String(pid);
        QByteArray comm = readSmallFile(base + QStringLiteral("/comm")).trimmed();
        if (comm.isEmpty())
            continue;
        if (comm.size() >= 15) {
            const QByteArray cmdline = readSmallFile(base + QStringLiteral("/cmdline"));
            const QByteArray first = cmdline.left(cmdline.indexOf('\0'));
            const QByteArray program = first.mid(first.lastIndexOf('/') + 1);
            if (program.startsWith(comm))
                comm = program;
        }
        processes.push_back({std::strtoll(pid, nullptr, 10), QString::fromUtf8(comm)});
    }
    ::closedir(proc);
    return processes;
}

#endif

QStringList ProcessList::runningProcessNames()
{
    QStringList names;
    for (const RunningProcess& process : runningProcesses())
        names.append(process.name);
    return names;
}

} // namespace kestrow
