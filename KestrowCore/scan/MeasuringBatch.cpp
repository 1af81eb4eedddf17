#include "scan/MeasuringBatch.h"

namespace kestrow {

// One location of the batch: its start measures it on whichever thread takes it.
class MeasuringBatch::Measurement final : public WalkCrew::Job {
public:
    Measurement(const ItemMeasurer& measurer, WalkCrew& crew, QString path)
        : m_measurer(measurer)
        , m_crew(crew)
        , m_path(std::move(path))
    {
    }

    bool walk(std::size_t worker, UniqueFd, std::string) override
    {
        metrics = m_measurer.measureItem(m_path, m_crew, worker);
        return true;
    }

    MeasuredMetrics metrics;

private:
    const ItemMeasurer& m_measurer;
    WalkCrew& m_crew;
    QString m_path;
};

MeasuringBatch::MeasuringBatch(const ItemMeasurer& measurer, std::stop_token stop)
    : m_measurer(measurer)
    , m_crew(measurer.threads() - 1, std::move(stop))
{
}

MeasuringBatch::~MeasuringBatch() = default;

std::size_t MeasuringBatch::add(const QString& path)
{
    auto measurement = std::make_unique<Measurement>(m_measurer, m_crew, path);
    m_crew.start(*measurement);
    m_measurements.push_back(std::move(measurement));
    return m_measurements.size() - 1;
}

bool MeasuringBatch::isReady(std::size_t index)
{
    return m_crew.isOver(*m_measurements.at(index));
}

MeasuredMetrics MeasuringBatch::take(std::size_t index)
{
    std::unique_ptr<Measurement> measurement = std::move(m_measurements.at(index));
    m_crew.wait(*measurement, 0, true);
    return measurement->metrics;
}

} // namespace kestrow
