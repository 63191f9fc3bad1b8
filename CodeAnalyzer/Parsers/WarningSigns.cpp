#include "Parsers/WarningSigns.h"

#include "Base/CommonString.h"
#include "Grammar/GrammarTokens.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

using K = SyntaxParser::EPhpTokenKind;

class CWarningSigns
{
public:
    explicit CWarningSigns(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    bool Any()
    {
        for (std::uint32_t i = 0; i < m_tokens.Count(); ++i)
            if (Look(i))
                return true;
        return HasEqualConditions();
    }

private:
    /// More loops than that around one place are not followed.
    static constexpr std::size_t MostLoops = 64;

    /// A bracket, or the `:` of a body that a word ends.
    struct SOpen
    {
        K head; ///< the word that leads to it; End when that is none of a statement's
        std::uint32_t token;
        std::uint32_t as = 0; ///< of a loop's head: the word, and the arrow after it
        std::uint32_t arrow = 0;
        std::uint32_t chain = 0; ///< the last one that began inside
    };
    /// What ends a loop.
    enum class EEnd { Brace, Word, Semicolon, Unknown };
    struct SLoop
    {
        EEnd end;
        std::size_t depth; ///< brackets open around it
        std::wstring_view key;
        std::wstring_view value;
    };
    struct SCondition
    {
        std::uint32_t chain;
        std::wstring_view text;
        bool another; ///< not the first of its chain
    };

    K KindAt(std::uint32_t token) const { return token < m_tokens.Count() ? m_tokens[token].kind : K::End; }

    // Whether the token is a sign by itself.
    bool Look(std::uint32_t i)
    {
        switch (m_tokens[i].kind) {
        case K::OpenRound: m_open.push_back({HeadBefore(i), i}); break;
        case K::OpenBrace: m_open.push_back({KindBefore(i) == K::Do ? K::Do : K::End, i}); break;
        case K::OpenSquare:
        case K::AttributeStart:
        case K::CodeBrace:
        case K::DollarBrace: m_open.push_back({K::End, i}); break;
        case K::CloseRound: return Close(i);
        case K::CloseSquare: Pop(); break;
        case K::CloseBrace:
            if (!m_open.empty() && m_open.back().head == K::Do)
                m_endOfDo = i;
            Pop();
            EndLoop(EEnd::Brace);
            break;
        case K::As:
            if (InLoopHead())
                m_open.back().as = i;
            break;
        case K::DoubleArrow:
            if (InLoopHead() && m_open.back().as > 0)
                m_open.back().arrow = i;
            break;
        case K::Semicolon:
        case K::CloseTag: EndLoop(EEnd::Semicolon); break;
        case K::Endforeach: EndWordLoop(); [[fallthrough]];
        case K::Enddeclare:
        case K::Endfor:
        case K::Endif:
        case K::Endswitch:
        case K::Endwhile: EndBody(); break;
        case K::Else: return KindAt(i + 1) == K::Semicolon;
        default: break;
        }
        return false;
    }

    K KindBefore(std::uint32_t token) const { return token > 0 ? m_tokens[token - 1].kind : K::End; }

    void Pop()
    {
        if (!m_open.empty())
            m_open.pop_back();
    }

    bool InLoopHead() const { return !m_open.empty() && m_open.back().head == K::Foreach; }

    K HeadBefore(std::uint32_t bracket) const
    {
        const K word = KindBefore(bracket);
        switch (word) {
        case K::If: return bracket > 1 && m_tokens[bracket - 2].kind == K::Else ? K::Elseif : word;
        case K::While: return bracket > 1 && m_endOfDo == bracket - 2 ? K::End : word;
        case K::Elseif:
        case K::Switch:
        case K::Declare:
        case K::For:
        case K::Foreach: return word;
        default: return K::End;
        }
    }

    bool Close(std::uint32_t i)
    {
        if (m_open.empty())
            return false;
        const SOpen open = m_open.back();
        m_open.pop_back();
        if (open.head == K::End)
            return false;
        const bool isBody = KindAt(i + 1) == K::Colon;
        if (isBody && open.head == K::Elseif)
            EndBodyBeforeElse(open.token - 1);
        if (open.head == K::If || open.head == K::Elseif)
            AddCondition(open, i);
        const bool isSign =
            open.head != K::Switch && open.head != K::Declare &&
            (MeetsSemicolon(open.head, i + 1) || (open.head == K::Foreach && BeginLoop(open, i)));
        if (isBody)
            m_open.push_back({K::Colon, i + 1});
        return isSign;
    }

    // A body that a word ends.
    void EndBody()
    {
        const bool isBody = !m_open.empty() && m_open.back().head == K::Colon;
        m_lostBody |= !isBody;
        if (isBody)
            m_open.pop_back();
    }
    void EndBodyBeforeElse(std::uint32_t word)
    {
        // `else if (...):` begins a body inside of a body, and nobody writes it.
        m_lostBody |= m_tokens[word].kind != K::Elseif;
        EndBody();
    }

    // Whether a `;` is the body that begins with the token, or is near enough to pass for it.
    bool MeetsSemicolon(K head, std::uint32_t body) const
    {
        if (KindAt(body) == K::CloseTag)
            return true;
        while (KindAt(body) == K::Colon || KindAt(body) == K::CloseTag || KindAt(body) == K::InlineHtml)
            ++body;
        return KindAt(body) == K::Semicolon ||
               (head == K::Foreach && EndOfLoop(body) == EEnd::Unknown && KindAt(body + 1) == K::Semicolon);
    }

    // An `if` begins a chain, unless it is the body of something: then it may belong to the chain around.
    void AddCondition(const SOpen& open, std::uint32_t close)
    {
        const bool another = open.head == K::Elseif;
        std::uint32_t& chain = m_open.empty() ? m_fileChain : m_open.back().chain;
        const K before = open.token > 1 ? m_tokens[open.token - 2].kind : K::End;
        if (!another && before != K::CloseRound && before != K::Do)
            chain = ++m_chains;
        m_conditions.push_back({chain, Base::CCommonString::Trim(Between(open.token, close)), another});
        m_repeats |= another;
    }

    // What stands between two tokens.
    std::wstring_view Between(std::uint32_t before, std::uint32_t after) const
    {
        const wchar_t* const begin = m_tokens[before].text + m_tokens[before].size;
        return {begin, static_cast<std::size_t>(m_tokens[after].text - begin)};
    }
    // From one token to another, without what surrounds them.
    std::wstring_view Span(std::uint32_t first, std::uint32_t last) const
    {
        const SGrammarToken& end = m_tokens[last];
        return {m_tokens[first].text, static_cast<std::size_t>(end.text + end.size - m_tokens[first].text)};
    }

    // Whether a loop around has one of the names of the loop whose head ends with the token.
    bool BeginLoop(const SOpen& open, std::uint32_t close)
    {
        SLoop loop{EndOfLoop(close + 1), m_open.size(), {}, {}};
        std::uint32_t value = open.as + 1;
        if (open.arrow > value) {
            loop.key = Span(value, open.arrow - 1);
            value = open.arrow + 1;
        }
        if (value < close)
            loop.value = Span(value, close - 1);
        const bool known = std::any_of(m_loops.begin(), m_loops.end(), [&](const SLoop& around) {
            return (!loop.key.empty() && around.key == loop.key) || around.value == loop.value;
        });
        m_loops.push_back(loop);
        return known || m_loops.size() > MostLoops;
    }

    EEnd EndOfLoop(std::uint32_t body) const
    {
        switch (KindAt(body)) {
        case K::OpenBrace: return EEnd::Brace;
        case K::Colon: return EEnd::Word;
        case K::Variable:
        case K::Identifier:
        case K::Echo: return EEnd::Semicolon;
        default: return EEnd::Unknown; // whatever it is, a statement parser may see it go on
        }
    }

    void EndLoop(EEnd end)
    {
        while (!m_loops.empty() && m_loops.back().end == end && m_loops.back().depth == m_open.size())
            m_loops.pop_back();
    }

    void EndWordLoop()
    {
        const auto last = std::find_if(m_loops.rbegin(), m_loops.rend(),
                                       [](const SLoop& loop) { return loop.end == EEnd::Word; });
        if (last != m_loops.rend())
            m_loops.erase(last.base() - 1);
    }

    bool HasEqualConditions()
    {
        if (!m_repeats)
            return false;
        if (m_lostBody)
            for (SCondition& condition : m_conditions)
                condition.chain = 0;
        std::sort(m_conditions.begin(), m_conditions.end(), [](const SCondition& a, const SCondition& b) {
            if (a.chain != b.chain)
                return a.chain < b.chain;
            return a.text.size() != b.text.size() ? a.text.size() < b.text.size() : a.text < b.text;
        });
        return std::adjacent_find(
                   m_conditions.begin(), m_conditions.end(), [](const SCondition& a, const SCondition& b) {
                       return a.chain == b.chain && (a.another || b.another) && a.text == b.text;
                   }) != m_conditions.end();
    }

    const CGrammarTokens& m_tokens;
    std::vector<SOpen> m_open;
    std::vector<SLoop> m_loops;
    std::vector<SCondition> m_conditions;
    std::uint32_t m_fileChain = 0; ///< the last one that began outside of all brackets
    std::uint32_t m_chains = 0;
    std::uint32_t m_endOfDo = 0; ///< the last brace that ended the body of a `do`
    bool m_repeats = false;      ///< a chain has more than one condition
    bool m_lostBody = false;     ///< it is not known which conditions make a chain
};

} // namespace

bool MayWarn(const CGrammarTokens& tokens)
{
    return CWarningSigns(tokens).Any();
}

} // namespace Kesh::CodeAnalyzer
