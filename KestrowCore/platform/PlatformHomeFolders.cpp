#include "platform/PlatformHomeFolders.h"

#if !defined(__APPLE__)
#include "platform/FileManager.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "platform/UserDirsParser.h"

#include <QtGlobal>
#endif

namespace kestrow {

#if defined(__APPLE__)

const std::vector<PlatformHomeFolders::Folder>& PlatformHomeFolders::fixedFolders()
{
    static const std::vector<Folder> none;
    return none;
}

QStringList PlatformHomeFolders::personalFolders(const QString&, const SystemCalls&)
{
    return {};
}

#else

namespace {

// A user-dirs.dirs is a few hundred bytes; more than this is no such file.
constexpr qsizetype largestUserDirsFile = 64 * 1024;

bool isOrUnder(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

} // namespace

const std::vector<PlatformHomeFolders::Folder>& PlatformHomeFolders::fixedFolders()
{
    static const std::vector<Folder> folders{
        {QStringLiteral("Videos"), Kind::personal},          {QStringLiteral(".local/share/keyrings"), Kind::secrets},
        {QStringLiteral(".password-store"), Kind::secrets},  {QStringLiteral(".pki"), Kind::secrets},
        {QStringLiteral(".mozilla"), Kind::profile},         {QStringLiteral(".thunderbird"), Kind::profile},
        {QStringLiteral(".local/share/Trash"), Kind::trash},
    };
    return folders;
}

QStringList PlatformHomeFolders::personalFolders(const QString& homePath, const SystemCalls& systemCalls)
{
    QStringList configFolders;
    const QString configHome = NativePath::decode(qgetenv("XDG_CONFIG_HOME"));
    if (configHome.startsWith(QLatin1Char('/')))
        configFolders.append(PathText::removingDotComponents(configHome));
    const QString homeConfig = PathText::appending(homePath, QStringLiteral(".config"));
    if (!configFolders.contains(homeConfig))
        configFolders.append(homeConfig);

    // The calls are borrowed for the length of this call only.
    const FileManager fileManager(
        std::shared_ptr<const SystemCalls>(std::shared_ptr<const SystemCalls>(), &systemCalls));
    static const QStringList names{QStringLiteral("DOCUMENTS"),  QStringLiteral("DESKTOP"), QStringLiteral("PICTURES"),
                                   QStringLiteral("MUSIC"),      QStringLiteral("VIDEOS"),  QStringLiteral("TEMPLATES"),
                                   QStringLiteral("PUBLICSHARE")};
    QStringList folders;
    for (const QString& configFolder : configFolders) {
        const FileManager::RegularFileRead file = fileManager.readRegularFile(
            PathText::appending(configFolder, QStringLiteral("user-dirs.dirs")), largestUserDirsFile, true);
        if (file.errorCode != 0)
            continue;
        const QHash<QString, QString> assigned = UserDirsParser::parse(file.bytes, homePath);
        for (const QString& name : names) {
            const QString folder = assigned.value(name);
            if (!folder.isEmpty() && !isOrUnder(homePath, folder) && !folders.contains(folder))
                folders.append(folder);
        }
    }
    return folders;
}

#endif

} // namespace kestrow
