#include "AwkwardNames.h"

namespace kestrow::test {

QList<QByteArray> awkwardNames()
{
    return {"line\nfeed",
            "carriage\rreturn",
            "pct%41",
            QByteArray(245, 'a'),
            QByteArray("\xC3\xA9").repeated(127) + 'x',
            "-leading-dash",
            "sep\xE2\x80\xA8rator",
            "caf\xE9"};
}

} // namespace kestrow::test
