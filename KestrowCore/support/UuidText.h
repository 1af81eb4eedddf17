#pragma once

#include "support/JsonDecoder.h"

#include <QString>
#include <QUuid>

namespace kestrow {

// Canonical upper-case UUID text, as every record writes it.
[[nodiscard]] QString uuidText(const QUuid& id);
// The UUID under `key`; a missing or malformed one fails the decoding.
[[nodiscard]] QUuid uuidFromText(const JsonDecoder& decoder, const QString& key);

} // namespace kestrow
