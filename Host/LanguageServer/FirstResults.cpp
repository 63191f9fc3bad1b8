#include "LanguageServer/FirstResults.h"

namespace Kesh::LanguageServer {

namespace {

constexpr int Interval = 50; ///< milliseconds

} // namespace

CFirstResults::CFirstResults(std::function<bool()> isBusy, TAnswer answer)
    : m_isBusy(std::move(isBusy)), m_answer(std::move(answer))
{
    m_timer.setInterval(Interval);
    QObject::connect(&m_timer, &QTimer::timeout, [this] {
        if (!m_isBusy())
            AnswerAll();
    });
}

void CFirstResults::Ask(const json& params, const json& id)
{
    if (m_isOver || !m_isBusy()) {
        m_isOver = true;
        m_answer(params, id);
        return;
    }
    m_waiting.emplace_back(params, id);
    m_timer.start();
}

void CFirstResults::AnswerAll()
{
    m_timer.stop();
    m_isOver = true;
    for (const auto& [params, id] : std::exchange(m_waiting, {}))
        m_answer(params, id);
}

bool CFirstResults::Cancel(const json& id)
{
    return std::erase_if(m_waiting, [&](const auto& waiting) { return waiting.second == id; }) != 0;
}

} // namespace Kesh::LanguageServer
