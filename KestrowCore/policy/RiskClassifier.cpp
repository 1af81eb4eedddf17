#include "policy/RiskClassifier.h"

#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "rules/RuleRegistry.h"
#include "safety/CacheDirTagDetector.h"

#include <vector>

namespace kestrow {

namespace {

// How far below the home (or below any user's home, "/users/NAME/") an entry protects.
enum class Reach { folder, file };

// One list of protected ground below a home, with the reason it gives for an entry.
struct HomeList {
    std::vector<QString> entries;
    Reach reach;
    QString (*reasonFor)(const QString& entry);
};

const std::vector<QString>& systemEntries()
{
    static const std::vector<QString> entries{
        QStringLiteral("/system"),         QStringLiteral("/usr"),         QStringLiteral("/bin"),
        QStringLiteral("/sbin"),           QStringLiteral("/library"),     QStringLiteral("/etc"),
        QStringLiteral("/private/var/db"), QStringLiteral("/private/etc"), QStringLiteral("/private/var/root"),
        QStringLiteral("/var/root"),       QStringLiteral("/dev"),         QStringLiteral("/volumes"),
    };
    return entries;
}

const std::vector<HomeList>& homeLists()
{
    static const std::vector<HomeList> lists{
        {{QStringLiteral("documents"), QStringLiteral("desktop"), QStringLiteral("pictures"), QStringLiteral("music"),
          QStringLiteral("movies")},
         Reach::folder,
         [](const QString& entry) -> QString {
             return QStringLiteral("Protected user personal directory (~/") + entry + QStringLiteral(").");
         }},
        {{QStringLiteral(".cargo/bin"), QStringLiteral(".local/bin"), QStringLiteral(".bun/bin")},
         Reach::folder,
         [](const QString& entry) -> QString {
             return QStringLiteral("Protected executable user tool binaries (~/") + entry + QStringLiteral(").");
         }},
        {{QStringLiteral(".ssh"), QStringLiteral(".gnupg"), QStringLiteral("library/keychains"),
          QStringLiteral(".cargo/credentials.toml"), QStringLiteral(".npmrc"), QStringLiteral(".aws")},
         Reach::folder,
         [](const QString&) { return QStringLiteral("Protected security credentials or keychains."); }},
        {{QStringLiteral(".cargo/config.toml"), QStringLiteral(".gitconfig"), QStringLiteral(".zshrc"),
          QStringLiteral(".bashrc"), QStringLiteral(".gradle/gradle.properties")},
         Reach::file,
         [](const QString&) { return QStringLiteral("Protected active configuration file."); }},
    };
    return lists;
}

bool isOrUnder(const QString& lowered, const QString& directory)
{
    return lowered.startsWith(directory) &&
           (lowered.size() == directory.size() || lowered.at(directory.size()) == QLatin1Char('/'));
}

// The same entry in any user's home: "/users/NAME/entry", followed by "/" or the end for a
// folder, by the end alone for a file. This is the expression "^/users/[^/]+/entry(/|$)" (or
// "...entry$") tested by hand, its "$" included, which also holds before a final newline.
bool inAnyUsersHome(const QString& lowered, const QString& entry, Reach reach)
{
    const QLatin1String users("/users/");
    if (!lowered.startsWith(users))
        return false;
    const qsizetype nameEnd = lowered.indexOf(QLatin1Char('/'), users.size());
    if (nameEnd <= users.size())
        return false;
    QStringView rest = QStringView(lowered).mid(nameEnd + 1);
    if (!rest.startsWith(entry))
        return false;
    rest = rest.mid(entry.size());
    const bool atEnd = rest.isEmpty() || rest == QLatin1String("\n");
    return atEnd || (reach == Reach::folder && rest.startsWith(QLatin1Char('/')));
}

} // namespace

RiskClassifier::RiskClassifier(QString homeURL, std::shared_ptr<RuleRegistry> ruleRegistry,
                               std::shared_ptr<const FileManager> fileManager)
    : m_homeURL(std::move(homeURL))
    , m_ruleRegistry(std::move(ruleRegistry))
    , m_fileManager(fileManager ? std::move(fileManager) : std::make_shared<FileManager>())
{
    const QString homePath = PathText::standardizing(m_homeURL);
    m_homeEntries = homeEntries(homePath);
    const LinkResolution home = LinkResolver(m_fileManager->systemCalls()).resolve(homePath);
    if (home.errorCode == 0 && home.path == homePath)
        m_linkFreeHome = homePath;
}

RiskClassifier::HomeEntries RiskClassifier::homeEntries(const QString& homePath)
{
    HomeEntries entries;
    for (const HomeList& list : homeLists())
        for (const QString& entry : list.entries)
            entries.push_back(PathText::appending(homePath, entry).toLower());
    return entries;
}

std::optional<QString> RiskClassifier::evaluateKeepBoundaries(const QString& path, const HomeEntries& homeEntries)
{
    const QString lowered = path.toLower();
    for (const QString& entry : systemEntries())
        if (isOrUnder(lowered, entry))
            return QStringLiteral("Protected system OS directory (") + entry + QStringLiteral(").");
    auto homeEntry = homeEntries.begin();
    for (const HomeList& list : homeLists()) {
        for (const QString& entry : list.entries) {
            const bool inThisHome =
                list.reach == Reach::folder ? isOrUnder(lowered, *homeEntry) : lowered == *homeEntry;
            ++homeEntry;
            if (inThisHome || inAnyUsersHome(lowered, entry, list.reach))
                return list.reasonFor(entry);
        }
    }
    return std::nullopt;
}

RiskClassificationResult RiskClassifier::classify(const QString& path, StorageCategory category, bool isOrphaned) const
{
    const QString itemPath = PathText::standardizing(path);
    if (const auto reason = evaluateKeepBoundaries(itemPath, m_homeEntries))
        return {.riskTier = RiskTier::keep, .confidence = 1.0, .reason = *reason};

    const LinkResolver resolver(m_fileManager->systemCalls());
    const QString resolvedPath = PathText::standardizing(resolver.resolvingSymbolicLinks(path, m_linkFreeHome));
    if (resolvedPath != itemPath) {
        const QString resolvedHome = PathText::standardizing(resolver.resolvingSymbolicLinks(m_homeURL));
        auto reason = evaluateKeepBoundaries(resolvedPath, homeEntries(resolvedHome));
        if (!reason)
            reason = evaluateKeepBoundaries(resolvedPath, m_homeEntries);
        if (reason)
            return {.riskTier = RiskTier::keep,
                    .confidence = 1.0,
                    .reason = QStringLiteral("Symlink target points to protected boundary: ") + *reason};
    }

    if (m_ruleRegistry) {
        const std::vector<RuleDefinition> rules = m_ruleRegistry->matchingRules(itemPath);
        if (!rules.empty()) {
            // The most cautious rule wins; on a tie the first, which is the lowest id.
            const RuleDefinition* decisive = &rules.front();
            for (const RuleDefinition& rule : rules)
                if (rule.riskTier > decisive->riskTier)
                    decisive = &rule;
            return {.riskTier = decisive->riskTier,
                    .confidence = 1.0,
                    .reason = QStringLiteral("Matched RuleRegistry rule: ") + decisive->name + QStringLiteral(" (") +
                              decisive->id + QLatin1Char(')'),
                    .matchedRuleId = decisive->id};
        }
    }

    bool isDirectory = false;
    if (m_fileManager->fileExists(itemPath, &isDirectory) && isDirectory) {
        const std::optional<CacheDirTagInfo> tag = CacheDirTagDetector::detectTag(itemPath, *m_fileManager);
        if (tag && tag->isValid)
            return {.riskTier = RiskTier::safeToDelete,
                    .confidence = 1.0,
                    .reason = QStringLiteral("Verified CACHEDIR.TAG cache specification (") +
                              tag->applicationComment.value_or(QStringLiteral("standard cache")) + QLatin1Char(')'),
                    .hasCacheDirTag = true};
    }
    return categoryDefault(itemPath, category, isOrphaned);
}

RiskClassificationResult RiskClassifier::categoryDefault(const QString& itemPath, StorageCategory category,
                                                         bool isOrphaned)
{
    const auto result = [](RiskTier tier, double confidence, const QString& reason) {
        return RiskClassificationResult{.riskTier = tier, .confidence = confidence, .reason = reason};
    };
    const QString categoryReason = QStringLiteral("Category default risk classification.");
    switch (category) {
    case StorageCategory::developerCache:
    case StorageCategory::systemCaches:
    case StorageCategory::systemLogs:
    case StorageCategory::crashReports:
    case StorageCategory::browserCaches:
    case StorageCategory::leftovers:
        return result(RiskTier::safeToDelete, 0.95,
                      QStringLiteral("Standard transient application caches, logs, or reports that regenerate "
                                     "automatically."));
    case StorageCategory::aiModelWeights:
        return result(RiskTier::reviewRequired, 1.0,
                      QStringLiteral("Pretrained AI model weights require significant network bandwidth and time "
                                     "to re-download."));
    case StorageCategory::dockerVM:
        return isOrphaned ? result(RiskTier::reviewRequired, 1.0,
                                   QStringLiteral("Orphaned Docker VM disk image from uninstalled Docker Desktop."))
                          : result(RiskTier::keep, 1.0,
                                   QStringLiteral("Active Docker VM disk image. Uninstallation or shutdown required."));
    case StorageCategory::xcodeArtifacts:
        return itemPath.contains(QLatin1String("/Archives"))
                   ? result(RiskTier::reviewRequired, 1.0,
                            QStringLiteral("Xcode release archives contain dSYMs needed for App Store crash "
                                           "symbolication."))
                   : result(RiskTier::safeToDelete, 0.95,
                            QStringLiteral("Xcode intermediate build products regenerate automatically on "
                                           "compilation."));
    case StorageCategory::strayDependencies:
        return result(RiskTier::reviewRequired, 0.9,
                      QStringLiteral("Stray project dependencies in home root require verification before "
                                     "deletion."));
    case StorageCategory::mailDownloads:
        return result(RiskTier::reviewRequired, 1.0,
                      QStringLiteral("Locally cached email attachments may not exist on remote mail server if "
                                     "deleted."));
    case StorageCategory::applicationBundles:
    case StorageCategory::largeFiles:
    case StorageCategory::startupItems:
    case StorageCategory::unknownAnomaly:
        return result(RiskTier::reviewRequired, 0.85, categoryReason);
    case StorageCategory::dynamicRule:
        return result(RiskTier::safeToDelete, 0.85, categoryReason);
    }
    return result(RiskTier::reviewRequired, 0.85, categoryReason);
}

} // namespace kestrow
