// Any bytes as a document with markup: the trees are built, hang together, follow the document, and are
// checked.

#include "Application/BareApplication.h"
#include "Checks/CAMarkupCheck.h"
#include "Markup/CssSyntaxChecker.h"
#include "Markup/HtmlCustomItemsKeeper.h"
#include "Markup/HtmlSyntaxChecker.h"
#include "Markup/MarkupChecker.h"
#include "Require.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"
#include "Window/CAErrorsManager.h"

#include <boost/make_shared.hpp>
#include <cstdint>
#include <string_view>

using namespace Kesh;
using SyntaxParser::NoSemanticNode;

namespace {

void RequireSound(const SyntaxParser::SSemanticTree& tree)
{
    Require(!tree.nodes.empty());
    for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
        const auto& node = tree.nodes[i];
        // What comes later in the document comes later in the list, so that no walk goes round.
        for (const SyntaxParser::TSemanticIndex next : {node.firstChild, node.nextSibling})
            Require(next == NoSemanticNode || (next > i && next < tree.nodes.size()));
        Require(node.span.start <= node.span.end);
        Require(i == 0 || tree.nodes[i - 1].span.start <= node.span.start);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Host::CBareApplication host;
    static CodeAnalyzer::CCAErrorsManager manager;
    static CodeAnalyzer::CHtmlCustomItemsKeeper customItems;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const wchar_t* factory : {L"PHPSPDocFactory", L"HTMLSPDocFactory", L"CSSSPDocFactory"}) {
        auto reader = boost::make_shared<SyntaxParser::CTextReader>(SyntaxParser::DecodeSource(bytes));
        const auto document = SyntaxParser::MakeSPDocument(reader, {L"/fuzz", factory});
        document->GetSemanticParser(L"HTML")->SetEnabled(true);
        const CodeAnalyzer::CHtmlSyntaxChecker html(nullptr, document, &host, &manager, &customItems);
        const CodeAnalyzer::CCssSyntaxChecker css(nullptr, document, &host, &manager);
        CodeAnalyzer::CCAMarkupCheck wanted;
        wanted.SetEnabled(true);
        CodeAnalyzer::CMarkupChecker markup(&wanted, nullptr, &manager);
        markup.Follow(*document);
        document->Parse(true);
        RequireSound(*document->GetSemanticTree(L"HTML"));
        RequireSound(*document->GetSemanticTree(L"CSS"));
    }
    return 0;
}
