#include "Markup/ScriptBlocks.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t npos = std::wstring_view::npos;

/// Reads the braces of the scripts, one after another.
class CBlockReader
{
public:
    CBlockReader(std::wstring_view text, SFlow& flow) : m_text(text), m_flow(flow) {}

    void Read(std::size_t begin, std::size_t end)
    {
        m_begin = begin;
        wchar_t quote = L'\0';
        std::size_t head = begin; // of what a brace may belong to
        for (std::size_t i = begin; i < end; ++i) {
            const wchar_t c = m_text[i];
            if (quote != L'\0') {
                quote = c == quote ? L'\0' : quote;
            } else if (c == L'\'' || c == L'"') {
                quote = c;
            } else if (c == L'{') {
                Open(m_text.substr(head, i - head), head);
                head = i + 1;
            } else if (c == L'}') {
                Close(m_text.substr(i + 1, end - i - 1));
                head = i + 1;
            } else if (c == L';') {
                head = i + 1;
            }
        }
    }

    bool IsEven() const { return m_open == 0 && m_even; }

private:
    void Open(std::wstring_view head, std::size_t at)
    {
        if (!m_goesOn)
            Mark(SFlowMark::StatementBegin);
        if (head.find(L"each") != npos || head.find(L"for") != npos || head.find(L"while") != npos)
            m_flow.marks.back().branching = EBranching::Loop;
        const std::size_t round = head.find(L'(');
        const std::size_t last = head.rfind(L')');
        Mark(SFlowMark::BranchBegin);
        m_flow.marks.back().always = m_goesOn && round == npos;
        if (round != npos && last != npos && round < last)
            m_flow.marks.back().condition = {at + round + 1, at + last};
        m_goesOn = false;
        ++m_open;
    }

    void Close(std::wstring_view rest)
    {
        if (m_open == 0) {
            m_even = false;
            return;
        }
        --m_open;
        Mark(SFlowMark::BranchEnd);
        const std::size_t next = rest.find_first_not_of(L" \t\r\n");
        m_goesOn = next != npos && rest.substr(next).starts_with(L"else");
        if (!m_goesOn)
            Mark(SFlowMark::StatementEnd);
    }

    void Mark(SFlowMark::EKind kind)
    {
        m_flow.marks.push_back({kind, EBranching::Choice, false, m_begin, {}});
    }

    std::wstring_view m_text;
    SFlow& m_flow;
    std::size_t m_begin = 0;
    std::size_t m_open = 0;
    bool m_goesOn = false; ///< the next brace opens another branch
    bool m_even = true;
};

/// The marks of both in the order of the text; false where they do not nest.
bool Merge(std::vector<SFlowMark>& marks, std::vector<SFlowMark> others)
{
    struct SBegin
    {
        SFlowMark::EKind kind;
        bool other;
    };
    std::vector<SBegin> open;
    std::vector<SFlowMark> merged;
    merged.reserve(marks.size() + others.size());
    std::size_t a = 0;
    std::size_t b = 0;
    while (a < marks.size() || b < others.size()) {
        const bool other = a == marks.size() || (b < others.size() && others[b].offset < marks[a].offset);
        merged.push_back(other ? others[b++] : marks[a++]);
        const SFlowMark::EKind kind = merged.back().kind;
        const bool ends =
            kind == SFlowMark::StatementEnd || kind == SFlowMark::BranchEnd || kind == SFlowMark::ScopeEnd;
        if (ends) {
            if (open.empty() || open.back().other != other)
                return false;
            open.pop_back();
        } else if (kind != SFlowMark::Exit) {
            open.push_back({kind, other});
        }
    }
    marks = std::move(merged);
    return true;
}

} // namespace

void AddScriptBlocks(SFlow& flow, const SyntaxParser::IMarkupPlaces& places)
{
    const std::wstring_view text = places.Written();
    SFlow blocks;
    CBlockReader reader(text, blocks);
    for (std::size_t i = text.find(L"<#"); i != npos; i = text.find(L"<#", i + 2)) {
        const std::size_t end = text.find(L"#>", i);
        if (end == npos)
            break;
        reader.Read(i + 2, end);
        i = end;
    }
    if (!reader.IsEven())
        flow.sound = false;
    else if (!blocks.marks.empty())
        flow.sound = flow.sound && Merge(flow.marks, std::move(blocks.marks));
}

} // namespace Kesh::CodeAnalyzer
