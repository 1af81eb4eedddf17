#include "platform/TrashLocation.h"

#include "platform/TopDirectory.h"

#include <QtGlobal>

#include <fcntl.h>
#include <unistd.h>

namespace kestrow {

namespace {

// The nearest folder on the way to `path` that exists, opened, and its path.
UniqueFd nearestFolder(const SystemCalls& calls, QByteArray& path)
{
    for (;;) {
        UniqueFd folder(calls.openAt(AT_FDCWD, path.constData(), O_RDONLY | O_DIRECTORY));
        if (folder.isOpen() || path == "/")
            return folder;
        path.truncate(std::max<qsizetype>(1, path.lastIndexOf('/')));
    }
}

} // namespace

QByteArray TrashLocation::homeTrashPath()
{
    QByteArray data = qgetenv("XDG_DATA_HOME");
    if (!data.startsWith('/')) {
        data = qgetenv("HOME");
        if (!data.startsWith('/'))
            return {};
        while (data.endsWith('/'))
            data.chop(1);
        data += "/.local/share";
    }
    while (data.size() > 1 && data.endsWith('/'))
        data.chop(1);
    return data.endsWith('/') ? QByteArray(data + "Trash") : QByteArray(data + "/Trash");
}

std::vector<TrashLocation::Folder> TrashLocation::foldersFor(const SystemCalls& calls, const QByteArray& originalPath)
{
    const QByteArray home = homeTrashPath();
    QByteArray homeWay = home;
    QByteArray way = originalPath;
    const UniqueFd homeFolder = home.isEmpty() ? UniqueFd() : nearestFolder(calls, homeWay);
    const UniqueFd folder = nearestFolder(calls, way);
    FileStatus homeStatus;
    FileStatus status;
    if (!folder.isOpen() || calls.statAt(folder.get(), "", AT_EMPTY_PATH, status) != 0)
        return home.isEmpty() ? std::vector<Folder>{} : std::vector<Folder>{{home, {}}};
    if (homeFolder.isOpen() && calls.statAt(homeFolder.get(), "", AT_EMPTY_PATH, homeStatus) == 0 &&
        TopDirectory::onSameMount(status, homeStatus))
        return {{home, {}}};
    int errorCode = 0;
    const std::optional<TopDirectory> top = TopDirectory::of(calls, folder.get(), way, errorCode);
    if (!top)
        return {};
    const QByteArray base = top->path == "/" ? QByteArray() : top->path;
    const QByteArray uid = QByteArray::number(::getuid());
    return {{base + "/.Trash/" + uid, top->path}, {base + "/.Trash-" + uid, top->path}};
}

} // namespace kestrow
