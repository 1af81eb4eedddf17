#pragma once

#include <QQuick3DInstancing>
#include <QVariantList>

namespace kestrow {

// Many copies of one shape drawn in a single call: the city's trees, lamps, windows and
// containers. Each entry is a list: x, y, z, then the scale along x, y and z, a colour, and
// optionally a turn about the vertical in degrees.
class CityInstances : public QQuick3DInstancing {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList entries READ entries WRITE setEntries NOTIFY entriesChanged)

public:
    explicit CityInstances(QQuick3DObject* parent = nullptr);

    [[nodiscard]] const QVariantList& entries() const { return m_entries; }
    void setEntries(const QVariantList& entries);

Q_SIGNALS:
    void entriesChanged();

protected:
    QByteArray getInstanceBuffer(int* instanceCount) override;

private:
    QVariantList m_entries;
    QByteArray m_buffer;
    bool m_dirty = true;
};

} // namespace kestrow
