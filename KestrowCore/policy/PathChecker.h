#pragma once

#include "platform/SystemCalls.h"
#include "policy/PathCheckOutcome.h"
#include "policy/RiskClassifier.h"
#include "safety/ProtectedHomeGround.h"
#include "storage/StorageCategory.h"

#include <QString>

#include <memory>

namespace kestrow {

class RuleRegistry;

// Tells for a path the user names whether it may be moved to the Trash at all and how safe
// removing it would be, without touching it. Made for one batch of paths: the home's way on the
// disk is looked at once, when the checker is made. A plain value.
class PathChecker {
public:
    // Without a registry the classifier skips the rule step.
    explicit PathChecker(QString homeURL, std::shared_ptr<RuleRegistry> ruleRegistry = nullptr);

    // `path` as typed: "~" stands for the home, relative text is taken as a location.
    [[nodiscard]] PathCheckOutcome check(const QString& path, StorageCategory category) const;

private:
    // Why a refused path is kept when the classifier has no reason of its own.
    [[nodiscard]] QString refusalReason(const QString& location, const SandboxSecurityError& error) const;

    QString m_homeURL;
    QString m_homePath; // standardised, for "~"
    std::shared_ptr<const SystemCalls> m_systemCalls;
    RiskClassifier m_classifier;
    ProtectedHomeGround m_ground;
};

} // namespace kestrow
