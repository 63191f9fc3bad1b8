#pragma once

#include "CodeAnalyzerCheck.h"
#include "Findings/TextCheck.h"
#include "SourceOfText.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

namespace Kesh::CheckLibrary {

/// Whom findings are handed to.
struct STaker
{
    code_analyzer_callback callback; ///< null: nobody
    void* data;
};

/// One host of the C interface: rules, and what checks by them. One thread at a time, but for Cancel().
class CSession
{
public:
    /// Throws Base::CWorkError with a text for the user when the settings are wrong.
    explicit CSession(const code_analyzer_settings& settings);

    code_analyzer_status CheckText(const char* path, std::string_view text, const STaker& taker);
    code_analyzer_status CheckFile(const char* path, const STaker& taker);
    /// Any thread.
    void Cancel() { *m_cancelled = true; }
    void Reload();
    const char* Error() const { return m_error.c_str(); }
    /// Why the last call was none; answers its status.
    code_analyzer_status Refuse(code_analyzer_status status, std::string reason);

private:
    class CBusy;

    /// `load` gives the bytes once the rules are known to want them; throws Base::CWorkError.
    template <class TLoad>
    code_analyzer_status Check(const char* path, bool isText, const TLoad& load, const STaker& taker);
    code_analyzer_status Check(const CSourceOfText& source, const std::wstring& path,
                               const Findings::SRules& rules, const STaker& taker);

    Findings::SRulesForAll m_all;
    std::int32_t m_fixes;
    std::shared_ptr<const Findings::CProjectRules> m_rules;
    Findings::CTextCheck m_check;
    std::shared_ptr<std::atomic<bool>> m_cancelled = std::make_shared<std::atomic<bool>>(false);
    std::atomic<bool> m_busy{false};
    std::string m_bytes; ///< room for those of a file
    std::string m_error;
};

} // namespace Kesh::CheckLibrary
