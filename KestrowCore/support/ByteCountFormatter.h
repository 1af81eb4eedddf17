#pragma once

#include <QString>

#include <cstdint>

namespace kestrow {

// Byte text in the file style with decimal units, as the macOS byte count formatter writes it
// on every platform: "Zero KB", "1 byte", "999 bytes", "12 KB", "1.5 MB", "2.34 GB".
class ByteCountFormatter {
public:
    [[nodiscard]] static QString format(std::int64_t bytes);
};

} // namespace kestrow
