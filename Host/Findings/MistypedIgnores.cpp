#include "Findings/MistypedIgnores.h"

#include "Findings/Ignores.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace Kesh::Findings {

namespace {

constexpr std::size_t npos = std::wstring_view::npos;

/// What every spelling has; capitals are written for all of it or for first letters.
constexpr std::wstring_view Core = L"naly";
constexpr std::wstring_view CoreInCapitals = L"NALY";

wchar_t Lower(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c;
}

bool IsWordCharacter(wchar_t c)
{
    const wchar_t lower = Lower(c);
    return (lower >= L'a' && lower <= L'z') || (c >= L'0' && c <= L'9') || c == L'_' || c == L'-';
}

/// Reads words from a place on, whatever their capitals.
class CWords
{
public:
    CWords(std::wstring_view text, std::size_t at) : m_text(text), m_at(at) {}

    bool Take(std::wstring_view word)
    {
        const std::wstring_view here = m_text.substr(m_at, word.size());
        if (!std::ranges::equal(here, word, {}, Lower))
            return false;
        m_at += word.size();
        return true;
    }
    void TakeOneOf(std::wstring_view characters)
    {
        if (m_at < m_text.size() && characters.find(m_text[m_at]) != npos)
            ++m_at;
    }
    bool IsAtEndOfWord() const { return m_at >= m_text.size() || !IsWordCharacter(m_text[m_at]); }
    std::size_t At() const { return m_at; }

private:
    std::wstring_view m_text;
    std::size_t m_at;
};

/// Where the words begin that have the core at `core`; npos: there are none.
std::size_t BeginOf(std::wstring_view text, std::size_t core)
{
    for (const std::size_t before : {6U, 5U}) // "code-a" and "codea"
        if (core >= before && CWords(text, core - before).Take(L"code"))
            return core - before;
    return npos;
}

/// Reads what was meant; empty: something else.
std::wstring_view ReadMeant(CWords& words)
{
    words.Take(L"code");
    words.TakeOneOf(L"-_");
    if (!words.Take(L"analyzer") && !words.Take(L"analyser"))
        return {};
    words.TakeOneOf(L"-_ ");
    if (!words.Take(L"ignore"))
        return {};
    words.TakeOneOf(L"ds");
    if (words.IsAtEndOfWord())
        return L"code-analyzer-ignore";
    words.TakeOneOf(L"-_");
    struct SEnding
    {
        std::initializer_list<std::wstring_view> written;
        std::wstring_view meant;
    };
    for (const SEnding& ending :
         {SEnding{{L"next-line", L"next_line", L"nextline", L"next", L"line", L"this"},
                  L"code-analyzer-ignore"},
          SEnding{{L"start", L"begin", L"file", L"all"}, L"code-analyzer-ignore-start"},
          SEnding{{L"end", L"stop"}, L"code-analyzer-ignore-end"}})
        for (const std::wstring_view written : ending.written)
            if (CWords tried = words; tried.Take(written) && tried.IsAtEndOfWord()) {
                words = tried;
                return ending.meant;
            }
    return {};
}

} // namespace

bool MayMeanToIgnore(std::string_view bytes)
{
    // The core's last letter is the rarest of it; of the word that has an "s" behind it, which texts are full
    // of, only the usual spelling counts.
    constexpr std::string_view other = "ode-analyser";
    constexpr std::size_t front = other.size() - 3;
    for (const char rare : {'y', 'Y'})
        for (std::size_t at = bytes.find(rare); at != npos; at = bytes.find(rare, at + 1)) {
            if (at + 1 < Core.size() || Lower(bytes[at - 1]) != L'l')
                continue;
            const std::string_view behind = bytes.substr(at + 1);
            if (behind.starts_with('z') || behind.starts_with('Z')) {
                if (std::ranges::equal(bytes.substr(at + 1 - Core.size(), Core.size()), Core, {}, Lower))
                    return true;
            } else if (behind.starts_with("ser") && at + 1 >= front &&
                       bytes.substr(at + 1 - front, other.size()) == other) {
                return true;
            }
        }
    return false;
}

bool MayMeanToIgnore(std::wstring_view text)
{
    return text.find(Core) != npos || text.find(CoreInCapitals) != npos;
}

std::vector<SMistypedIgnore> FindMistypedIgnores(std::wstring_view text)
{
    std::vector<SMistypedIgnore> found;
    for (const std::wstring_view core : {Core, CoreInCapitals})
        for (std::size_t at = text.find(core); at != npos; at = text.find(core, at + core.size())) {
            const std::size_t begin = BeginOf(text, at);
            if (begin == npos)
                continue;
            const bool isMarked = begin > 0 && text[begin - 1] == L'@';
            const std::size_t start = begin - isMarked;
            if (CommentStart(text, start) == npos)
                continue;
            CWords words(text, begin);
            const std::wstring_view meant = ReadMeant(words);
            if (!meant.empty() && text.substr(start, words.At() - start) != meant)
                found.push_back({start, words.At(), meant});
        }
    std::ranges::sort(found, {}, &SMistypedIgnore::begin);
    return found;
}

} // namespace Kesh::Findings
