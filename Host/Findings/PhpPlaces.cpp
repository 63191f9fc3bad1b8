#include "Findings/PhpPlaces.h"

#include "Kesh/SyntaxParser/Regions.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/TextReader.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace Kesh::Findings {

namespace {

using namespace SyntaxParser;

/// Notes for each line in what region it begins.
class CLineStarts final : public IStateRegionHandler
{
public:
    CLineStarts(std::vector<EPlace>& places, std::vector<CPhpPlaces::SRegion>& regions)
        : m_places(places), m_regions(regions)
    {
    }

    void Init(boost::shared_ptr<IReader> /*reader*/) override {}
    bool BeforeParse(const STextChange& /*change*/, boost::shared_ptr<IReader> /*reader*/) override
    {
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    int AddRegion(CRegion* region) override
    {
        const CIterator& start = region->start;
        const auto lines = static_cast<std::int64_t>(m_places.size());
        for (std::int64_t y = start.x == 0 ? start.y : start.y + 1;
             y < lines && CIterator{0, y} < region->end; ++y)
            m_places[static_cast<std::size_t>(y)] = PlaceIn(*region, start == CIterator{0, y});
        EPlace place = PlaceIn(*region, true);
        if (place == EPlace::Code && region->definition == GetDefRegions()->Php.TokenDefs[PhpToken::Heredoc])
            place = EPlace::Inside;
        m_regions.push_back({{start, region->end}, place});
        return 0;
    }
    std::wstring GetSRName() override { return L"LineStarts"; }
    CIterator GetStartPos() override { return {-1, -1}; }
    CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    static EPlace PlaceIn(const CRegion& region, bool atStart)
    {
        const SPhpRegionDefs& defs = GetDefRegions()->Php;
        if (region.definition == defs.TokenDefs[PhpToken::Outside])
            return EPlace::Markup;
        if (region.definition == defs.TagDefs[PhpTag::Opening])
            return EPlace::OpeningTag;
        if (region.definition == defs.TokenDefs[PhpToken::StringContent] ||
            region.definition == defs.TokenDefs[PhpToken::StringEnd])
            return EPlace::Inside;
        return region.definition == defs.TokenDefs[PhpToken::Text] || atStart ? EPlace::Code : EPlace::Inside;
    }

    std::vector<EPlace>& m_places;
    std::vector<CPhpPlaces::SRegion>& m_regions;
};

} // namespace

CPhpPlaces::CPhpPlaces(std::wstring_view text, const std::wstring& factory, std::size_t lines)
    : m_places(lines, EPlace::Markup)
{
    const auto document = MakeSPDocument(boost::make_shared<CTextReader>(std::wstring(text)), {{}, factory});
    CLineStarts starts(m_places, m_regions);
    boost::dynamic_pointer_cast<IParser>(document->GetComponent(L"IParser").lock())
        ->AddStateRegionHandler(&starts);
    document->Parse(true);
}

EPlace CPhpPlaces::AtStartOf(std::int64_t line) const
{
    return line < 0 || line >= static_cast<std::int64_t>(m_places.size())
               ? EPlace::Markup
               : m_places[static_cast<std::size_t>(line)];
}

std::optional<CIterator> CPhpPlaces::ForComment(const CIterator& place) const
{
    auto region = std::upper_bound(m_regions.begin(), m_regions.end(), place,
                                   [](const CIterator& at, const SRegion& r) { return at < r.span.start; });
    bool inside = false; // of a string, before the beginning of which a comment may do
    while (region != m_regions.begin()) {
        --region;
        const auto& [start, end] = region->span;
        if (region->place == EPlace::Inside) {
            inside = true;
            continue;
        }
        CIterator spot = inside || start == place ? start : end <= place ? place : end;
        if (region->place == EPlace::OpeningTag)
            spot = end;
        if (region->place == EPlace::Markup || spot.y != place.y)
            return {};
        return spot;
    }
    return {};
}

} // namespace Kesh::Findings
