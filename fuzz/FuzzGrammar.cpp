// Any bytes as PHP for the grammar check: its tokens lie in the text, in order; its errors lie in the text; a
// check of another text before changes nothing.

#include "Grammar/PhpGrammarChecker.h"
#include "Require.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <boost/make_shared.hpp>
#include <cstdint>
#include <string_view>

using namespace Kesh;
using SyntaxParser::CIterator;

namespace {

class COrderedTokens final : public SyntaxParser::ITokenHandler
{
public:
    bool BeginTokens() override
    {
        m_last = {};
        return true;
    }
    void AddToken(const SyntaxParser::SPhpToken& token) override
    {
        Require(m_last <= token.start && token.start <= token.end);
        m_last = token.end;
    }
    void EndTokens(CIterator end) override { Require(m_last <= end); }

private:
    CIterator m_last;
};

class CChecked
{
public:
    CChecked() { Require(m_checker.Follow(*m_document)); }

    std::vector<CodeAnalyzer::SGrammarDiagnostic> Check(const std::wstring& text)
    {
        m_reader->SetText(text);
        m_checker.Expect(true, 0);
        m_document->Parse(true);
        Require(m_checker.HasVerdict());
        for (const auto& diagnostic : m_checker.Diagnostics()) {
            Require(CIterator{} <= diagnostic.error.pos.start);
            Require(diagnostic.error.pos.start <= diagnostic.error.pos.end);
            Require(diagnostic.error.pos.start.y <= m_reader->GetEnd().y);
        }
        return m_checker.Diagnostics();
    }
    SyntaxParser::ISPDocument& Document() { return *m_document; }

private:
    boost::shared_ptr<SyntaxParser::CTextReader> m_reader =
        boost::make_shared<SyntaxParser::CTextReader>(std::wstring());
    boost::shared_ptr<SyntaxParser::ISPDocument> m_document =
        SyntaxParser::MakeSPDocument(m_reader, {L"/fuzz.php", L"PHPSPDocFactory"});
    CodeAnalyzer::CPhpGrammarChecker m_checker;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring text = SyntaxParser::DecodeSource(bytes);
    CChecked checked;
    COrderedTokens tokens;
    boost::dynamic_pointer_cast<SyntaxParser::ITokenSource>(
        checked.Document().GetComponent(L"ITokenSource").lock())
        ->AddTokenHandler(&tokens);
    const auto first = checked.Check(text);
    checked.Check(L"<?php " + text.substr(text.size() / 2));
    const auto again = checked.Check(text);
    Require(first.size() == again.size());
    for (std::size_t i = 0; i < first.size(); ++i)
        Require(first[i].error.code == again[i].error.code && first[i].error.pos == again[i].error.pos);
    return 0;
}
