#pragma once

#include <QString>

#include <optional>

namespace kestrow {

// Whether an application may be uninstalled. A protected verdict always has a reason and
// can't be uninstalled; the one unprotected verdict can, and has no reason.
struct ProtectionEvaluation {
    bool isProtected = false;
    bool canUninstall = true;
    std::optional<QString> reason;

    [[nodiscard]] static ProtectionEvaluation from(std::optional<QString> protectionReason)
    {
        const bool isProtected = protectionReason.has_value();
        return {isProtected, !isProtected, std::move(protectionReason)};
    }

    friend bool operator==(const ProtectionEvaluation&, const ProtectionEvaluation&) = default;
};

} // namespace kestrow
