#include "QuickFixes/IgnoreComment.h"

#include "Findings/NameErrors.h"
#include "SPBase/reader.h"
#include "SyntaxParser/PhpDefs.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/make_shared.hpp>

namespace Kesh::QuickFixes {

namespace {

using namespace SyntaxParser;

enum class EPlace {
    Markup,
    Code,       ///< between two words of PHP
    OpeningTag, ///< where PHP begins
    Inside,     ///< a string or a comment of PHP
};

/// Finds out in what a place of a document lies that may hold PHP.
class CPlaceFinder final : public IStateRegionHandler
{
public:
    explicit CPlaceFinder(const CIterator& place) : m_place(place) {}
    EPlace Found() const { return m_found; }

    void Init(boost::shared_ptr<IReader> /*reader*/) override {}
    bool BeforeParse(const STextChange& /*change*/, boost::shared_ptr<IReader> /*reader*/) override
    {
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    int AddRegion(CRegion* region) override
    {
        if (!(region->start <= m_place && m_place < region->end))
            return 0;
        const SPhpRegionDefs& defs = GetDefRegions()->Php;
        if (region->definition == defs.TokenDefs[PhpOutside])
            m_found = EPlace::Markup;
        else if (region->definition == defs.TagDefs[1])
            m_found = EPlace::OpeningTag;
        else if (region->definition == defs.TokenDefs[PhpStringContent] ||
                 region->definition == defs.TokenDefs[PhpStringEnd])
            m_found = EPlace::Inside;
        else if (region->definition == defs.TokenDefs[PhpText] || region->start == m_place)
            m_found = EPlace::Code;
        else
            m_found = EPlace::Inside;
        return 0;
    }
    std::wstring GetSRName() override { return L"PlaceFinder"; }
    CIterator GetStartPos() override { return {-1, -1}; }
    CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    CIterator m_place;
    EPlace m_found = EPlace::Markup;
};

EPlace PlaceOf(const CIterator& place, const SFileText& file)
{
    if (file.factory != L"PHPSPDocFactory")
        return EPlace::Markup;
    const auto document =
        MakeSPDocument(boost::make_shared<CSimpleReader>(std::wstring(file.text)), {{}, file.factory});
    CPlaceFinder finder(place);
    boost::dynamic_pointer_cast<IParser>(document->GetComponent(L"IParser").lock())
        ->AddStateRegionHandler(&finder);
    document->Parse(true);
    return finder.Found();
}

/// Whether the markup in front of a place leaves a tag open.
bool IsInsideTag(std::wstring_view before)
{
    const std::size_t open = before.rfind(L'<');
    return open != std::wstring_view::npos && before.find(L'>', open) == std::wstring_view::npos;
}

bool IsInsideStyle(std::wstring_view before)
{
    const std::size_t open = before.rfind(L"<style");
    return open != std::wstring_view::npos && before.find(L"</style", open) == std::wstring_view::npos;
}

} // namespace

std::optional<SEdit> IgnoreComment(const Findings::SFinding& finding, const SFileText& file)
{
    const CIterator at = finding.error.pos.start;
    const CIterator lineStart{0, at.y};
    const std::wstring words = L"code-analyzer-ignore " + std::to_wstring(finding.error.code);
    const std::wstring_view line = file.lines.Line(at.y);
    const std::wstring indent(line.substr(0, std::min(line.find_first_not_of(L" \t"), line.size())));
    const auto above = [&](const std::wstring& comment) {
        return SEdit{{lineStart, lineStart}, indent + comment + L"\n"};
    };
    const EPlace place = PlaceOf(lineStart, file);
    if (!Findings::IsNameError(finding.error.code)) {
        if (place == EPlace::Code)
            return above(L"// " + words);
        return SEdit{{at, at}, L"/* " + words + L" */ "};
    }
    if (place != EPlace::Markup && place != EPlace::OpeningTag)
        return {};
    const std::wstring_view before = file.text.substr(0, file.lines.Offset(lineStart));
    if (file.factory == L"CSSSPDocFactory" || IsInsideStyle(before))
        return above(L"/* " + words + L" */");
    if (IsInsideTag(before) || place == EPlace::OpeningTag)
        return {};
    return above(L"<!-- " + words + L" -->");
}

} // namespace Kesh::QuickFixes
