#pragma once

#include "support/JsonValue.h"

namespace kestrow {

// The dynamic value of the agent protocol is the project's one JSON value: read by
// JsonDecoder::parse, written by JsonWriter.
using JSONValue = JsonValue;

} // namespace kestrow
