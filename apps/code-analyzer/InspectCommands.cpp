#include "Commands.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstdio>
#include <utility>
#include <vector>

namespace Kesh::CommandLine {

namespace {

using namespace SyntaxParser;

boost::shared_ptr<ISPDocument> MakeDocument(const std::string& path)
{
    const std::wstring file = Host::PathFromBytes(path);
    const std::wstring text = DecodeSource(Host::ReadFileBytes(file));
    const std::wstring factory = FactoryForPath(file);
    return MakeSPDocument(boost::make_shared<CTextReader>(text),
                          {file, factory.empty() ? L"PHPSPDocFactory" : factory});
}

std::string Span(const CIterator& start, const CIterator& end)
{
    const auto point = [](const CIterator& p) {
        return std::to_string(p.y + 1) + ':' + std::to_string(p.x + 1);
    };
    return point(start) + '-' + point(end);
}

class CRegionPrinter final : public IStateRegionHandler
{
public:
    void Init(boost::shared_ptr<IReader> /*reader*/) override {}
    bool BeforeParse(const STextChange& /*change*/, boost::shared_ptr<IReader> reader) override
    {
        m_reader = std::move(reader);
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    int AddRegion(CRegion* region) override
    {
        const std::wstring text =
            region->text.data() ? std::wstring(region->text) : m_reader->GetText(region->start, region->end);
        std::printf("%-24s %-16s \"%s\"\n", Printable(region->definition->GetName()).c_str(),
                    Span(region->start, region->end).c_str(), Printable(text).c_str());
        return 0;
    }
    std::wstring GetSRName() override { return L"RegionPrinter"; }
    CIterator GetStartPos() override { return {-1, -1}; }
    CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    boost::shared_ptr<IReader> m_reader;
};

const char* KindName(std::int32_t kind)
{
    switch (kind) {
    case SemanticRoot: return "root";
    case SemanticDynamicTag: return "dynamic-tag";
    case SemanticCustomTag: return "custom-tag";
    case SemanticDynamicAttribute: return "dynamic-attribute";
    case SemanticText: return "text";
    case SemanticComment: return "comment";
    case SemanticTag: return "tag";
    case SemanticAttribute: return "attribute";
    case SemanticCss: return "css";
    default: return "unknown";
    }
}

void PrintTree(const char* title, const SSemanticTree& tree)
{
    std::printf("%s\n", title);
    if (tree.nodes.empty())
        return;
    // Any nesting depth: no recursion, and an indentation that stops growing.
    constexpr std::size_t MaxIndent = 40;
    std::vector<std::pair<TSemanticIndex, std::size_t>> pending{{tree.nodes[0].firstChild, 1}};
    while (!pending.empty()) {
        const auto [index, depth] = pending.back();
        pending.pop_back();
        if (index == NoSemanticNode)
            continue;
        const SSemanticTreeNode& node = tree.nodes[index];
        const std::string kind =
            node.regionKind ? Printable(node.regionKind->GetName()) : std::string(KindName(node.kind));
        std::printf("%*s%s \"%s\" %s\n", static_cast<int>(2 * std::min(depth, MaxIndent)), "", kind.c_str(),
                    Printable(node.name).c_str(), Span(node.span.start, node.span.end).c_str());
        pending.emplace_back(node.nextSibling, depth);
        pending.emplace_back(node.firstChild, depth + 1);
    }
}

} // namespace

int RunRegions(const SOptions& options)
{
    const boost::shared_ptr<ISPDocument> document = MakeDocument(options.paths.front());
    CRegionPrinter printer;
    boost::dynamic_pointer_cast<IParser>(document->GetComponent(L"IParser").lock())
        ->AddStateRegionHandler(&printer);
    document->Parse(true);
    return ExitClean;
}

int RunTree(const SOptions& options)
{
    const boost::shared_ptr<ISPDocument> document = MakeDocument(options.paths.front());
    if (ISemanticParser* parser = document->GetSemanticParser(L"HTML"))
        parser->SetEnabled(true);
    document->Parse(true);
    document->LockSemanticData();
    for (const auto& [language, title] : {std::pair{L"HTML", "HTML"}, std::pair{L"CSS", "CSS"}})
        if (const SSemanticTree* tree = document->GetSemanticTree(language))
            PrintTree(title, *tree);
    document->UnlockSemanticData();
    return ExitClean;
}

} // namespace Kesh::CommandLine
