#pragma once

#include "platform/FileManager.h"
#include "rules/RuleDefinition.h"
#include "rules/RuleRegistryError.h"
#include "safety/GlobSegments.h"
#include "safety/SandboxSecurityError.h"

#include <QString>

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrow {

// The store of the rules in force: the built-in catalogue plus rules added at run time.
// Built-ins cannot be replaced or removed; every new rule passes the sandbox validator;
// the non-built-in rules persist to "rules.json". One operation runs at a time.
class RuleRegistry {
public:
    // A rule of the rules file that the sandbox refused, and why.
    struct RefusedRule {
        RuleDefinition rule;
        SandboxSecurityError error;
    };

    struct Options {
        QString homeURL;                     // every glob and sandbox check hangs on it
        std::optional<QString> rulesFileURL; // default: home + "/.kestrow/rules.json"
        std::shared_ptr<const FileManager> fileManager;
    };

    // Starts with the built-in catalogue; reads no file.
    explicit RuleRegistry(Options options);

    // Merges the file's rules into the table. A missing file is no error; built-ins win;
    // a rule with a pattern the sandbox refuses stays out of the table and is kept among the
    // refused rules instead. Throws RuleRegistryError (catalogPersistenceFailed,
    // catalogDecodingFailed); on a decoding failure nothing of the file is applied. A symbolic
    // link in the file's place is followed: it is the user's own file.
    void loadCustomRules();
    // Writes the non-built-in rules, atomically. Throws RuleRegistryError; so it does, writing
    // nothing, while refused rules are held, as the new file would lose them, or when the
    // file's place holds a symbolic link, which is neither replaced nor written through.
    void saveCustomRules();
    // Checks id, built-in clash and patterns in that order, stores the rule (replacing a
    // custom one of the same id) and saves. Throws RuleRegistryError or the validator's
    // SandboxSecurityError. A failed save keeps the rule in the table.
    void registerRule(const RuleDefinition& rule);
    // Throws RuleRegistryError for an unknown id. Saves only for a custom rule.
    void setRuleEnabled(const QString& id, bool enabled);
    // An unknown id does nothing; a built-in throws RuleRegistryError.
    void removeRule(const QString& id);

    // Sorted by id.
    [[nodiscard]] std::vector<RuleDefinition> allRules() const;
    // The enabled rules, sorted by id.
    [[nodiscard]] std::vector<RuleDefinition> activeRules() const;
    [[nodiscard]] std::optional<RuleDefinition> rule(const QString& withId) const;
    // The enabled rules of the category.
    [[nodiscard]] std::vector<RuleDefinition> rules(StorageCategory forCategory) const;
    // The enabled rules that match the path, sorted by id: no excluded pattern matches it
    // (tested first) and at least one pattern does.
    [[nodiscard]] std::vector<RuleDefinition> matchingRules(const QString& forPath) const;
    // The rules of the file that the last load refused, in file order.
    [[nodiscard]] std::vector<RefusedRule> refusedRules() const;

    [[nodiscard]] const QString& rulesFileURL() const { return m_rulesFileURL; }
    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }

private:
    // An enabled rule with its patterns expanded against the home and cut into segments, so
    // that each path is matched without cutting them again.
    struct MatchableRule {
        const RuleDefinition* rule;
        std::vector<GlobSegments> patterns;
        std::vector<GlobSegments> excludedPatterns;
    };

    void saveLocked() const;
    [[nodiscard]] std::vector<RuleDefinition> activeRulesLocked() const;
    // After every change of the table.
    void rebuildMatchableRules();

    std::map<QString, RuleDefinition> m_rulesById; // ordered by id, the order of every list
    std::vector<MatchableRule> m_matchableRules;   // the enabled rules, by id
    std::vector<RefusedRule> m_refusedRules;
    QString m_rulesFileURL;
    QString m_homeURL;
    std::shared_ptr<const FileManager> m_fileManager;
    mutable std::mutex m_operation;
};

} // namespace kestrow
