#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

class JsonDecoder;

// The seven coarse kinds of file of the space map. The raw value is the JSON form.
enum class FileCategoryValue { archives, diskImages, developerArtifacts, media, binaries, documents, other };

class FileCategory : public EnumValue<FileCategory, FileCategoryValue, 7> {
public:
    using EnumValue::EnumValue;
    using enum FileCategoryValue;

    [[nodiscard]] QString rawValue() const;

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<FileCategory> fromRawValue(const QString& raw);
    // Strict raw value at `key`; throws JsonDecodingError.
    [[nodiscard]] static FileCategory decode(const JsonDecoder& decoder, const QString& key);
};

} // namespace kestrow
