#pragma once

#include "LanguageServer/Connection.h"

#include <QTimer>
#include <functional>
#include <utility>
#include <vector>

namespace Kesh::LanguageServer {

/// Keeps requests until the first check of the workspace has ended. GUI thread only.
class CFirstResults
{
public:
    using TAnswer = std::function<void(const json& params, const json& id)>;

    /// `isBusy`: whether results are still to come.
    CFirstResults(std::function<bool()> isBusy, TAnswer answer);

    /// Answers at once, or when nothing is busy for the first time.
    void Ask(const json& params, const json& id);
    /// Forgets a request; false when none that waits has this id.
    bool Cancel(const json& id);

private:
    void AnswerAll();

    std::function<bool()> m_isBusy;
    TAnswer m_answer;
    std::vector<std::pair<json, json>> m_waiting; ///< parameters and id
    bool m_isOver = false;
    QTimer m_timer;
};

} // namespace Kesh::LanguageServer
