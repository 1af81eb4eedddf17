#pragma once

#include "agent/JSONValue.h"

#include <QString>

namespace kestrow {

// One tool as "tools/list" shows it.
struct MCPTool {
    QString name;
    QString description;
    JSONValue inputSchema;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
