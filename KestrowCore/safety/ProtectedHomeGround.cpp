#include "safety/ProtectedHomeGround.h"

#include "platform/PathText.h"
#include "platform/PlatformHomeFolders.h"

namespace kestrow {

namespace {

using Kind = PlatformHomeFolders::Kind;

QString reasonFor(Kind kind, const QString& shown)
{
    switch (kind) {
    case Kind::personal:
        return QStringLiteral("Protected user personal directory (") + shown + QStringLiteral(").");
    case Kind::secrets:
        return QStringLiteral("Protected security credentials or keychains.");
    case Kind::profile:
        return QStringLiteral("Protected browser or mail profile (") + shown + QStringLiteral(").");
    case Kind::trash:
        return QStringLiteral("Protected Trash (") + shown + QStringLiteral("): emptying it is an act of its own.");
    }
    return {};
}

} // namespace

ProtectedHomeGround::ProtectedHomeGround(const QStringList& homes, const SystemCalls& systemCalls)
{
    for (const QString& home : homes) {
        const auto add = [this, &home](const QString& path, Kind kind) {
            const QString prefix = home + QLatin1Char('/');
            const bool below = path.startsWith(prefix);
            const QString name = below ? path.mid(prefix.size()) : path;
            m_folders.push_back({path, name, reasonFor(kind, below ? QStringLiteral("~/") + name : path)});
        };
        for (const PlatformHomeFolders::Folder& folder : PlatformHomeFolders::fixedFolders())
            add(PathText::appending(home, folder.relativePath), folder.kind);
        for (const QString& folder : PlatformHomeFolders::personalFolders(home, systemCalls))
            add(folder, Kind::personal);
    }
}

const ProtectedHomeGround::Folder* ProtectedHomeGround::folderHolding(const QString& path) const
{
    for (const Folder& folder : m_folders) {
        if (path.compare(folder.path, Qt::CaseInsensitive) == 0 ||
            (path.size() > folder.path.size() && path.at(folder.path.size()) == QLatin1Char('/') &&
             path.startsWith(folder.path, Qt::CaseInsensitive)))
            return &folder;
    }
    return nullptr;
}

} // namespace kestrow
