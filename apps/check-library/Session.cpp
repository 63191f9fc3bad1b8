#include "Session.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Configuration/NamePresets.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "FindingView.h"
#include "Findings/Describe.h"
#include "Findings/FixProof.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <cstring>
#include <utility>

namespace Kesh::CheckLibrary {

namespace {

using Findings::SQuickFix;

[[noreturn]] void Fail(const std::string& reason)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(reason), __LINE__, "apps/check-library/Session");
}

Findings::SRulesForAll RulesFrom(const code_analyzer_settings& settings)
{
    Findings::SRulesForAll all;
    if (settings.configuration)
        all.settingsFile =
            *settings.configuration ? Host::AbsolutePath(Host::PathFromBytes(settings.configuration)) : L"";
    if (settings.php_version) {
        all.phpVersion = Configuration::PhpVersionOf(settings.php_version);
        if (!all.phpVersion)
            Fail("php_version: " + Configuration::NoPhpVersion(settings.php_version));
        all.phpVersionFrom = L"php_version";
    }
    if (settings.baseline && !*settings.baseline)
        all.baseline.emplace();
    else if (settings.baseline)
        all.baseline = Findings::ReadBaseline(Host::AbsolutePath(Host::PathFromBytes(settings.baseline)));
    for (const char* const* preset = settings.presets; preset && *preset; ++preset) {
        if (!Configuration::FindNamePreset(*preset))
            Fail("presets: " + Configuration::NoNamePreset(*preset));
        all.presets.emplace_back(*preset);
    }
    all.noGrammar = settings.no_grammar != 0;
    all.noMarkup = settings.no_markup != 0;
    all.noShortTags = settings.no_short_tags != 0;
    if (settings.fixes < CODE_ANALYZER_FIXES_NONE || settings.fixes > CODE_ANALYZER_FIXES_PROVED)
        Fail("fixes: there is no choice " + std::to_string(settings.fixes));
    return all;
}

std::shared_ptr<const Findings::CProjectRules> Read(const Findings::SRulesForAll& all)
{
    auto rules = std::make_shared<const Findings::CProjectRules>(all);
    if (all.settingsFile)
        rules->For(*all.settingsFile); // what is wrong with them is said before anything is checked
    return rules;
}

std::wstring FactoryOf(const std::wstring& path)
{
    const std::wstring factory = SyntaxParser::FactoryForPath(path);
    return factory.empty() ? L"PHPSPDocFactory" : factory;
}

/// The fixes of findings, as the host wants them.
class CFixes
{
public:
    CFixes(std::int32_t wanted, Findings::CTextCheck& check, const CSourceOfText& source,
           const std::wstring& path)
        : m_wanted(wanted),
          m_file{source.Text(), source.Lines(), FactoryOf(path), {}},
          m_proof([&check] { return &check; }, m_file, path)
    {
    }

    std::vector<SProvedFix> Of(const Findings::SFinding& finding)
    {
        std::vector<SProvedFix> fixes;
        if (m_wanted == CODE_ANALYZER_FIXES_NONE)
            return fixes;
        const bool proved = m_wanted == CODE_ANALYZER_FIXES_PROVED;
        for (SQuickFix& fix : proved ? m_proof.Proved(finding) : Findings::EditsFor(finding, m_file)) {
            const bool isSound = Findings::CEditedText(m_file.text, m_file.lines, fix.edits).IsSound();
            if (fix.kind != SQuickFix::EKind::Fix || !isSound)
                continue;
            const code_analyzer_proof proof = !proved     ? CODE_ANALYZER_UNTRIED
                                              : fix.mends ? CODE_ANALYZER_MENDS
                                                          : CODE_ANALYZER_HELPS;
            fixes.push_back({std::move(fix), proof});
        }
        return fixes;
    }

private:
    std::int32_t m_wanted;
    Findings::SFileText m_file;
    Findings::CLazyProof m_proof;
};

} // namespace

/// Whether a call may use the session, for its time.
class CSession::CBusy
{
public:
    explicit CBusy(CSession& session) : m_session(session), m_isMine(!session.m_busy.exchange(true)) {}
    ~CBusy()
    {
        if (m_isMine)
            m_session.m_busy = false;
    }
    CBusy(const CBusy&) = delete;
    CBusy& operator=(const CBusy&) = delete;
    explicit operator bool() const { return m_isMine; }

private:
    CSession& m_session;
    const bool m_isMine;
};

CSession::CSession(const code_analyzer_settings& settings)
    : m_all(RulesFrom(settings)),
      m_fixes(settings.fixes),
      m_rules(Read(m_all)),
      m_check(&CodeAnalyzerCreateChecks, m_rules, {!m_all.noGrammar, !m_all.noMarkup})
{
    m_check.SetCancelFlag(m_cancelled);
}

void CSession::Reload()
{
    const CBusy mine(*this);
    if (!mine)
        return;
    m_rules = std::make_shared<const Findings::CProjectRules>(m_all);
    m_check.SetRules(m_rules);
}

code_analyzer_status CSession::Refuse(code_analyzer_status status, std::string reason)
{
    m_error = std::move(reason);
    return status;
}

code_analyzer_status CSession::CheckText(const char* path, std::string_view text, const STaker& taker)
{
    if (text.size() > Host::MaxFileBytes)
        return Refuse(CODE_ANALYZER_BAD_CALL, "the text is " + Host::TooLarge());
    return Check(
        path, true, [&] { return text; }, taker);
}

code_analyzer_status CSession::CheckFile(const char* path, const STaker& taker)
{
    const auto load = [&] { return Host::ReadFileInto(m_bytes, Host::PathFromBytes(path)); };
    return Check(path, false, load, taker);
}

template <class TLoad>
code_analyzer_status CSession::Check(const char* path, bool isText, const TLoad& load, const STaker& taker)
{
    const CBusy mine(*this);
    if (!mine) // another thread may use what says why
        return CODE_ANALYZER_BAD_CALL;
    *m_cancelled = false;
    code_analyzer_status fault = CODE_ANALYZER_BAD_SETTINGS;
    try {
        const std::wstring absolute = Host::AbsolutePath(Host::PathFromBytes(path));
        const Findings::TRules rules = m_rules->For(absolute);
        if (rules->settings.Excludes(absolute))
            return CODE_ANALYZER_NO_SOURCE;
        fault = CODE_ANALYZER_UNREADABLE;
        const std::string_view bytes = load();
        if (!isText && SyntaxParser::HoldsNoSource(bytes))
            return CODE_ANALYZER_NO_SOURCE;
        fault = CODE_ANALYZER_FAILED;
        return Check(CSourceOfText(bytes, isText), absolute, *rules, taker);
    } catch (const Base::CWorkError& problem) {
        return *m_cancelled && fault == CODE_ANALYZER_FAILED ? CODE_ANALYZER_CANCELLED
                                                             : Refuse(fault, problem.what());
    }
}

code_analyzer_status CSession::Check(const CSourceOfText& source, const std::wstring& path,
                                     const Findings::SRules& rules, const STaker& taker)
{
    std::vector<CodeAnalyzer::SDiagnostic> found =
        source.IsLikeFile() ? m_check.CheckBytes(source.Bytes(), path, FactoryOf(path))
                            : m_check.Check(source.Text(), path, FactoryOf(path));
    const Findings::CDescriber describer(m_check.Texts());
    const Findings::SFileFindings described = describer.Describe(
        {path, path, [&] { return std::wstring_view(source.Text()); }, true, false}, std::move(found), rules);
    CFixes fixes(m_fixes, m_check, source, path);
    for (const Findings::SFinding& finding : described.findings) {
        if (*m_cancelled)
            return CODE_ANALYZER_CANCELLED;
        if (!taker.callback)
            continue;
        const CFindingView view(finding, fixes.Of(finding), source);
        if (*m_cancelled)
            return CODE_ANALYZER_CANCELLED;
        if (taker.callback(&view.Finding(), taker.data) != 0)
            return CODE_ANALYZER_STOPPED;
    }
    return *m_cancelled ? CODE_ANALYZER_CANCELLED : CODE_ANALYZER_DONE;
}

} // namespace Kesh::CheckLibrary
