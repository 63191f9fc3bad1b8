#include "FileChecker.h"

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Findings/ApplyRules.h"
#include "Findings/Ignores.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

std::string ReadStandardInput()
{
    std::string bytes;
    char block[1 << 16];
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, block, sizeof block);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw Base::CWorkError(L"standard input cannot be read", __LINE__,
                                   "apps/code-analyzer/FileChecker");
        if (count == 0)
            return bytes;
        bytes.append(block, static_cast<std::size_t>(count));
        if (bytes.size() > Host::MaxFileBytes)
            throw Base::CWorkError(L"standard input is too long", __LINE__, "apps/code-analyzer/FileChecker");
    }
}

/// Whatever the user names is checked; without a known ending it is taken for PHP.
std::wstring FactoryOf(const SInput& input)
{
    const std::wstring factory = SyntaxParser::FactoryForPath(input.absolute);
    return factory.empty() ? L"PHPSPDocFactory" : factory;
}

} // namespace

CFileChecker::CFileChecker(const SOptions& options, TProjectRules rules)
    : m_rules(std::move(rules)),
      m_library("libCodeAnalyzerChecks.so.1"),
      m_checks(
          m_library.Symbol<decltype(CodeAnalyzerCreateChecks)>("CodeAnalyzerCreateChecks")(&m_application)),
      m_describer(*m_checks->GetTexts()),
      m_reader(boost::make_shared<SyntaxParser::CTextReader>(std::wstring()))
{
    CodeAnalyzer::IGrammarCheck* grammar = m_checks->GetGrammarCheck();
    if (grammar)
        grammar->SetEnabled(!options.noGrammar);
    CodeAnalyzer::IMarkupCheck* markup = m_checks->GetMarkupCheck();
    if (markup)
        markup->SetEnabled(!options.noMarkup);
    Findings::ApplyRules(m_rules, m_application.Parser(), grammar, markup);
}

void CFileChecker::UseNames(const Configuration::SConfiguration& settings)
{
    SyntaxParser::SOwnNames names = Findings::OwnNamesOf(settings);
    if (names == m_names)
        return;
    m_names = std::move(names);
    m_application.Parser().SetOwnNames(m_names);
    // The checks of a text keep the names that they were made with.
    m_reader = boost::make_shared<SyntaxParser::CTextReader>(std::wstring());
}

std::string_view CFileChecker::ReadInput(const SInput& input)
{
    const bool staged = !input.staged.object.empty();
    if (!input.standardInput && !staged)
        return Host::ReadFileInto(m_bytes, input.absolute);
    m_bytes = staged ? ReadStaged(input.staged) : ReadStandardInput();
    return m_bytes;
}

std::optional<Findings::SFileFindings> CFileChecker::Check(const SInput& input)
{
    const std::string_view bytes = ReadInput(input);
    if (SyntaxParser::HoldsNoSource(bytes))
        return {};
    const Findings::TRules rules = m_rules->For(input.absolute);
    UseNames(rules->settings);
    m_reader->Decode(bytes);
    const std::wstring factory = FactoryOf(input);
    std::vector<CodeAnalyzer::SDiagnostic> found;
    if (!m_checks->Check(m_reader, input.absolute, factory, found))
        throw Base::CWorkError(L"the check failed: " + m_checks->GetFailure(), __LINE__,
                               "apps/code-analyzer/FileChecker");
    const bool mayIgnore = SyntaxParser::Utf16OrderOf(bytes) || Findings::CIgnores::MayHave(bytes);
    return m_describer.Describe(
        {input.shown, input.absolute, [this] { return m_reader->GetText(); }, mayIgnore, input.standardInput},
        std::move(found), *rules);
}

} // namespace Kesh::CommandLine
