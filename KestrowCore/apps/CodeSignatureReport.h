#pragma once

#include "apps/CodeSignerCategory.h"

#include <QString>

#include <optional>

namespace kestrow {

// What an application's code signature says of its maker. The default is the report of a
// bundle with no readable signature.
struct CodeSignatureReport {
    std::optional<QString> authority; // the leaf certificate's subject summary
    std::optional<QString> teamIdentifier;
    CodeSignerCategory category = CodeSignerCategory::unsignedCode;
    bool isApplePlatformSigned = false;
    bool isHardenedRuntime = false;

    friend bool operator==(const CodeSignatureReport&, const CodeSignatureReport&) = default;
};

} // namespace kestrow
