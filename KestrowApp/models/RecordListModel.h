#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QVariant>

#include <functional>
#include <utility>
#include <vector>

namespace kestrow {

// A list of records for a screen: one row per record, one role per named field of it. The
// screens replace the whole list whenever the state behind it changes.
template <typename Record> class RecordListModel : public QAbstractListModel {
public:
    using Field = std::function<QVariant(const Record&)>;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_records.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        const int field = role - Qt::UserRole;
        if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) || field < 0 ||
            field >= static_cast<int>(m_fields.size()))
            return {};
        return m_fields[static_cast<std::size_t>(field)].second(m_records[static_cast<std::size_t>(index.row())]);
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override
    {
        QHash<int, QByteArray> names;
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            names.insert(Qt::UserRole + static_cast<int>(i), m_fields[i].first);
        return names;
    }

    void setRecords(std::vector<Record> records)
    {
        beginResetModel();
        m_records = std::move(records);
        endResetModel();
    }

    [[nodiscard]] const std::vector<Record>& records() const { return m_records; }
    // Valid rows only; the screens pass back the rows they were given.
    [[nodiscard]] bool hasRow(int row) const { return row >= 0 && row < rowCount(); }
    [[nodiscard]] const Record& record(int row) const { return m_records[static_cast<std::size_t>(row)]; }

protected:
    explicit RecordListModel(std::vector<std::pair<QByteArray, Field>> fields, QObject* parent)
        : QAbstractListModel(parent)
        , m_fields(std::move(fields))
    {
    }

private:
    std::vector<std::pair<QByteArray, Field>> m_fields;
    std::vector<Record> m_records;
};

} // namespace kestrow
