#include "platform/TreeRemover.h"

#include "platform/SystemMessage.h"

#include "platform/NativePath.h"
#include "platform/TreeWalker.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <system_error>

namespace kestrow {

namespace {

QString text(std::string_view path)
{
    return NativePath::decode(path.data(), static_cast<qsizetype>(path.size()));
}

FileOperationResult refusal(const QString& message)
{
    return {false, std::nullopt, message};
}

FileOperationResult changed(const QString& path)
{
    return refusal(QStringLiteral("\u201c%1\u201d changed after it was checked; nothing was removed.").arg(path));
}

// First looks the tree over, deleting nothing, then deletes it; either pass ends at the first
// mount point or at the first thing that cannot be read or removed.
class Removal final : public TreeWalker::Visitor {
public:
    explicit Removal(const SystemCalls& calls)
        : m_calls(calls)
    {
    }

    bool entry(int folder, std::string_view folderPath, const char* name, unsigned char, const FileStatus*) override
    {
        if (!deleting || m_calls.unlinkAt(folder, name, 0) == 0 || errno == ENOENT)
            return true;
        return unreadableFolder(std::string(folderPath) + '/' + name, errno);
    }

    bool leftFolder(int folder, const char* name, std::string_view path) override
    {
        if (!deleting || m_calls.unlinkAt(folder, name, AT_REMOVEDIR) == 0 || errno == ENOENT)
            return true;
        return unreadableFolder(path, errno);
    }

    bool unreadableFolder(std::string_view path, int errorCode) override
    {
        failedPath = path;
        error = errorCode;
        return false;
    }

    bool mountPoint(std::string_view path) override
    {
        foundMount = path;
        return false;
    }

    bool deleting = false;
    std::string failedPath;
    int error = 0;
    std::optional<std::string> foundMount;

private:
    const SystemCalls& m_calls;
};

} // namespace

TreeRemover::TreeRemover(const FileManager& fileManager)
    : m_fileManager(fileManager)
{
}

FileOperationResult TreeRemover::failure(const QString& path, int errorCode)
{
    return refusal(QStringLiteral("Could not remove \u201c%1\u201d: %2").arg(path, SystemMessage::of(errorCode)));
}

FileOperationResult TreeRemover::remove(const AnchoredItem& item) const
{
    const int anchored = m_fileManager.verifyAnchored(item);
    if (anchored == ESTALE)
        return changed(item.path);
    if (anchored != 0)
        return failure(item.path, anchored);
    if (item.status.isDirectory())
        return removeFolder(item);
    if (m_fileManager.systemCalls().unlinkAt(item.parent.get(), item.name.constData(), 0) != 0)
        return failure(item.path, errno);
    return {true, std::nullopt, {}};
}

FileOperationResult TreeRemover::removeFolder(const AnchoredItem& item) const
{
    const SystemCalls& calls = m_fileManager.systemCalls();
    const QString isMountPoint = QStringLiteral("\u201c%1\u201d is a mount point; nothing was removed.").arg(item.path);
    FileStatus parent;
    if (item.status.isMountRoot)
        return refusal(isMountPoint);
    if (calls.statAt(item.parent.get(), "", AT_EMPTY_PATH, parent) != 0)
        return failure(item.path, errno);

    Removal removal(calls);
    TreeWalker walker(calls, removal);
    FileStatus root;
    // Each pass opens the folder afresh, on its parent's mount, checked to be the anchored one.
    const auto pass = [&]() -> std::optional<FileOperationResult> {
        UniqueFd folder(walker.openFolder(item.parent.get(), item.name.constData(), &parent));
        if (!folder.isOpen())
            return errno == EXDEV ? refusal(isMountPoint) : failure(item.path, errno);
        if (calls.statAt(folder.get(), "", AT_EMPTY_PATH, root) != 0)
            return failure(item.path, errno);
        if (!root.isSameObject(item.status))
            return changed(item.path);
        if (!walker.walk(std::move(folder), NativePath::encode(item.path).toStdString(), &root)) {
            if (removal.foundMount)
                return refusal(QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; %3")
                                   .arg(item.path, text(*removal.foundMount),
                                        removal.deleting ? QStringLiteral("the removal stopped there.")
                                                         : QStringLiteral("nothing was removed.")));
            return failure(text(removal.failedPath), removal.error);
        }
        return std::nullopt;
    };
    if (auto failed = pass())
        return *failed;
    removal.deleting = true;
    if (auto failed = pass())
        return *failed;
    if (calls.unlinkAt(item.parent.get(), item.name.constData(), AT_REMOVEDIR) != 0)
        return failure(item.path, errno);
    return {true, std::nullopt, {}};
}

} // namespace kestrow
