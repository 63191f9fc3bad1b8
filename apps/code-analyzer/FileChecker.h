#pragma once

#include "Application/BareApplication.h"
#include "Application/PluginLibrary.h"
#include "Findings/Describe.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "Paths.h"
#include "SyntaxParser/TextReader.h"

#include <memory>
#include <optional>
#include <string>

namespace Kesh::CommandLine {

/// Checks files, one after another, with the code validator's checks alone: no window, no errors bar.
class CFileChecker
{
public:
    /// Loads the checks, for a project's settings, which outlive it. Throws Base::CWorkError when that fails.
    explicit CFileChecker(const Configuration::SConfiguration& configuration);

    /// Null for a binary file. Throws Base::CWorkError when the input cannot be read or its check fails.
    std::optional<Findings::SFileFindings> Check(const SInput& input);

private:
    struct SFree
    {
        void operator()(CodeAnalyzer::ITextChecks* checks) const { checks->Free(); }
    };

    std::string_view ReadInput(const SInput& input);

    Host::CBareApplication m_application;
    Host::CPluginLibrary m_library;
    std::unique_ptr<CodeAnalyzer::ITextChecks, SFree> m_checks;
    std::optional<Findings::CDescriber> m_describer;
    std::string m_bytes; ///< room for those of a file
    boost::shared_ptr<SyntaxParser::CTextReader> m_reader;
};

} // namespace Kesh::CommandLine
