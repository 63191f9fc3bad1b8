#pragma once

#include "Application/BareApplication.h"
#include "Findings/ProjectRules.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "SyntaxParser/TextReader.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// Which checks beyond the plug-in's own are wanted.
struct SWantedChecks
{
    bool grammar = true;
    bool markup = true;
};

/// The code validator's checks alone, of texts in memory: no window, no errors bar. One thread at a time.
class CTextCheck
{
public:
    using TCreate = CodeAnalyzer::ITextChecks*(SDK::IApplication*);

    /// Loads the checks from a library that has them. `translations` are not owned; null: none. Throws
    /// Base::CWorkError with a text for the user.
    CTextCheck(const char* library, std::shared_ptr<const CProjectRules> rules, SWantedChecks wanted = {},
               LangSupport::ILangSource* translations = nullptr);
    /// With checks that the program has in itself.
    CTextCheck(TCreate* create, std::shared_ptr<const CProjectRules> rules, SWantedChecks wanted = {},
               LangSupport::ILangSource* translations = nullptr);

    /// Other rules from now on.
    void SetRules(std::shared_ptr<const CProjectRules> rules);
    /// See CodeAnalyzer::ITextChecks. A check that is given up throws as one that fails.
    void SetCancelFlag(std::shared_ptr<std::atomic<bool>> cancelled)
    {
        m_checks->SetCancelFlag(std::move(cancelled));
    }
    CodeAnalyzer::IDiagnosticTexts& Texts() { return *m_checks->GetTexts(); }

    /// What is found in a text, as a file of this absolute path would be checked: nothing is left out by
    /// settings, comments or a baseline. Throws Base::CWorkError when the check fails.
    std::vector<CodeAnalyzer::SDiagnostic> Check(std::wstring_view text, const std::wstring& path,
                                                 const std::wstring& factory);
    /// The same of the bytes of a file.
    std::vector<CodeAnalyzer::SDiagnostic> CheckBytes(std::string_view bytes, const std::wstring& path,
                                                      const std::wstring& factory);
    /// The text that was checked last.
    std::wstring_view Text() const { return m_reader->View(); }

private:
    struct SFree
    {
        void operator()(CodeAnalyzer::ITextChecks* checks) const { checks->Free(); }
    };

    void ChooseReader(const std::wstring& path);
    std::vector<CodeAnalyzer::SDiagnostic> Run(const std::wstring& path, const std::wstring& factory);

    Host::CBareApplication m_application;
    std::unique_ptr<CodeAnalyzer::ITextChecks, SFree> m_checks;
    std::shared_ptr<const CProjectRules> m_rules;
    boost::shared_ptr<SyntaxParser::CTextReader>
        m_reader;         ///< and with it the documents that are made over it
    TRules m_readerRules; ///< of all that it has read
};

} // namespace Kesh::Findings
