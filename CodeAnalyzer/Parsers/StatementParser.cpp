#include "Parsers/StatementParser.h"

#include "Base/CommonString.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CIterator;
using SyntaxParser::CRegion;
using SyntaxParser::IReader;
using SyntaxParser::ISynRegion;

namespace {

using TWords = std::vector<std::wstring_view>;

const TWords& ReservedWords()
{
    static const TWords words = [] {
        TWords list{
            L"abstract",  L"and",        L"array",        L"as",         L"break",        L"case",
            L"catch",     L"cfunction",  L"class",        L"clone",      L"const",        L"continue",
            L"declare",   L"default",    L"do",           L"else",       L"elseif",       L"enddeclare",
            L"endfor",    L"endforeach", L"endif",        L"endswitch",  L"endwhile",     L"extends",
            L"final",     L"finally",    L"for",          L"foreach",    L"from",         L"function",
            L"global",    L"goto",       L"if",           L"implements", L"interface",    L"instanceof",
            L"namespace", L"new",        L"old_function", L"or",         L"private",      L"protected",
            L"public",    L"static",     L"switch",       L"throw",      L"trait",        L"try",
            L"use",       L"var",        L"while",        L"xor",        L"die",          L"echo",
            L"empty",     L"exit",       L"eval",         L"include",    L"include_once", L"isset",
            L"list",      L"require",    L"require_once", L"return",     L"print",        L"unset",
            L"yield"};
        std::sort(list.begin(), list.end());
        return list;
    }();
    return words;
}

} // namespace

CStatementParser::CStatementParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<IReader> reader,
                                   CParentParser* parent)
    : m_defs(defs),
      m_reader(std::move(reader)),
      m_parent(parent),
      m_reservedWords(ReservedWords()),
      m_classes(CRegionClasses::Shared(defs->Php))
{
}

int CStatementParser::IsNonSignificantRegion(CRegion* region)
{
    const auto& php = Php();
    const ISynRegion* definition = region->definition;
    if (definition == php.TokenDefs[PhpToken::Text])
        return CRegionClasses::IsBlank(Text(region));
    if (definition == php.TokenDefs[PhpToken::Word])
        return !BeginsOtherwise(region, L'p') && HasText(region, {L"php", 3}, 1);
    return m_classes->IsComment(definition);
}

std::wstring_view CStatementParser::ReadText(CRegion* region) const
{
    m_copy = m_reader->GetText(region->start, region->end);
    return m_copy;
}

int CStatementParser::IsExpressionKeyword(std::wstring_view word)
{
    return !std::binary_search(m_reservedWords.begin(), m_reservedWords.end(),
                               std::wstring_view(CCommonString::LowerCaseFast(word)));
}

wchar_t CStatementParser::ReadLastChar(CRegion* region) const
{
    const CIterator end = region->end;
    const CIterator last{std::max<std::int64_t>(end.x - 1, 0), end.y};
    return m_reader->GetText(last, end)[0];
}

} // namespace Kesh::CodeAnalyzer
