#include "apps/InstalledAppsIndex.h"

#include "apps/TokenNormalizer.h"
#include "platform/PathText.h"

namespace kestrow {

namespace {

void insertNonEmpty(QSet<QString>& set, const QString& text)
{
    if (!text.isEmpty())
        set.insert(text);
}

// The bundle's file name without its extension.
QString baseName(const QString& bundlePath)
{
    const QString name = PathText::lastComponent(bundlePath);
    const QString extension = PathText::pathExtension(name);
    return extension.isEmpty() ? name : name.left(name.size() - extension.size() - 1);
}

} // namespace

InstalledAppsIndex::InstalledAppsIndex(const std::vector<InstalledApp>& apps)
{
    const QString groupPrefix = QStringLiteral("group.");
    for (const InstalledApp& app : apps) {
        const QString identifier = app.bundleIdentifier.toLower();
        const QStringList groups = app.appGroupIdentifiers.value_or(QStringList());
        exactBundleIDs.insert(identifier);
        exactBundleIDs.insert(groupPrefix + identifier);
        for (const QString& group : groups) {
            const QString lowered = group.toLower();
            exactBundleIDs.insert(lowered);
            if (lowered.startsWith(groupPrefix))
                exactBundleIDs.insert(lowered.mid(groupPrefix.size()));
        }

        const QString base = baseName(app.bundlePath);
        exactDisplayNames.insert(app.displayName.toLower());
        bundleBasenames.insert(base.toLower());
        insertNonEmpty(normalizedAppTokens, TokenNormalizer::normalize(app.displayName));
        insertNonEmpty(normalizedAppTokens, TokenNormalizer::normalize(base));

        addLastPart(app.bundleIdentifier);
        for (const QString& group : groups)
            addLastPart(group);

        QSet<QString> tokens;
        for (const QString& text :
             {app.displayName, base, app.bundleIdentifier, TokenNormalizer::stripTrailingDigits(app.bundleIdentifier)})
            for (const QString& token : TokenNormalizer::tokenize(text))
                tokens.insert(token);
        for (const QString& token : tokens)
            tokenToAppIDs[token].insert(app.id);
        appDiscreteTokenSets.push_back(std::move(tokens));

        const QStringList parts = app.bundleIdentifier.split(QLatin1Char('.'));
        reverseDNSPrefixes[parts.mid(0, 2).join(QLatin1Char('.'))].insert(app.id);
    }
}

void InstalledAppsIndex::addInstalledNames(const QSet<QString>& names)
{
    for (const QString& name : names) {
        const QString lowered = name.toLower();
        QStringList forms{lowered};
        if (lowered.startsWith(QLatin1String("lib")) && lowered.size() > 3)
            forms.append(lowered.mid(3));
        for (const QString& form : forms) {
            exactDisplayNames.insert(form);
            bundleBasenames.insert(form);
            insertNonEmpty(normalizedAppTokens, TokenNormalizer::normalize(form));
            if (form.count(QLatin1Char('.')) >= 2) {
                exactBundleIDs.insert(form);
                addLastPart(form);
            }
            QSet<QString> tokens;
            for (const QString& token : TokenNormalizer::tokenize(form))
                tokens.insert(token);
            if (!tokens.isEmpty())
                appDiscreteTokenSets.push_back(std::move(tokens));
        }
    }
}

void InstalledAppsIndex::addLastPart(const QString& identifier)
{
    const QString last = identifier.split(QLatin1Char('.')).last().toLower();
    for (const QString& part : {last, TokenNormalizer::stripTrailingDigits(last)}) {
        if (part.isEmpty())
            continue;
        bundleLastComponents.insert(part);
        bundleBasenames.insert(part);
        insertNonEmpty(normalizedAppTokens, TokenNormalizer::normalize(part));
    }
}

bool InstalledAppsIndex::matchesInstalledApp(const QString& identifier) const
{
    const QString s = identifier.toLower();
    const QString groupPrefix = QStringLiteral("group.");
    if (exactBundleIDs.contains(s))
        return true;
    if (s.startsWith(groupPrefix) && exactBundleIDs.contains(s.mid(groupPrefix.size())))
        return true;
    if (exactDisplayNames.contains(s) || bundleBasenames.contains(s) || bundleLastComponents.contains(s))
        return true;
    const QString stripped = TokenNormalizer::stripTrailingDigits(s);
    if (!stripped.isEmpty() && (bundleLastComponents.contains(stripped) || exactDisplayNames.contains(stripped) ||
                                bundleBasenames.contains(stripped)))
        return true;
    const QString normalized = TokenNormalizer::normalize(s);
    if (!normalized.isEmpty() && normalizedAppTokens.contains(normalized))
        return true;
    const QString normalizedStripped = TokenNormalizer::stripTrailingDigits(normalized);
    if (!normalizedStripped.isEmpty() && normalizedAppTokens.contains(normalizedStripped))
        return true;
    if (s.contains(QLatin1Char('.'))) {
        for (const QString& entry : exactBundleIDs)
            if (s.startsWith(entry + QLatin1Char('.')) || entry.startsWith(s + QLatin1Char('.')))
                return true;
    }
    const QStringList tokens = TokenNormalizer::tokenize(s);
    if (tokens.isEmpty())
        return false;
    for (const QSet<QString>& appTokens : appDiscreteTokenSets) {
        const auto found = std::count_if(tokens.begin(), tokens.end(),
                                         [&appTokens](const QString& token) { return appTokens.contains(token); });
        if (static_cast<double>(found) / static_cast<double>(tokens.size()) >= 0.8)
            return true;
    }
    return false;
}

} // namespace kestrow
