#include "policy/PathChecker.h"

#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "policy/SettledHomeCalls.h"
#include "safety/SandboxValidator.h"

namespace kestrow {

namespace {

// The home as given and, when links lead elsewhere, as resolved, as the sandbox takes it.
QStringList homeForms(const QString& homePath, const SystemCalls& systemCalls)
{
    const QString resolved = PathText::standardizing(LinkResolver(systemCalls).resolvingSymbolicLinks(homePath));
    return resolved == homePath ? QStringList{homePath} : QStringList{homePath, resolved};
}

} // namespace

PathChecker::PathChecker(QString homeURL, std::shared_ptr<RuleRegistry> ruleRegistry)
    : m_homeURL(std::move(homeURL))
    , m_homePath(PathText::standardizing(m_homeURL))
    , m_systemCalls(std::make_shared<SettledHomeCalls>(m_homePath))
    , m_classifier(m_homeURL, std::move(ruleRegistry), std::make_shared<FileManager>(m_systemCalls))
    , m_ground(homeForms(m_homePath, *m_systemCalls), *m_systemCalls)
{
}

PathCheckOutcome PathChecker::check(const QString& path, StorageCategory category) const
{
    PathCheckOutcome outcome{.path = path};
    try {
        SandboxValidator::validate(outcome.path, m_homeURL, *m_systemCalls, m_ground);
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
            .riskTier = RiskTier::keep, .confidence = 1.0, .reason = refusalReason(location, *outcome.error)};
    return outcome;
}

QString PathChecker::refusalReason(const QString& location, const SandboxSecurityError& error) const
{
    // The platform's own ground is told as the classifier tells "~/Documents", a link into it
    // as a link into that.
    if (const ProtectedHomeGround::Folder* folder = m_ground.folderHolding(location))
        return folder->reason;
    if (error.errorCase() == SandboxSecurityError::Case::symlinkEscapedSandbox)
        if (const ProtectedHomeGround::Folder* folder = m_ground.folderHolding(error.detail()))
            return QStringLiteral("Symlink target points to protected boundary: ") + folder->reason;
    return error.description();
}

} // namespace kestrow
