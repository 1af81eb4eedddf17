#pragma once

#include <QString>

#include <optional>

namespace kestrow {

// What was found when a directory was searched for a cache directory tag.
struct CacheDirTagInfo {
    QString tagFileURL;                        // path of the tag file
    QString directoryURL;                      // path of the directory examined
    bool isValid = false;                      // the first line carries the published signature
    std::optional<QString> applicationComment; // the first comment line after the signature

    friend bool operator==(const CacheDirTagInfo&, const CacheDirTagInfo&) = default;
};

} // namespace kestrow
