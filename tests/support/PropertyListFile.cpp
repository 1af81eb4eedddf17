#include "PropertyListFile.h"

#include <QVariantList>
#include <QVariantMap>

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace kestrow::test {
namespace {

plist_t toNode(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        plist_t dictionary = plist_new_dict();
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            plist_dict_set_item(dictionary, it.key().toUtf8().constData(), toNode(it.value()));
        }
        return dictionary;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        plist_t array = plist_new_array();
        for (const QVariant& item : value.toList()) {
            plist_array_append_item(array, toNode(item));
        }
        return array;
    }
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return plist_new_uint(static_cast<std::uint64_t>(value.toLongLong()));
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<std::uint64_t>(bytes.size()));
    }
    case QMetaType::QString:
        return plist_new_string(value.toString().toUtf8().constData());
    default:
        throw std::invalid_argument("no property list form for this value");
    }
}

} // namespace

QByteArray PropertyListFile::encode(const QVariant& value, Format format)
{
    plist_t root = toNode(value);
    char* text = nullptr;
    std::uint32_t length = 0;
    if (format == Format::xml) {
        plist_to_xml(root, &text, &length);
    } else {
        plist_to_bin(root, &text, &length);
    }
    plist_free(root);
    QByteArray bytes(text, static_cast<qsizetype>(length));
    std::free(text);
    return bytes;
}

} // namespace kestrow::test
