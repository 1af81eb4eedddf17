#include "platform/TrashEntry.h"

#include "platform/NativePath.h"

namespace kestrow {

QString TrashEntry::filePath() const
{
    return NativePath::decode(folder.path + "/files/" + name);
}

QString TrashEntry::infoPath() const
{
    return NativePath::decode(folder.path + "/info/" + recordName());
}

} // namespace kestrow
