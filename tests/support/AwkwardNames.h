#pragma once

#include <QByteArray>
#include <QList>

namespace kestrow::test {

// File names that trip up code which treats names as text: line breaks, "%", a name of 245
// bytes, one of 255 bytes of two-byte characters, a leading dash, a Unicode line separator,
// and bytes that are not UTF-8.
[[nodiscard]] QList<QByteArray> awkwardNames();

// Such names are reached through their raw bytes, never through text.
void writeRaw(const QByteArray& path, const QByteArray& content);
// The first 64 KiB of the file, or "<unreadable>".
[[nodiscard]] QByteArray readRaw(const QByteArray& path);

} // namespace kestrow::test
