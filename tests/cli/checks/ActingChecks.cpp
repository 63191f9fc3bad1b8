// Checks that do what the text asks for, in place of the real ones.

#include "Kesh/CodeAnalyzer/ITextChecks.h"

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

using namespace Kesh;

namespace {

class CFixedTexts final : public CodeAnalyzer::IDiagnosticTexts
{
public:
    std::wstring GetTitle(std::int32_t /*code*/) override { return L"found"; }
    std::wstring GetMessage(const CodeAnalyzer::SDiagnostic& /*diagnostic*/) override { return L"found"; }
    std::wstring GetMessage(const CodeAnalyzer::SRelatedPlace& /*place*/) override { return {}; }
};

class CActingChecks final : public CodeAnalyzer::ITextChecks
{
public:
    bool Check(const boost::shared_ptr<SyntaxParser::IReader>& reader, const std::wstring& /*path*/,
               const std::wstring& /*factoryName*/, std::vector<CodeAnalyzer::SDiagnostic>& found) override
    {
        const std::wstring text = reader->GetText();
        const auto asks = [&](const wchar_t* word) { return text.find(word) != std::wstring::npos; };
        if (asks(L"crash")) {
            ::signal(SIGSEGV, SIG_DFL); // a sanitizer would make a report and an exit of it
            ::raise(SIGSEGV);
        }
        if (asks(L"sleep"))
            std::this_thread::sleep_for(std::chrono::minutes(2));
        if (asks(L"find"))
            found.push_back({{{{0, 0}, {1, 0}}, 101, CodeAnalyzer::SeverityError}, {}});
        if (asks(L"throw"))
            throw std::runtime_error("thrown");
        m_failed = asks(L"fail");
        return !m_failed;
    }
    CodeAnalyzer::ICustomNames* GetCustomNames() override { return nullptr; }
    CodeAnalyzer::IDiagnosticTexts* GetTexts() override { return &m_texts; }
    CodeAnalyzer::IGrammarCheck* GetGrammarCheck() override { return nullptr; }
    CodeAnalyzer::IMarkupCheck* GetMarkupCheck() override { return nullptr; }
    void Free() override { delete this; }
    std::wstring GetFailure() override { return m_failed ? L"no more regions" : L""; }

private:
    bool m_failed = false;
    CFixedTexts m_texts;
};

} // namespace

CodeAnalyzer::ITextChecks* CodeAnalyzerCreateChecks(SDK::IApplication* /*application*/)
{
    return new CActingChecks;
}
