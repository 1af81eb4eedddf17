#pragma once

#include "support/EnumCases.h"

#include <QString>

#include <optional>

namespace kestrow {

class JsonDecoder;

// The seven coarse kinds of file of the space map. The raw value is the JSON form.
class FileCategory {
public:
    enum class Value { archives, diskImages, developerArtifacts, media, binaries, documents, other };
    using enum Value;
    static constexpr std::size_t count = 7;

    constexpr FileCategory(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<FileCategory> fromRawValue(const QString& raw);
    // Strict raw value at `key`; throws JsonDecodingError.
    [[nodiscard]] static FileCategory decode(const JsonDecoder& decoder, const QString& key);
    [[nodiscard]] static constexpr std::array<FileCategory, count> allCases()
    {
        return enumCases<FileCategory, count>();
    }

private:
    Value m_value;
};

} // namespace kestrow
