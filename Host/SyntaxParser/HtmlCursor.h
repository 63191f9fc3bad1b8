#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

struct SHtmlProblem
{
    EHtmlProblem problem = EHtmlProblem::Count;
    SMarkupSpan span;
};

/// A place in a text that the parts of the tokenizer read on from, and the problems met since it was asked
/// for them.
class CHtmlCursor
{
public:
    /// What stands after the end; no text holds it.
    static constexpr wchar_t End = L'\0';

    explicit CHtmlCursor(const IMarkupPlaces& places) : m_text(places.Text()), m_written(places.Written()) {}

    std::size_t At() const { return m_at; }
    std::size_t Size() const { return m_text.size(); }
    bool IsAtEnd() const { return m_at == m_text.size(); }
    wchar_t Peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : End;
    }
    void Skip(std::size_t count = 1) { m_at += count; }
    void MoveTo(std::size_t place) { m_at = place; }
    void SkipSpaces()
    {
        while (IsSpace(Peek()))
            Skip();
    }
    /// Goes to the next of `stops`, or to the end.
    void SkipTo(std::wstring_view stops)
    {
        // find_first_of() calls a function for each character.
        while (m_at < m_text.size() && std::ranges::find(stops, m_text[m_at]) == stops.end())
            ++m_at;
    }
    void SkipTo(wchar_t stop) { m_at = std::min(m_text.find(stop, m_at), m_text.size()); }
    /// Goes behind all of `c` that come next.
    void SkipAll(wchar_t c);
    /// The same as it is written.
    std::wstring_view Written(SMarkupSpan span) const
    {
        return m_written.substr(span.begin, span.end - span.begin);
    }
    std::wstring_view Text(SMarkupSpan span) const
    {
        return m_text.substr(span.begin, span.end - span.begin);
    }
    /// Whether `word`, in lower case, comes next, or that much later, in whatever case.
    bool IsNext(std::wstring_view word, std::size_t ahead = 0) const;

    void Report(EHtmlProblem problem, SMarkupSpan span) { m_problems.push_back({problem, span}); }
    /// At the next character.
    void Report(EHtmlProblem problem) { Report(problem, {m_at, std::min(m_at + 1, m_text.size())}); }
    /// Reports what no text may hold, from `begin` up to here.
    void ReportCharacters(std::size_t begin, bool mayBeNull = false);
    std::size_t CountProblems() const { return m_problems.size(); }
    /// Withdraws all but so many.
    void KeepProblems(std::size_t count) { m_problems.resize(count); }
    /// In the text's order.
    std::vector<SHtmlProblem>& Problems();

    static bool IsSpace(wchar_t c)
    {
        return c == L' ' || c == L'\n' || c == L'\t' || c == L'\r' || c == L'\f';
    }
    static bool IsLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }
    static bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
    static wchar_t Lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }
    static bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }
    static bool IsNoncharacter(char32_t c) { return (c >= 0xFDD0 && c <= 0xFDEF) || (c & 0xFFFE) == 0xFFFE; }
    static bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c <= 0x9F); }

private:
    std::wstring_view m_text;
    std::wstring_view m_written;
    std::size_t m_at = 0;
    std::vector<SHtmlProblem> m_problems;
};

} // namespace Kesh::SyntaxParser
