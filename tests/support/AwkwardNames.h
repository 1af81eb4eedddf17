#pragma once

#include <QByteArray>
#include <QList>

namespace kestrow::test {

// File names that trip up code which treats names as text: line breaks, "%", a name of 245
// bytes, one of 255 bytes of two-byte characters, a leading dash, a Unicode line separator,
// and bytes that are not UTF-8.
[[nodiscard]] QList<QByteArray> awkwardNames();

} // namespace kestrow::test
