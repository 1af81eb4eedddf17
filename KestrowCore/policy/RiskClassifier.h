#pragma once

#include "platform/FileManager.h"
#include "policy/RiskClassificationResult.h"
#include "storage/StorageCategory.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace kestrow {

class RuleRegistry;

// Gives every item a scan finds its tier, a confidence and a reason. It advises; the sandbox
// validator forbids. Its order of decision is the policy: protected ground, then where
// symbolic links lead, then rules (the most cautious match wins), then a cache directory
// tag, then the category's default. A plain value, safe to copy and to call from any thread.
class RiskClassifier {
public:
    // Without a file manager the real disk is used; without a registry the rule step is skipped.
    explicit RiskClassifier(QString homeURL, std::shared_ptr<RuleRegistry> ruleRegistry = nullptr,
                            std::shared_ptr<const FileManager> fileManager = nullptr);

    // Never fails. Waits on the registry when there is one; reads links and the cache tag
    // from the disk.
    [[nodiscard]] RiskClassificationResult classify(const QString& path, StorageCategory category,
                                                    bool isOrphaned) const;

    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }
    [[nodiscard]] const std::shared_ptr<RuleRegistry>& ruleRegistry() const { return m_ruleRegistry; }
    [[nodiscard]] const std::shared_ptr<const FileManager>& fileManager() const { return m_fileManager; }

private:
    // The protected entries below one home, joined to it and lowered, in the order they are tried.
    using HomeEntries = std::vector<QString>;

    [[nodiscard]] static HomeEntries homeEntries(const QString& homePath);
    // The reason the path lies on protected ground, or nothing.
    [[nodiscard]] static std::optional<QString> evaluateKeepBoundaries(const QString& path,
                                                                       const HomeEntries& homeEntries);
    [[nodiscard]] static RiskClassificationResult categoryDefault(const QString& itemPath, StorageCategory category,
                                                                  bool isOrphaned);

    QString m_homeURL;
    HomeEntries m_homeEntries; // of the home standardized once, when the classifier is made
    // That home when no symbolic link led anywhere on its way then, else empty: the links of an
    // item inside it are looked for only below it.
    QString m_linkFreeHome;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    std::shared_ptr<const FileManager> m_fileManager;
};

} // namespace kestrow
