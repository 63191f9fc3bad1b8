#include "Styles/SelectorCheck.h"

#include "Styles/StyleTables.h"
#include "Styles/VendorNames.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::string_view ListFunctions[] = {"is",          "not",          "where", "matches",
                                              "-webkit-any", "-moz-any",     "has",   "host",
                                              "slotted",     "host-context", "cue",   "current"};
constexpr std::string_view ForgivingFunctions[] = {"is", "where", "matches", "-webkit-any", "-moz-any"};
constexpr std::string_view NthFunctions[] = {"nth-child",        "nth-last-child", "nth-of-type",
                                             "nth-last-of-type", "nth-col",        "nth-last-col"};
// Pseudo-elements older than the "::".
constexpr std::string_view OldElements[] = {"before", "after", "first-line", "first-letter"};

bool Contains(std::span<const std::string_view> names, std::string_view name)
{
    return std::ranges::find(names, name) != names.end();
}

bool TakeDigits(std::string_view& text)
{
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(end);
    return end > 0;
}

void TakeSign(std::string_view& text)
{
    if (text.starts_with('+') || text.starts_with('-'))
        text.remove_prefix(1);
}

// "an+b", in lower case and without blanks.
bool IsNth(std::string_view text)
{
    if (text == "odd" || text == "even")
        return true;
    TakeSign(text);
    const bool hasDigits = TakeDigits(text);
    if (!text.starts_with('n'))
        return hasDigits && text.empty();
    text.remove_prefix(1);
    if (text.empty())
        return true;
    const std::size_t size = text.size();
    TakeSign(text);
    return text.size() < size && TakeDigits(text) && text.empty();
}

} // namespace

void CSelectorCheck::CheckList(STokens list, bool isRelative)
{
    m_waiting.assign(1, {m_text.Trimmed(list), isRelative, false});
    while (!m_waiting.empty()) {
        const SList next = m_waiting.back();
        m_waiting.pop_back();
        if (!CheckOne(next))
            return;
    }
}

bool CSelectorCheck::CheckOne(const SList& list)
{
    EState state = EState::Begin;
    bool isAfterBlank = true;
    TTokenIndex i = list.tokens.begin;
    while (i < list.tokens.end) {
        if (m_text.IsBlank(i)) {
            isAfterBlank = true;
            ++i;
            continue;
        }
        if (m_text.Is(i, EStyleTokenKind::Comma)) {
            if (state != EState::Compound && !list.mayBeEmpty)
                return Fail({i, i + 1}) != Failed;
            state = EState::Begin;
            ++i;
        } else if (m_text.IsSign(i, L'>') || m_text.IsSign(i, L'+') || m_text.IsSign(i, L'~')) {
            if (state == EState::Combinator || (state == EState::Begin && !list.isRelative))
                return Fail({i, i + 1}) != Failed;
            state = EState::Combinator;
            ++i;
        } else {
            i = ReadSimple(i, list, state != EState::Compound || isAfterBlank);
            if (i == Failed)
                return false;
            state = EState::Compound;
        }
        isAfterBlank = false;
    }
    if (state == EState::Compound || list.mayBeEmpty)
        return true;
    const TTokenIndex last = m_text.Before(list.tokens.end);
    return Fail({last, last + 1}) != Failed;
}

TTokenIndex CSelectorCheck::ReadSimple(TTokenIndex index, const SList& list, bool isFirst)
{
    const STokens one{index, index + 1};
    if (m_text.IsTouched(index))
        return m_blocks->ends[index].end > index ? After(index) : index + 1;
    switch (m_text.KindOf(index)) {
    case EStyleTokenKind::Ident: return isFirst || m_text.IsSign(index - 1, L'|') ? index + 1 : Fail(one);
    case EStyleTokenKind::Hash: {
        const wchar_t first = m_text.Text(index)[1];
        return first >= L'0' && first <= L'9' ? Fail(one) : index + 1;
    }
    case EStyleTokenKind::SquareOpen: return CheckAttribute(index) ? After(index) : Failed;
    case EStyleTokenKind::Colon: return ReadPseudo(index, list);
    case EStyleTokenKind::Delim: break;
    default: return Fail(one);
    }
    if (m_text.IsSign(index, L'.')) {
        const bool isName = m_text.Is(index + 1, EStyleTokenKind::Ident);
        return isName && index + 1 < list.tokens.end ? index + 2 : Fail(one);
    }
    const bool isStar = m_text.IsSign(index, L'*');
    if (isStar && (isFirst || m_text.IsSign(index - 1, L'|')))
        return index + 1;
    if (m_text.IsSign(index, L'|') && index + 1 < list.tokens.end &&
        (m_text.Is(index + 1, EStyleTokenKind::Ident) || m_text.IsSign(index + 1, L'*') ||
         m_text.IsSign(index + 1, L'|')))
        return index + 1;
    return m_text.IsSign(index, L'&') ? index + 1 : Fail(one);
}

TTokenIndex CSelectorCheck::ReadPseudo(TTokenIndex index, const SList& list)
{
    const bool isElement = m_text.Is(index + 1, EStyleTokenKind::Colon);
    const TTokenIndex name = index + 1 + isElement;
    const bool isFunction = m_text.Is(name, EStyleTokenKind::Function);
    if (name >= list.tokens.end || (!isFunction && !m_text.Is(name, EStyleTokenKind::Ident)))
        return Fail({index, std::min(name, list.tokens.end)});
    if (m_text.IsTouched(name))
        return isFunction ? After(name) : name + 1;
    const std::string written = m_text.NameOf(name);
    if (written.starts_with('-') || written.find('\\') != std::string::npos) {
        if (written.starts_with('-') && !IsVendorName(written))
            m_findings.Unknown(Code::UnknownVendorPrefix, m_text[name].span, NearestVendor(written));
    } else {
        const std::string full = (isElement ? "::" : ":") + written + (isFunction ? "()" : "");
        const bool isOld = !isElement && !isFunction && Contains(OldElements, written);
        if (!isOld && !StyleTables::IsPseudo(full))
            return FailPseudo(index, name, full);
    }
    return isFunction ? ReadArguments(name, written) : name + 1;
}

TTokenIndex CSelectorCheck::FailPseudo(TTokenIndex colon, TTokenIndex name, const std::string& written)
{
    CNearestName nearest(written);
    // One colon too much or too few is the likeliest slip.
    const std::string other = written.starts_with("::") ? written.substr(1) : ':' + written;
    if (StyleTables::IsPseudo(other))
        nearest.Offer(other);
    for (const std::string_view known : StyleTables::Pseudos())
        if (!known.starts_with(":-") && !known.starts_with("::-") &&
            known.ends_with(')') == written.ends_with(')'))
            nearest.Offer(known);
    std::string meant = nearest.Get();
    if (meant.ends_with("()"))
        meant.pop_back();
    m_findings.Unknown(Code::UnknownPseudo, m_text.SpanOf({colon, name + 1}), meant);
    return Failed;
}

TTokenIndex CSelectorCheck::ReadArguments(TTokenIndex function, const std::string& name)
{
    const STokens inside = m_text.Trimmed(Inside(function));
    const bool isForgiving = Contains(ForgivingFunctions, name);
    if (m_text.IsTouched(STokens{function, inside.end}))
        return After(function);
    if (inside.IsEmpty())
        return isForgiving || name.starts_with('-') ? After(function) : Fail({function, function + 1});
    if (Contains(ListFunctions, name))
        m_waiting.push_back({inside, name == "has", isForgiving});
    else if (Contains(NthFunctions, name) && !CheckNth(inside, function))
        return Failed;
    return After(function);
}

bool CSelectorCheck::CheckNth(STokens formula, TTokenIndex function)
{
    std::string text;
    TTokenIndex i = formula.begin;
    for (; i < formula.end && !(m_text.Is(i, EStyleTokenKind::Ident) && m_text.NameOf(i) == "of"); ++i)
        if (!m_text.IsBlank(i))
            text += StyleLower(m_text.Text(i));
    if (!IsNth(text))
        return Fail(m_text.Trimmed({formula.begin, i > formula.begin ? i : formula.end})) != Failed;
    if (i == formula.end)
        return true;
    if (!m_text.NameOf(function).ends_with("child"))
        return Fail({i, formula.end}) != Failed;
    m_waiting.push_back({m_text.Trimmed({i + 1, formula.end}), false, false});
    return true;
}

// A name, and perhaps "=" with signs before it, a value and a letter.
bool CSelectorCheck::CheckAttribute(TTokenIndex open)
{
    const STokens inside = m_text.Trimmed(Inside(open));
    TTokenIndex i = inside.begin;
    if (m_text.IsTouched(inside))
        return true;
    const auto fail = [&] {
        const TTokenIndex at = std::min(i, inside.IsEmpty() ? open : inside.end - 1);
        return Fail({at, at + 1}) != Failed;
    };
    if (m_text.IsSign(i, L'*') ||
        (m_text.Is(i, EStyleTokenKind::Ident) && m_text.IsSign(i + 1, L'|') && !m_text.IsSign(i + 2, L'=')))
        ++i;
    if (m_text.IsSign(i, L'|'))
        ++i;
    if (i >= inside.end || !m_text.Is(i, EStyleTokenKind::Ident))
        return fail();
    i = m_text.SkipBlanks(i + 1, inside.end);
    if (i == inside.end)
        return true;
    if (m_text.Is(i, EStyleTokenKind::Delim) &&
        std::wstring_view(L"~|^$*").find(m_text.Text(i)[0]) != std::wstring_view::npos)
        ++i;
    if (i >= inside.end || !m_text.IsSign(i, L'='))
        return fail();
    i = m_text.SkipBlanks(i + 1, inside.end);
    if (i >= inside.end || !(m_text.Is(i, EStyleTokenKind::Ident) || m_text.Is(i, EStyleTokenKind::String)))
        return fail();
    i = m_text.SkipBlanks(i + 1, inside.end);
    if (i < inside.end && m_text.Is(i, EStyleTokenKind::Ident))
        i = m_text.SkipBlanks(i + 1, inside.end);
    return i >= inside.end || fail();
}

void CSelectorCheck::CheckKeyframes(STokens list)
{
    bool wantsPlace = true;
    bool isAfterName = false;
    for (TTokenIndex i = list.begin; i < list.end; ++i) {
        if (m_text.IsBlank(i) || m_text.IsTouched(i))
            continue;
        const bool isComma = m_text.Is(i, EStyleTokenKind::Comma);
        bool isRight = isComma ? !wantsPlace : wantsPlace;
        if (m_text.Is(i, EStyleTokenKind::Ident)) {
            const std::string name = m_text.NameOf(i);
            const bool isRange = name == "entry" || name == "exit" || name == "cover" || name == "contain" ||
                                 name == "entry-crossing" || name == "exit-crossing";
            if (name != "from" && name != "to" && !isRange) {
                CNearestName nearest(name);
                nearest.Offer("from");
                nearest.Offer("to");
                m_findings.Unknown(Code::InvalidKeyframe, m_text[i].span, nearest.Get());
                return;
            }
            isAfterName = isRange;
            if (isRange)
                continue;
        } else if (!isComma) {
            isRight &=
                m_text.Is(i, EStyleTokenKind::Percentage) && (isAfterName || m_text.Text(i)[0] != L'-');
        }
        if (!isRight) {
            m_findings.Report(Code::InvalidKeyframe, i);
            return;
        }
        wantsPlace = isComma;
        isAfterName = false;
    }
    if (wantsPlace && !list.IsEmpty() && !m_text.IsTouched(list))
        m_findings.Report(Code::InvalidKeyframe, list.end - 1);
}

TTokenIndex CSelectorCheck::Fail(STokens at)
{
    m_findings.Report(Code::InvalidSelector, at);
    return Failed;
}

TTokenIndex CSelectorCheck::After(TTokenIndex open) const
{
    return m_blocks->After(m_blocks->ends[open]);
}

} // namespace Kesh::CodeAnalyzer
