#pragma once

#include <QString>

#include <optional>

namespace kestrow {

// Names in the Library that are never an orphan, whatever is installed: Apple's own, the
// system's components, developer tools and infrastructure that several applications share.
class Whitelist {
public:
    [[nodiscard]] static bool isProtected(const QString& name, const std::optional<QString>& bundleId);
};

} // namespace kestrow
