#include "Findings/Ignores.h"

#include <algorithm>
#include <cwchar>
#include <limits>
#include <map>
#include <set>
#include <utility>

namespace Kesh::Findings {

namespace {

constexpr std::wstring_view Marker = L"code-analyzer-ignore";
constexpr std::size_t RareAt = 10; ///< the place of its "z", a rare letter in any language

bool IsBlank(wchar_t c)
{
    return c == L' ' || c == L'\t';
}

/// The place of the next marker from `at` on.
std::size_t FindMarker(std::wstring_view text, std::size_t at)
{
    static_assert(Marker[RareAt] == L'z');
    while (at + Marker.size() <= text.size()) {
        const wchar_t* rare =
            std::wmemchr(text.data() + at + RareAt, L'z', text.size() - at - Marker.size() + 1);
        if (!rare)
            break;
        at = static_cast<std::size_t>(rare - text.data()) - RareAt;
        if (text.substr(at, Marker.size()) == Marker)
            return at;
        ++at;
    }
    return std::wstring_view::npos;
}

/// The numbers that stand first in a comment's rest.
std::vector<std::int32_t> ReadCodes(std::wstring_view rest)
{
    std::vector<std::int32_t> codes;
    std::set<std::int32_t> known;
    std::size_t at = 0;
    for (;;) {
        while (at < rest.size() && (IsBlank(rest[at]) || rest[at] == L',' || rest[at] == L':'))
            ++at;
        std::int32_t code = 0;
        std::size_t digits = 0;
        for (; at < rest.size() && rest[at] >= L'0' && rest[at] <= L'9' && digits < 6; ++at, ++digits)
            code = code * 10 + static_cast<std::int32_t>(rest[at] - L'0');
        if (digits == 0)
            return codes;
        if (known.insert(code).second)
            codes.push_back(code);
    }
}

} // namespace

std::size_t CommentStart(std::wstring_view text, std::size_t at)
{
    std::size_t end = at;
    while (end > 0 && IsBlank(text[end - 1]))
        --end;
    const std::wstring_view before = text.substr(0, end);
    for (const std::wstring_view opener : {L"<!--", L"//", L"/**", L"/*", L"#"})
        if (before.ends_with(opener))
            return end - opener.size();
    return std::wstring_view::npos;
}

bool CIgnores::MayHave(std::wstring_view text)
{
    return FindMarker(text, 0) != std::wstring_view::npos;
}

CIgnores::CIgnores(std::wstring_view text, const CTextLines& lines)
    : m_lastLine(static_cast<std::int64_t>(lines.Count()) - 1)
{
    for (std::size_t at = FindMarker(text, 0); at != std::wstring_view::npos;
         at = FindMarker(text, at + Marker.size()))
        Read(text, lines, at);
}

void CIgnores::Read(std::wstring_view text, const CTextLines& lines, std::size_t at)
{
    const std::size_t start = CommentStart(text, at);
    if (start == std::wstring_view::npos)
        return;
    const std::int64_t line = lines.Position(at).y;
    const std::size_t lineStart = lines.Offset({0, line});
    std::wstring_view rest = lines.Line(line).substr(at - lineStart + Marker.size());
    SIgnore ignore;
    ignore.span = {lines.Position(at), {}};
    ignore.first = ignore.last = line;
    std::size_t length = Marker.size();
    if (rest.starts_with(L"-end")) {
        ignore.span.end = lines.Position(at + length + 4);
        if (m_open.empty()) {
            // An end of nothing silences nothing.
            ignore.last = line - 1;
            ignore.needed = {false};
            m_ignores.push_back(std::move(ignore));
        } else {
            m_ignores[m_open.back()].last = line;
            m_open.pop_back();
        }
        return;
    }
    const bool stretch = rest.starts_with(L"-start");
    if (stretch) {
        length += 6;
        rest.remove_prefix(6);
    } else if (!rest.empty() && !IsBlank(rest[0]) && rest[0] != L':' && rest[0] != L'*' &&
               !rest.starts_with(L"-->")) {
        return; // another word that begins alike
    }
    ignore.span.end = lines.Position(at + length);
    ignore.codes = ReadCodes(rest);
    ignore.needed.assign(std::max<std::size_t>(1, ignore.codes.size()), false);
    if (stretch) {
        ignore.last = m_lastLine;
        m_open.push_back(m_ignores.size());
    } else {
        if (IsAlone(text, start, lineStart)) {
            // Several of them may stand above one line; where that is has been found by the first.
            if (m_streakEnd <= line) {
                m_streakEnd = line + 1;
                while (m_streakEnd < m_lastLine && MayHave(lines.Line(m_streakEnd)))
                    ++m_streakEnd;
            }
            ignore.last = m_streakEnd;
        }
    }
    m_ignores.push_back(std::move(ignore));
}

// Whether only blanks stand before the comment on its line, which may hold many.
bool CIgnores::IsAlone(std::wstring_view text, std::size_t start, std::size_t lineStart)
{
    if (m_lineStart != lineStart) {
        m_lineStart = lineStart;
        m_indentEnd = std::min(text.find_first_not_of(L" \t", lineStart), text.size());
    }
    return start <= m_indentEnd;
}

namespace {

/// The lines of records, in order.
using TLines = std::vector<std::int64_t>;

bool HasAny(const TLines& lines, std::int64_t first, std::int64_t last)
{
    const auto at = std::lower_bound(lines.begin(), lines.end(), first);
    return at != lines.end() && *at <= last;
}

/// Stretches of lines that may overlap.
class CStretches
{
public:
    void Add(std::int64_t first, std::int64_t last) { m_stretches.emplace_back(first, last); }
    /// Once, before Has().
    void Join()
    {
        std::sort(m_stretches.begin(), m_stretches.end());
        std::size_t count = 0;
        for (const auto& [first, last] : m_stretches) {
            if (count > 0 && first <= m_stretches[count - 1].second)
                m_stretches[count - 1].second = std::max(m_stretches[count - 1].second, last);
            else
                m_stretches[count++] = {first, last};
        }
        m_stretches.resize(count);
    }
    bool Has(std::int64_t line) const
    {
        const auto behind = std::upper_bound(m_stretches.begin(), m_stretches.end(),
                                             std::pair(line, std::numeric_limits<std::int64_t>::max()));
        return behind != m_stretches.begin() && line <= (behind - 1)->second;
    }

private:
    std::vector<std::pair<std::int64_t, std::int64_t>> m_stretches;
};

} // namespace

// Comments and records may be many of each: neither side is looked through for every one of the other.
void CIgnores::Silence(std::vector<CodeAnalyzer::SDiagnostic>& diagnostics)
{
    TLines all;
    std::map<std::int32_t, TLines> byCode;
    for (const auto& [error, details] : diagnostics) {
        all.push_back(error.pos.start.y);
        byCode[error.code].push_back(error.pos.start.y);
    }
    std::sort(all.begin(), all.end());
    for (auto& [code, lines] : byCode)
        std::sort(lines.begin(), lines.end());

    CStretches whole;
    std::map<std::int32_t, CStretches> ofCode;
    for (SIgnore& ignore : m_ignores) {
        if (ignore.last < ignore.first)
            continue;
        if (ignore.codes.empty()) {
            ignore.needed[0] = HasAny(all, ignore.first, ignore.last);
            whole.Add(ignore.first, ignore.last);
        }
        for (std::size_t i = 0; i < ignore.codes.size(); ++i) {
            const auto lines = byCode.find(ignore.codes[i]);
            if (lines == byCode.end())
                continue;
            ignore.needed[i] = HasAny(lines->second, ignore.first, ignore.last);
            ofCode[ignore.codes[i]].Add(ignore.first, ignore.last);
        }
    }
    whole.Join();
    for (auto& [code, stretches] : ofCode)
        stretches.Join();
    std::erase_if(diagnostics, [&](const CodeAnalyzer::SDiagnostic& diagnostic) {
        const CodeAnalyzer::SCAError& error = diagnostic.error;
        const auto own = ofCode.find(error.code);
        return whole.Has(error.pos.start.y) || (own != ofCode.end() && own->second.Has(error.pos.start.y));
    });
}

std::vector<CIgnores::SUnused> CIgnores::Unused() const
{
    std::vector<SUnused> unused;
    for (const SIgnore& ignore : m_ignores) {
        const bool any = std::find(ignore.needed.begin(), ignore.needed.end(), true) != ignore.needed.end();
        SUnused idle{ignore.span, {}, !any};
        for (std::size_t i = 0; i < ignore.codes.size(); ++i)
            if (!ignore.needed[i])
                idle.codes.push_back(ignore.codes[i]);
        if (!any || !idle.codes.empty())
            unused.push_back(std::move(idle));
    }
    return unused;
}

} // namespace Kesh::Findings
