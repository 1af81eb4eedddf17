#pragma once

#include "agent/JSONValue.h"
#include "agent/MCPCallToolResult.h"
#include "agent/MCPTool.h"
#include "agent/ToolArguments.h"

#include <QString>

#include <optional>
#include <vector>

namespace kestrow {

// The nine tools an agent calls: a fixed table of names, descriptions and input schemas, and a
// handler for each that reads its arguments, builds the services it needs for this call alone,
// runs one operation and answers with one text item, a pretty JSON document with sorted keys.
// Nothing is kept between calls; what two calls share is on disk. Cleaning and uninstalling
// are dry runs unless the agent says otherwise.
class MCPTools {
public:
    // The home every tool works on.
    explicit MCPTools(QString homeURL);

    [[nodiscard]] static std::vector<MCPTool> listTools();

    // An unknown tool or a missing argument is an answer with `isError` set. Throws what the
    // services throw, and ArgumentOverflowError.
    [[nodiscard]] MCPCallToolResult execute(const QString& name,
                                            const std::optional<JSONValue::Object>& arguments) const;

private:
    [[nodiscard]] MCPCallToolResult scanStorage(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult cleanStorage(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult inspectDirectory(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult listApps(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult uninstallApp(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult getSystemVitals() const;
    [[nodiscard]] MCPCallToolResult listRules() const;
    [[nodiscard]] MCPCallToolResult registerRule(const ToolArguments& arguments) const;
    [[nodiscard]] MCPCallToolResult inspectAnomalies(const ToolArguments& arguments) const;

    QString m_homeURL;
};

} // namespace kestrow
