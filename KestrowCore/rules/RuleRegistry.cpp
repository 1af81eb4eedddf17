#include "rules/RuleRegistry.h"

#include "platform/SystemMessage.h"

#include "platform/AtomicFileWriter.h"
#include "platform/HostSystem.h"
#include "platform/PathText.h"
#include "rules/BuiltInRules.h"
#include "rules/LinuxRules.h"
#include "rules/RuleCatalog.h"
#include "safety/GlobMatcher.h"
#include "safety/SandboxValidator.h"

#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

namespace kestrow {

namespace {

using Case = RuleRegistryError::Case;

// Far beyond any catalogue of rules a person keeps; a larger file is not read into memory.
constexpr qsizetype maximumRulesFileSize = 16 * 1024 * 1024;

// Letters, marks and digits of any script, plus dot, underscore and hyphen.
bool isValidRuleId(const QString& id)
{
    const QList<uint> scalars = id.toUcs4();
    return std::all_of(scalars.begin(), scalars.end(), [](uint scalar) {
        if (scalar == '.' || scalar == '_' || scalar == '-')
            return true;
        switch (QChar::category(char32_t(scalar))) {
        case QChar::Letter_Uppercase:
        case QChar::Letter_Lowercase:
        case QChar::Letter_Titlecase:
        case QChar::Letter_Modifier:
        case QChar::Letter_Other:
        case QChar::Mark_NonSpacing:
        case QChar::Mark_SpacingCombining:
        case QChar::Mark_Enclosing:
        case QChar::Number_DecimalDigit:
        case QChar::Number_Letter:
        case QChar::Number_Other:
            return true;
        default:
            return false;
        }
    });
}

bool anyMatches(const std::vector<GlobSegments>& patterns, const GlobSegments& path)
{
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const GlobSegments& pattern) { return GlobMatcher::matches(pattern, path); });
}

std::vector<GlobSegments> segmentsOf(const QStringList& patterns, const QString& homeURL)
{
    std::vector<GlobSegments> segments;
    segments.reserve(static_cast<size_t>(patterns.size()));
    for (const QString& pattern : patterns)
        segments.push_back(GlobMatcher::patternSegments(pattern, homeURL));
    return segments;
}

} // namespace

RuleRegistry::RuleRegistry(Options options)
    : m_rulesFileURL(options.rulesFileURL.value_or(PathText::appending(
          PathText::appending(options.homeURL, QStringLiteral(".kestrow")), QStringLiteral("rules.json"))))
    , m_homeURL(std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
{
    const QDateTime builtAt = QDateTime::currentDateTimeUtc();
    std::vector<RuleDefinition> builtIn = BuiltInRules::catalogue(builtAt);
    if (currentHostSystem() == HostSystem::gnuLinux)
        std::ranges::move(LinuxRules::catalogue(builtAt), std::back_inserter(builtIn));
    for (RuleDefinition& rule : builtIn)
        m_rulesById.emplace(rule.id, std::move(rule));
    rebuildMatchableRules();
}

void RuleRegistry::loadCustomRules()
{
    const std::lock_guard operation(m_operation);
    const FileManager::RegularFileRead read =
        m_fileManager->readRegularFile(m_rulesFileURL, maximumRulesFileSize + 1, true);
    if (!read.opened && (read.errorCode == ENOENT || read.errorCode == ENOTDIR)) {
        m_refusedRules.clear();
        return;
    }
    const auto unreadable = [this](const QString& reason) {
        return RuleRegistryError(Case::catalogPersistenceFailed, QStringLiteral("Could not read rules file at ") +
                                                                     m_rulesFileURL + QStringLiteral(": ") + reason);
    };
    if (read.errorCode != 0)
        throw unreadable(read.errorDescription);
    if (read.bytes.size() > maximumRulesFileSize)
        throw unreadable(SystemMessage::of(EFBIG));
    RuleCatalog catalog;
    try {
        catalog = RuleCatalog::fromFileText(read.bytes);
    } catch (const JsonDecodingError& error) {
        throw RuleRegistryError(Case::catalogDecodingFailed, error.description());
    }
    std::vector<RefusedRule> refused;
    for (RuleDefinition& rule : catalog.rules) {
        const auto existing = m_rulesById.find(rule.id);
        if (existing != m_rulesById.end() && existing->second.isBuiltIn)
            continue; // built-ins always win
        try {
            SandboxValidator::validatePatterns(rule.patterns, m_homeURL, m_fileManager->systemCalls());
        } catch (const SandboxSecurityError& error) {
            refused.push_back({std::move(rule), error});
            continue;
        }
        m_rulesById.insert_or_assign(rule.id, std::move(rule));
    }
    m_refusedRules = std::move(refused);
    rebuildMatchableRules();
}

void RuleRegistry::saveCustomRules()
{
    const std::lock_guard operation(m_operation);
    saveLocked();
}

void RuleRegistry::saveLocked() const
{
    if (!m_refusedRules.empty()) {
        QStringList ids;
        for (const RefusedRule& refused : m_refusedRules)
            ids.append(refused.rule.id);
        throw RuleRegistryError(Case::catalogPersistenceFailed,
                                QStringLiteral("%1 holds rules that the sandbox refuses (%2), which a new file "
                                               "would lose; nothing was written. Fix or remove them there first.")
                                    .arg(m_rulesFileURL, ids.join(QStringLiteral(", "))));
    }
    RuleCatalog catalog{.version = RuleCatalog::currentVersion, .updatedAt = QDateTime::currentDateTimeUtc()};
    for (const auto& [id, rule] : m_rulesById)
        if (!rule.isBuiltIn)
            catalog.rules.push_back(rule);
    // A reader sees the old text or the new one, never a mix.
    const FileOperationResult written =
        AtomicFileWriter(m_fileManager->systemCalls()).write(m_rulesFileURL, catalog.fileText(), true);
    if (!written.succeeded)
        throw RuleRegistryError(Case::catalogPersistenceFailed, QStringLiteral("Failed to write rules to ") +
                                                                    m_rulesFileURL + QStringLiteral(": ") +
                                                                    written.errorDescription);
}

void RuleRegistry::registerRule(const RuleDefinition& rule)
{
    const std::lock_guard operation(m_operation);
    if (rule.id.isEmpty())
        throw RuleRegistryError(Case::invalidRuleId, QStringLiteral("(empty)"));
    if (!isValidRuleId(rule.id))
        throw RuleRegistryError(Case::invalidRuleId, rule.id);
    const auto existing = m_rulesById.find(rule.id);
    if (existing != m_rulesById.end() && existing->second.isBuiltIn)
        throw RuleRegistryError(Case::cannotOverwriteBuiltIn, rule.id);
    if (rule.patterns.isEmpty())
        throw RuleRegistryError(Case::emptyPatterns, rule.id);
    SandboxValidator::validatePatterns(rule.patterns, m_homeURL, m_fileManager->systemCalls());

    RuleDefinition stored = rule;
    if (stored.isBuiltIn) {
        // Only the catalogue is built in; a caller's rule becomes a dynamic one.
        const QDateTime now = QDateTime::currentDateTimeUtc();
        stored.isBuiltIn = false;
        stored.synthesizedBy = rule.synthesizedBy.value_or(QStringLiteral("dynamic"));
        stored.createdAt = rule.createdAt.value_or(now);
        stored.updatedAt = now;
    }
    m_rulesById.insert_or_assign(stored.id, std::move(stored));
    rebuildMatchableRules();
    saveLocked();
}

void RuleRegistry::setRuleEnabled(const QString& id, bool enabled)
{
    const std::lock_guard operation(m_operation);
    const auto found = m_rulesById.find(id);
    if (found == m_rulesById.end())
        throw RuleRegistryError(Case::invalidRuleId,
                                QStringLiteral("Rule with ID '") + id + QStringLiteral("' not found."));
    found->second.enabled = enabled;
    rebuildMatchableRules();
    // A built-in's switch lasts as long as this registry.
    if (!found->second.isBuiltIn)
        saveLocked();
}

void RuleRegistry::removeRule(const QString& id)
{
    const std::lock_guard operation(m_operation);
    const auto found = m_rulesById.find(id);
    if (found == m_rulesById.end())
        return;
    if (found->second.isBuiltIn)
        throw RuleRegistryError(Case::cannotOverwriteBuiltIn,
                                QStringLiteral("Built-in rule '") + id + QStringLiteral("' cannot be deleted."));
    m_rulesById.erase(found);
    rebuildMatchableRules();
    saveLocked();
}

std::vector<RuleDefinition> RuleRegistry::allRules() const
{
    const std::lock_guard operation(m_operation);
    std::vector<RuleDefinition> rules;
    rules.reserve(m_rulesById.size());
    for (const auto& [id, rule] : m_rulesById)
        rules.push_back(rule);
    return rules;
}

std::vector<RuleDefinition> RuleRegistry::activeRules() const
{
    const std::lock_guard operation(m_operation);
    return activeRulesLocked();
}

std::vector<RuleDefinition> RuleRegistry::activeRulesLocked() const
{
    std::vector<RuleDefinition> rules;
    for (const auto& [id, rule] : m_rulesById)
        if (rule.enabled)
            rules.push_back(rule);
    return rules;
}

std::optional<RuleDefinition> RuleRegistry::rule(const QString& withId) const
{
    const std::lock_guard operation(m_operation);
    const auto found = m_rulesById.find(withId);
    if (found == m_rulesById.end())
        return std::nullopt;
    return found->second;
}

std::vector<RuleDefinition> RuleRegistry::rules(StorageCategory forCategory) const
{
    const std::lock_guard operation(m_operation);
    std::vector<RuleDefinition> rules = activeRulesLocked();
    std::erase_if(rules, [forCategory](const RuleDefinition& rule) { return rule.category != forCategory; });
    return rules;
}

std::vector<RuleRegistry::RefusedRule> RuleRegistry::refusedRules() const
{
    const std::lock_guard operation(m_operation);
    return m_refusedRules;
}

std::vector<RuleDefinition> RuleRegistry::matchingRules(const QString& forPath) const
{
    const std::lock_guard operation(m_operation);
    const GlobSegments path = GlobMatcher::pathSegments(forPath);
    std::vector<RuleDefinition> rules;
    for (const MatchableRule& matchable : m_matchableRules) {
        // An exclusion always wins over a pattern.
        if (!anyMatches(matchable.excludedPatterns, path) && anyMatches(matchable.patterns, path))
            rules.push_back(*matchable.rule);
    }
    return rules;
}

void RuleRegistry::rebuildMatchableRules()
{
    m_matchableRules.clear();
    for (const auto& [id, rule] : m_rulesById)
        if (rule.enabled)
            m_matchableRules.push_back({.rule = &rule,
                                        .patterns = segmentsOf(rule.patterns, m_homeURL),
                                        .excludedPatterns = segmentsOf(rule.excludedPatterns, m_homeURL)});
}

} // namespace kestrow
