#include "Findings/Ignores.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

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

/// Where the comment begins whose first word stands at `at`; npos when the word does not begin a comment.
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

/// The numbers that stand first in a comment's rest.
std::vector<std::int32_t> ReadCodes(std::wstring_view rest)
{
    std::vector<std::int32_t> codes;
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
        if (std::find(codes.begin(), codes.end(), code) == codes.end())
            codes.push_back(code);
    }
}

} // namespace

bool CIgnores::MayHave(std::string_view bytes)
{
    constexpr std::string_view marker = "code-analyzer-ignore";
    return ::memmem(bytes.data(), bytes.size(), marker.data(), marker.size()) != nullptr;
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
        const std::wstring_view before = text.substr(lineStart, start - lineStart);
        const bool alone = std::all_of(before.begin(), before.end(), &IsBlank);
        if (alone) {
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

bool CIgnores::Silences(const CodeAnalyzer::SCAError& error)
{
    bool silenced = false;
    for (SIgnore& ignore : m_ignores) {
        const std::int64_t line = error.pos.start.y;
        if (line < ignore.first || line > ignore.last)
            continue;
        const auto code = std::find(ignore.codes.begin(), ignore.codes.end(), error.code);
        if (!ignore.codes.empty() && code == ignore.codes.end())
            continue;
        ignore.needed[static_cast<std::size_t>(ignore.codes.empty() ? 0 : code - ignore.codes.begin())] =
            true;
        silenced = true;
    }
    return silenced;
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
