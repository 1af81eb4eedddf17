#include "platform/PropertyListReader.h"

#include "platform/FileManager.h"

#include <QDateTime>
#include <QTimeZone>
#include <QVariantList>
#include <QVariantMap>

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

namespace kestrow {
namespace {

struct PlistFree {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistHandle = std::unique_ptr<void, PlistFree>;

struct MallocFree {
    void operator()(void* memory) const { std::free(memory); }
};
using MallocText = std::unique_ptr<char, MallocFree>;

// Property list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr qint64 referenceDateSeconds = 978307200;

// Nesting deeper than this is not a file anyone wrote by hand; refusing it keeps a hostile file
// from exhausting the stack.
constexpr int maxDepth = 256;

std::optional<QVariant> toVariant(plist_t node, int depth)
{
    if (depth > maxDepth) {
        return std::nullopt;
    }
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return QVariant(value != 0);
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        // Negative integers are stored as their two's complement.
        return QVariant(static_cast<qint64>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return QVariant(value);
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        char* raw = nullptr;
        if (plist_get_node_type(node) == PLIST_STRING) {
            plist_get_string_val(node, &raw);
        } else {
            plist_get_key_val(node, &raw);
        }
        const MallocText text(raw);
        return QVariant(text ? QString::fromUtf8(text.get()) : QString());
    }
    case PLIST_DATE: {
        std::int32_t seconds = 0;
        std::int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        const qint64 milliseconds = (referenceDateSeconds + seconds) * 1000 + microseconds / 1000;
        return QVariant(QDateTime::fromMSecsSinceEpoch(milliseconds, QTimeZone::utc()));
    }
    case PLIST_DATA: {
        std::uint64_t length = 0;
        const char* data = plist_get_data_ptr(node, &length);
        if (length > static_cast<std::uint64_t>(std::numeric_limits<qsizetype>::max())) {
            return std::nullopt;
        }
        return QVariant(QByteArray(data, static_cast<qsizetype>(length)));
    }
    case PLIST_UID: {
        std::uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return QVariant(static_cast<quint64>(value));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const std::uint32_t count = plist_array_get_size(node);
        list.reserve(count);
        for (std::uint32_t index = 0; index < count; ++index) {
            std::optional<QVariant> item = toVariant(plist_array_get_item(node, index), depth + 1);
            if (!item) {
                return std::nullopt;
            }
            list.append(std::move(*item));
        }
        return QVariant(list);
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter iterator = nullptr;
        plist_dict_new_iter(node, &iterator);
        const std::unique_ptr<void, MallocFree> iteratorOwner(iterator);
        for (;;) {
            char* rawKey = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iterator, &rawKey, &value);
            const MallocText key(rawKey);
            if (!key || !value) {
                break;
            }
            std::optional<QVariant> item = toVariant(value, depth + 1);
            if (!item) {
                return std::nullopt;
            }
            map.insert(QString::fromUtf8(key.get()), std::move(*item));
        }
        return QVariant(map);
    }
    case PLIST_NONE:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<QVariant> PropertyListReader::parse(const QByteArray& bytes)
{
    if (bytes.isEmpty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    // libplist 2.2 reports failure as a null result; later versions also return an error code,
    // which this call ignores in favour of the same null result.
    plist_t raw = nullptr;
    plist_from_memory(bytes.constData(), static_cast<std::uint32_t>(bytes.size()), &raw);
    const PlistHandle root(raw);
    if (!root) {
        return std::nullopt;
    }
    return toVariant(root.get(), 0);
}

std::optional<QVariant> PropertyListReader::readFile(const FileManager& fileManager, const QString& path)
{
    const FileManager::RegularFileRead read = fileManager.readRegularFile(path, maxFileBytes);
    if (read.errorCode != 0) {
        return std::nullopt;
    }
    return parse(read.bytes);
}

std::optional<QVariantMap> PropertyListReader::readDictionary(const FileManager& fileManager, const QString& path)
{
    std::optional<QVariant> top = readFile(fileManager, path);
    if (!top || top->typeId() != QMetaType::QVariantMap) {
        return std::nullopt;
    }
    return top->toMap();
}

} // namespace kestrow
