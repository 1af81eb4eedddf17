#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// A client's number that a tool must take as a 64-bit integer and that does not fit one. It is
// no failure of the tool: the server cannot go on and ends, the front end telling why.
class ArgumentOverflowError : public KestrowError {
public:
    ArgumentOverflowError(QString key, double value);

    [[nodiscard]] const QString& key() const { return m_key; }
    [[nodiscard]] QString description() const override;

private:
    QString m_key;
    double m_value;
};

} // namespace kestrow
