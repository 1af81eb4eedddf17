#pragma once

#include <QString>

#include <memory>

namespace kestrow {
class RuleRegistry;
}

namespace kestrow::cli {

// A registry of the built-in rules plus the user's rules file below `home`, for every command
// that scans, classifies or lists. A file that cannot be read or parsed throws
// std::runtime_error with the registry's description, the file's path and what to do. Each
// rule of the file that the sandbox refuses is named on standard error, with the refusal.
[[nodiscard]] std::shared_ptr<RuleRegistry> loadUserRules(const QString& home);
// The same, for a change that rewrites the file: throws std::runtime_error while the file
// holds rules the sandbox refuses, since the new file would no longer hold them.
[[nodiscard]] std::shared_ptr<RuleRegistry> loadUserRulesToChange(const QString& home);

} // namespace kestrow::cli
