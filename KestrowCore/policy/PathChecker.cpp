#include "policy/PathChecker.h"

#include "platform/PathText.h"
#include "policy/SettledHomeCalls.h"
#include "safety/SandboxValidator.h"

namespace kestrow {

PathChecker::PathChecker(QString homeURL, std::shared_ptr<RuleRegistry> ruleRegistry)
    : m_homeURL(std::move(homeURL))
    , m_homePath(PathText::standardizing(m_homeURL))
    , m_systemCalls(std::make_shared<SettledHomeCalls>(m_homePath))
    , m_classifier(m_homeURL, std::move(ruleRegistry), std::make_shared<FileManager>(m_systemCalls))
{
}

PathCheckOutcome PathChecker::check(const QString& path, StorageCategory category) const
{
    PathCheckOutcome outcome{.path = path};
    try {
        SandboxValidator::validate(outcome.path, m_homeURL, *m_systemCalls);
    } catch (const SandboxSecurityError& error) {
        outcome.error = error;
    }
    // The classifier takes a location: "~" expanded, relative text made absolute.
    const QString location = PathText::standardizedLocation(PathText::expandingTilde(outcome.path, m_homePath));
    outcome.classification = m_classifier.classify(location, category, false);
    // What the sandbox refuses is kept whatever the classifier advises; its own reason for
    // keeping it stands when it has one.
    if (outcome.error && outcome.classification.riskTier != RiskTier::keep)
        outcome.classification = {
            .riskTier = RiskTier::keep, .confidence = 1.0, .reason = outcome.error->description()};
    return outcome;
}

} // namespace kestrow
