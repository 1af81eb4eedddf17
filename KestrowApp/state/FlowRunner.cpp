#include "state/FlowRunner.h"

namespace kestrow {

FlowRunner::FlowRunner(QObject& context, int threads)
    : m_context(context)
{
    m_pool.setMaxThreadCount(std::max(threads, 1));
}

FlowRunner::~FlowRunner()
{
    m_stop.request_stop();
    m_pool.waitForDone();
}

} // namespace kestrow
