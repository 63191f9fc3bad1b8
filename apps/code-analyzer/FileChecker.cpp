#include "FileChecker.h"

#include "Application/PluginLoader.h"
#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Findings/Ignores.h"
#include "Findings/MistypedIgnores.h"
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
std::wstring FactoryOf(const std::wstring& path)
{
    std::wstring factory = SyntaxParser::FactoryForPath(path);
    return factory.empty() ? L"PHPSPDocFactory" : factory;
}

} // namespace

CFileChecker::CFileChecker(const SOptions& options, TProjectRules rules)
    : m_rules(rules),
      m_check(Host::CPlugin::Windowless, std::move(rules), {!options.noGrammar, !options.noMarkup}),
      m_describer(m_check.Texts())
{
}

std::string_view CFileChecker::ReadInput(const SInput& input, const std::wstring& path)
{
    if (!input.standardInput && !input.staged)
        return Host::ReadFileInto(m_bytes, path);
    m_bytes = input.staged ? ReadStaged(*input.staged) : ReadStandardInput();
    return m_bytes;
}

SFixedFile CFileChecker::Fix(const SInput& input, bool onlyDiff)
{
    const std::wstring path = input.Absolute();
    return FixFile(m_check, input, FactoryOf(path), *m_rules->For(path), onlyDiff);
}

std::optional<Findings::SFileFindings> CFileChecker::Check(const SInput& input)
{
    const std::wstring path = input.Absolute();
    const std::string_view bytes = ReadInput(input, path);
    if (SyntaxParser::HoldsNoSource(bytes))
        return {};
    std::vector<CodeAnalyzer::SDiagnostic> found = m_check.CheckBytes(bytes, path, FactoryOf(path));
    const bool mayIgnore = SyntaxParser::Utf16OrderOf(bytes) || Findings::MayMeanToIgnore(bytes);
    return m_describer.Describe(
        {input.shown, path, [this] { return m_check.Text(); }, mayIgnore, input.standardInput},
        std::move(found), *m_rules->For(path));
}

} // namespace Kesh::CommandLine
