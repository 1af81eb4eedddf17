#include "platform/RunningApplications.h"

#include <CoreFoundation/CoreFoundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <unistd.h>

namespace kestrow {

namespace {

// NSRunningApplication and NSWorkspace, reached through the Objective-C runtime so that this
// file stays C++.
template <typename Result, typename... Arguments> Result send(id receiver, const char* selector, Arguments... arguments)
{
    const auto function = reinterpret_cast<Result (*)(id, SEL, Arguments...)>(&objc_msgSend);
    return function(receiver, sel_registerName(selector), arguments...);
}

id runningApplicationClass()
{
    return reinterpret_cast<id>(objc_getClass("NSRunningApplication"));
}

std::vector<id> arrayItems(id array)
{
    std::vector<id> items;
    const auto count = send<unsigned long>(array, "count");
    for (unsigned long index = 0; index < count; ++index)
        items.push_back(send<id>(array, "objectAtIndex:", index));
    return items;
}

id application(std::int64_t processId)
{
    return send<id>(runningApplicationClass(),
                    "runningApplicationWithProcessIdentifier:", static_cast<pid_t>(processId));
}

class WorkspaceApplications final : public RunningApplications {
public:
    std::vector<std::int64_t> processIds(const QString& bundleIdentifier) const override
    {
        const CFStringRef identifier = bundleIdentifier.toCFString();
        const id list = send<id>(runningApplicationClass(), "runningApplicationsWithBundleIdentifier:",
                                 reinterpret_cast<id>(const_cast<__CFString*>(identifier)));
        CFRelease(identifier);
        std::vector<std::int64_t> ids;
        for (const id app : arrayItems(list))
            ids.push_back(send<pid_t>(app, "processIdentifier"));
        return ids;
    }

    QSet<QString> runningIdentifiers() const override
    {
        const id workspace = send<id>(reinterpret_cast<id>(objc_getClass("NSWorkspace")), "sharedWorkspace");
        QSet<QString> identifiers;
        for (const id app : arrayItems(send<id>(workspace, "runningApplications")))
            if (const id identifier = send<id>(app, "bundleIdentifier"))
                identifiers.insert(QString::fromCFString(reinterpret_cast<CFStringRef>(identifier)));
        return identifiers;
    }

    void requestTermination(std::int64_t processId, bool force) const override
    {
        if (const id app = application(processId))
            send<bool>(app, force ? "forceTerminate" : "terminate");
    }

    bool isTerminated(std::int64_t processId) const override
    {
        const id app = application(processId);
        return !app || send<bool>(app, "isTerminated");
    }
};

} // namespace

std::shared_ptr<const RunningApplications> RunningApplications::system()
{
    return std::make_shared<WorkspaceApplications>();
}

} // namespace kestrow
