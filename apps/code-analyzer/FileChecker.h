#pragma once

#include "Application/BareApplication.h"
#include "Application/PluginLibrary.h"
#include "Findings/Describe.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "Paths.h"
#include "RulesChoice.h"
#include "SyntaxParser/OwnNames.h"
#include "SyntaxParser/TextReader.h"

#include <memory>
#include <optional>
#include <string>

namespace Kesh::CommandLine {

/// Checks files, one after another, with the code validator's checks alone: no window, no errors bar.
class CFileChecker
{
public:
    /// Loads the checks. Throws Base::CWorkError when that fails.
    CFileChecker(const SOptions& options, TProjectRules rules);

    /// Null for a binary file. Throws Base::CWorkError when the input cannot be read or its check fails.
    std::optional<Findings::SFileFindings> Check(const SInput& input);

private:
    struct SFree
    {
        void operator()(CodeAnalyzer::ITextChecks* checks) const { checks->Free(); }
    };

    std::string_view ReadInput(const SInput& input);
    void UseNames(const Configuration::SConfiguration& settings);

    TProjectRules m_rules;
    Host::CBareApplication m_application;
    Host::CPluginLibrary m_library;
    std::unique_ptr<CodeAnalyzer::ITextChecks, SFree> m_checks;
    Findings::CDescriber m_describer;
    SyntaxParser::SOwnNames m_names;
    std::string m_bytes; ///< room for those of a file
    boost::shared_ptr<SyntaxParser::CTextReader> m_reader;
};

} // namespace Kesh::CommandLine
