#include "views/CityInstances.h"

#include <QColor>

namespace kestrow {

namespace {

constexpr int fieldsWithoutTurn = 7;

} // namespace

CityInstances::CityInstances(QQuick3DObject* parent)
    : QQuick3DInstancing(parent)
{
}

void CityInstances::setEntries(const QVariantList& entries)
{
    m_entries = entries;
    m_dirty = true;
    markDirty();
    Q_EMIT entriesChanged();
}

QByteArray CityInstances::getInstanceBuffer(int* instanceCount)
{
    if (m_dirty) {
        m_buffer.clear();
        for (const QVariant& value : std::as_const(m_entries)) {
            const QVariantList entry = value.toList();
            if (entry.size() < fieldsWithoutTurn)
                continue;
            const auto number = [&](int index) { return entry.at(index).toFloat(); };
            const float turn = entry.size() > fieldsWithoutTurn ? number(fieldsWithoutTurn) : 0.0F;
            const InstanceTableEntry row = calculateTableEntry(QVector3D(number(0), number(1), number(2)),
                                                               QVector3D(number(3), number(4), number(5)),
                                                               QVector3D(0, turn, 0), QColor(entry.at(6).toString()));
            m_buffer.append(reinterpret_cast<const char*>(&row), sizeof(row));
        }
        m_dirty = false;
    }
    if (instanceCount)
        *instanceCount = static_cast<int>(m_buffer.size() / static_cast<qsizetype>(sizeof(InstanceTableEntry)));
    return m_buffer;
}

} // namespace kestrow
