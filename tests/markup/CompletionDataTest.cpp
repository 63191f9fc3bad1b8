#include "SyntaxParser/CompletionData.h"

#include "Base/CommonString.h"
#include "Kesh/SyntaxParser/INameLookup.h"
#include "SyntaxParser/NamePatterns.h"
#include "SyntaxParser/OwnNames.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace Kesh::SyntaxParser {
namespace {

using Base::CCommonString;

bool Has(const TCompletionList& list, const std::string& name)
{
    const std::wstring wide = CCommonString::FromUtf8(name);
    return std::any_of(list.begin(), list.end(),
                       [&](const ICompletionItem* item) { return item->GetName() == wide; });
}

std::string Missing(const TCompletionList& list, const std::string& names)
{
    std::istringstream words(names);
    std::string missing;
    for (std::string name; words >> name;)
        missing += Has(list, name) ? "" : name + " ";
    return missing;
}

const TCompletionList& Attributes(const wchar_t* tag)
{
    return GetBuiltInCompletionData()->GetAttributeSource()->GetAttributes(tag);
}

TEST(CompletionData, SortsItsListsInLowerCaseWithoutDuplicates)
{
    const ICompletionData* data = GetBuiltInCompletionData();
    for (const TCompletionList* list : {&data->GetTags(), &data->GetStyleProperties(), &Attributes(L"*"),
                                        &Attributes(L"a"), &Attributes(L"svg"), &Attributes(L"mi")}) {
        ASSERT_GT(list->size(), 100u);
        for (std::size_t i = 0; i < list->size(); ++i) {
            const std::wstring& name = (*list)[i]->GetName();
            EXPECT_EQ(name, CCommonString::LowerCaseFast(name));
            EXPECT_EQ(name.find_first_of(L" \n\t"), std::wstring::npos);
            EXPECT_TRUE(i == 0 || (*list)[i - 1]->GetName() < name) << CCommonString::ToUtf8(name);
        }
    }
}

TEST(CompletionData, KnowsTags)
{
    const TCompletionList& tags = GetBuiltInCompletionData()->GetTags();
    EXPECT_EQ(Missing(tags,
                      "html head body title meta a p div span h1 h6 ul table tbody td input search dialog "
                      "template slot selectedcontent center font marquee frameset blink "
                      "svg path lineargradient foreignobject fegaussianblur clippath font-face "
                      "math mi mrow annotation-xml mtext"),
              "");
    for (const char* name : {"foo", "h7", "linearGradient", "from", "to", "jdoc:include", "imgg"})
        EXPECT_FALSE(Has(tags, name)) << name;
}

TEST(CompletionData, KnowsAttributesOfEachTag)
{
    const struct
    {
        const wchar_t* tag;
        const char* has;
        const char* lacks;
    } cases[] = {
        {L"div",
         "id class style title lang hidden popover inert tabindex align itemprop itemscope typeof vocab "
         "property prefix role aria-label aria-description onclick ontouchstart onpointerdown "
         "onanimationend ontransitionend onwheel xml:lang xml:space xmlns enterkeyhint part slot nonce",
         "href width foo data-x viewbox"},
        {L"A", "href target download ping rel hreflang onclick", "foo width"},
        {L"img", "src srcset sizes loading fetchpriority decoding alt border lowsrc", "href"},
        {L"iframe", "allowtransparency allowfullscreen loading srcdoc frameborder sandbox", "href"},
        {L"input", "type name value placeholder popovertarget capture list", "href"},
        {L"button", "popovertarget popovertargetaction commandfor command formaction", "href"},
        {L"link", "rel href fetchpriority imagesrcset as integrity", "alt"},
        {L"meta", "name content property http-equiv charset", "href"},
        {L"script", "src async defer nomodule integrity fetchpriority language", "alt"},
        {L"td", "colspan rowspan width height bgcolor background", "href"},
        {L"body", "onload bgcolor topmargin marginwidth background", "href"},
        {L"html", "xmlns xml:lang lang manifest xmlns:og prefix", "href"},
        {L"SVG", "viewbox preserveaspectratio xmlns xmlns:xlink version width height fill x", "href2"},
        {L"path", "d fill stroke-width transform clip-rule class id pathlength vector-effect onclick",
         "points"},
        {L"use", "href xlink:href x y width height", "points"},
        {L"linearGradient", "gradientunits gradienttransform x1 x2 y1 y2 spreadmethod", "points"},
        {L"feGaussianBlur", "stddeviation in result", "points"},
        {L"math", "display xmlns mathcolor dir", "points"},
        {L"mi", "mathvariant id class", "points"},
        {L"unlisted", "id onclick aria-hidden role", "href fill"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Missing(Attributes(c.tag), c.has), "") << CCommonString::ToUtf8(c.tag);
        std::istringstream words(c.lacks);
        for (std::string name; words >> name;)
            EXPECT_FALSE(Has(Attributes(c.tag), name)) << CCommonString::ToUtf8(c.tag) << " " << name;
    }
    EXPECT_EQ(&Attributes(L"unlisted"), &Attributes(L"abbr"));
}

TEST(CompletionData, LooksUpWhatItLists)
{
    const ICompletionData* data = GetBuiltInCompletionData();
    const auto* lookup = dynamic_cast<const INameLookup*>(data);
    ASSERT_NE(lookup, nullptr);
    std::set<std::wstring> names{
        L"", L"a", L"unlisted", L"\x212A", L"div\x130", L"A", std::wstring(L"a\0b", 3)};
    for (const TCompletionList* list : {&data->GetTags(), &data->GetStyleProperties(), &Attributes(L"*"),
                                        &Attributes(L"input"), &Attributes(L"svg"), &Attributes(L"mi")})
        for (const ICompletionItem* item : *list)
            names.insert({item->GetName(), item->GetName() + L"x", item->GetName().substr(1)});
    const auto lists = [](const TCompletionList& list, const std::wstring& name) {
        return std::any_of(list.begin(), list.end(),
                           [&](const ICompletionItem* item) { return item->GetName() == name; });
    };
    for (const std::wstring& name : names) {
        SCOPED_TRACE(CCommonString::ToUtf8(name));
        EXPECT_EQ(lookup->HasTag(name), lists(data->GetTags(), name));
        EXPECT_EQ(lookup->HasStyleProperty(name), lists(data->GetStyleProperties(), name));
        for (const wchar_t* tag : {L"a", L"INPUT", L"Script", L"svg", L"fePointLight", L"math", L"mi",
                                   L"unlisted", L"lin\x212A", L""})
            EXPECT_EQ(lookup->HasAttribute(tag, name), lists(Attributes(tag), name))
                << CCommonString::ToUtf8(tag);
    }
}

TEST(CompletionData, KnowsStyleProperties)
{
    const TCompletionList& properties = GetBuiltInCompletionData()->GetStyleProperties();
    EXPECT_EQ(Missing(properties,
                      "color margin-inline-start grid-template-areas container-type aspect-ratio "
                      "text-wrap accent-color view-transition-name anchor-name zoom "
                      "src unicode-range font-display size-adjust syntax inherits initial-value system "
                      "additive-symbols base-palette navigation marks bleed result "
                      "fill stroke-dasharray stop-color text-anchor "
                      "-webkit-line-clamp -moz-osx-font-smoothing -ms-overflow-style "
                      "-webkit-font-smoothing -webkit-tap-highlight-color filter behavior "
                      "scrollbar-face-color"),
              "");
    for (const char* name : {"colour", "--x", "foo", "-webkit-foo", "mask-colour"})
        EXPECT_FALSE(Has(properties, name)) << name;
}

TEST(NamePatterns, StarsStandForAnythingAndNothingElseIsSpecial)
{
    struct SCase
    {
        const wchar_t* pattern;
        std::vector<std::wstring> matched;
        std::vector<std::wstring> others;
    };
    const SCase cases[] = {
        {L"a", {L"a"}, {L"", L"aa", L"A", L"b"}},
        {L"", {L""}, {L"a"}},
        {L"*", {L"", L"a", L"*"}, {}},
        {L"x:*", {L"x:", L"x:y", L"x:y:z"}, {L"x", L"ax:y", L":y"}},
        {L"*-", {L"-", L"a-", L"--"}, {L"a", L"-a"}},
        {L"a*a", {L"aa", L"aba", L"aaa"}, {L"a", L"ab", L"ba"}},
        {L"a*b*c", {L"abc", L"axbxc", L"abbc", L"abcbc"}, {L"ac", L"acb", L"bc", L"abcd"}},
        {L"*a*b*", {L"ab", L"xaxbx", L"bab"}, {L"ba", L"a", L"b"}},
        {L"a**b", {L"ab", L"axb"}, {L"a", L"b"}},
        {L"*ab*ab*", {L"abab", L"abxab"}, {L"aab", L"aba"}},
        {L"\\*ng*", {L"*ng", L"*ngif"}, {L"ng", L"x*ng"}},
        {L"\\*", {L"*"}, {L"", L"a", L"\\*"}},
        {L"[*]", {L"[]", L"[a]"}, {L"a", L"["}},
        {L"?.a\\", {L"?.a\\"}, {L"x.a\\", L"?xa\\"}},
        {L"\u00fc*", {L"\u00fc", L"\u00fcx"}, {L"u"}},
    };
    for (const SCase& test : cases) {
        const CNamePatterns patterns({test.pattern});
        for (const std::wstring& name : test.matched)
            EXPECT_TRUE(patterns.Matches(name)) << test.pattern << " takes " << name;
        for (const std::wstring& name : test.others)
            EXPECT_FALSE(patterns.Matches(name)) << test.pattern << " does not take " << name;
    }
    // A matcher that tries again would not end.
    std::wstring many;
    for (int i = 0; i < 40; ++i)
        many += L"*a";
    EXPECT_FALSE(CNamePatterns({many + L"*b"}).Matches(std::wstring(1'000'000, L'a')));
}

TEST(CompletionData, APatternOfOwnNamesIsKnownButNotOffered)
{
    const SOwnNames own{{L"mine", L"x:*"}, {L"owned", L"v-*"}, {L"-own", L"-mine-*"}};
    const auto data = MakeWidenedData(*GetBuiltInCompletionData(), own);
    const auto& lookup = dynamic_cast<const INameLookup&>(*data);
    for (const wchar_t* name : {L"mine", L"x:y", L"div"})
        EXPECT_TRUE(lookup.HasTag(name)) << name;
    for (const wchar_t* name : {L"owned", L"v-if", L"href", L"class"})
        EXPECT_TRUE(lookup.HasAttribute(L"A", name)) << name;
    for (const wchar_t* name : {L"-own", L"-mine-a", L"color"})
        EXPECT_TRUE(lookup.HasStyleProperty(name)) << name;
    EXPECT_TRUE(lookup.HasAttribute(L"X:y", L"whatever") && lookup.HasAttribute(L"Mine", L"whatever"));
    EXPECT_FALSE(lookup.HasTag(L"v-if") || lookup.HasAttribute(L"p", L"href") ||
                 lookup.HasStyleProperty(L"x:y"));
    EXPECT_TRUE(Has(data->GetTags(), "mine") && Has(data->GetStyleProperties(), "-own") &&
                Has(data->GetAttributeSource()->GetAttributes(L"p"), "owned"));
    EXPECT_FALSE(Has(data->GetTags(), "x:*") || Has(data->GetStyleProperties(), "-mine-*") ||
                 Has(data->GetAttributeSource()->GetAttributes(L"p"), "v-*"));
}

} // namespace
} // namespace Kesh::SyntaxParser
