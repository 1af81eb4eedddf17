#pragma once

#include "platform/FileStatus.h"
#include "platform/SystemCalls.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace kestrow {

// The real system calls, except that a look without following links (lstat) at the home or at
// a folder above it is answered from the one look at each made when this is built. For a batch
// of checks below one home that change nothing: each check resolves the home and the path
// through it again, and the home's way is the same for the whole batch. Immutable once built,
// so any number of threads may share it.
class SettledHomeCalls : public SystemCalls {
public:
    // `homePath` standardized.
    explicit SettledHomeCalls(const QString& homePath);

    int statAt(int folder, const char* name, int flags, FileStatus& status) const override;

private:
    // What the look at one folder on the home's way found: the status, or the errno.
    struct Look {
        qsizetype length = 0; // of the folder's name, a prefix of the home's
        int errorCode = 0;
        FileStatus status;
    };

    QByteArray m_home; // native
    std::vector<Look> m_looks;
};

} // namespace kestrow
