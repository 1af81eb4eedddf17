#pragma once

#include "agent/JSONValue.h"

#include <QString>

namespace kestrow {

// One item of a tool's answer; every tool answers with one of type "text".
struct MCPToolContent {
    QString type;
    QString text;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
