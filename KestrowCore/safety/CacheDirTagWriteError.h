#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// The file system refused the atomic write of a cache directory tag; nothing was written.
class CacheDirTagWriteError : public KestrowError {
public:
    CacheDirTagWriteError(QString tagFilePath, QString systemMessage)
        : m_tagFilePath(std::move(tagFilePath))
        , m_systemMessage(std::move(systemMessage))
    {
    }

    [[nodiscard]] const QString& tagFilePath() const { return m_tagFilePath; }
    [[nodiscard]] const QString& systemMessage() const { return m_systemMessage; }
    [[nodiscard]] QString description() const override;

private:
    QString m_tagFilePath;
    QString m_systemMessage;
};

} // namespace kestrow
