#include "TextMatches.h"

#include "CodeEditor.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace Kesh::Workbench {

using TBase = QsciScintillaBase;

namespace {

using TAction = std::function<bool(const SByteSpan&, const TGroupOf&)>;

/// In the letters of ASCII lower ones; all else stays.
std::string Lowered(std::string_view text)
{
    std::string lowered(text);
    for (char& c : lowered)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    return lowered;
}

/// Many times as fast as the widget's own search, which looks at character by character.
void ForEachAscii(const CCodeEditor& editor, const SReplaceOrder& order, const TAction& action)
{
    const TGroupOf none = [](int) { return std::string(); };
    const std::string bytes = order.matchCase ? std::string() : Lowered(editor.ViewBytes());
    const std::string_view text = order.matchCase ? editor.ViewBytes() : bytes;
    const std::string pattern =
        order.matchCase ? order.pattern.toStdString() : Lowered(order.pattern.toStdString());
    for (std::size_t at = 0;;) {
        const void* found = ::memmem(text.data() + at, text.size() - at, pattern.data(), pattern.size());
        if (!found)
            return;
        const auto start = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
        const SByteSpan match{static_cast<long>(start), static_cast<long>(start + pattern.size())};
        const bool isWanted =
            !order.wholeWords ||
            editor.SendScintilla(TBase::SCI_ISRANGEWORD, static_cast<unsigned long>(match.start), match.end);
        if (isWanted && !action(match, none))
            return;
        at = isWanted ? start + pattern.size() : start + 1;
    }
}

void ForEachText(const CCodeEditor& editor, const SReplaceOrder& order, const TAction& action)
{
    if (order.pattern.isEmpty())
        return;
    const auto isAscii = [](QChar c) { return c.unicode() < 0x80; };
    if (std::all_of(order.pattern.begin(), order.pattern.end(), isAscii))
        return ForEachAscii(editor, order, action);
    const std::string pattern = order.pattern.toStdString();
    const TGroupOf none = [](int) { return std::string(); };
    editor.SendScintilla(TBase::SCI_SETSEARCHFLAGS,
                         static_cast<unsigned long>((order.matchCase ? TBase::SCFIND_MATCHCASE : 0) |
                                                    (order.wholeWords ? TBase::SCFIND_WHOLEWORD : 0)));
    const long length = editor.SendScintilla(TBase::SCI_GETLENGTH);
    for (SByteSpan match;;) {
        editor.SendScintilla(TBase::SCI_SETTARGETRANGE, static_cast<unsigned long>(match.end), length);
        match.start = editor.SendScintilla(TBase::SCI_SEARCHINTARGET, pattern.size(), pattern.data());
        if (match.start < 0)
            return;
        match.end = editor.SendScintilla(TBase::SCI_GETTARGETEND);
        if (!action(match, none))
            return;
    }
}

/// The bytes that a part of a text takes as UTF-8.
long BytesOf(const QString& text, int from, int to)
{
    long bytes = 0;
    for (int i = from; i < to; ++i) {
        const QChar c = text[i];
        bytes += c < QChar(0x80)       ? 1
                 : c < QChar(0x800)    ? 2
                 : c.isHighSurrogate() ? 4
                 : c.isLowSurrogate()  ? 0
                                       : 3;
    }
    return bytes;
}

void ForEachRegExp(const CCodeEditor& editor, const SReplaceOrder& order, const TAction& action)
{
    QRegularExpression::PatternOptions options =
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    if (!order.matchCase)
        options |= QRegularExpression::CaseInsensitiveOption;
    const QRegularExpression pattern(
        order.wholeWords ? QStringLiteral("\\b(?:%1)\\b").arg(order.pattern) : order.pattern, options);
    if (!pattern.isValid())
        return;
    const QString text = QString::fromStdString(editor.GetBytes());
    QRegularExpressionMatch found;
    const TGroupOf groupOf = [&found](int group) { return found.captured(group).toStdString(); };
    SByteSpan match;
    int at = 0; // in the text, where the last match ended
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        found = matches.next();
        match.start = match.end + BytesOf(text, at, found.capturedStart());
        match.end = match.start + BytesOf(text, found.capturedStart(), found.capturedEnd());
        at = found.capturedEnd();
        if (!action(match, groupOf))
            return;
    }
}

} // namespace

void ForEachMatch(const CCodeEditor& editor, const SReplaceOrder& order, const TAction& action)
{
    order.regExp ? ForEachRegExp(editor, order, action) : ForEachText(editor, order, action);
}

std::optional<SByteSpan> FindMatch(const CCodeEditor& editor, const SReplaceOrder& order,
                                   const SByteSpan& from, bool forward)
{
    std::optional<SByteSpan> first, last, next, previous;
    ForEachMatch(editor, order, [&](const SByteSpan& match, const TGroupOf&) {
        if (!first)
            first = match;
        last = match;
        // An empty match that is selected has been found already.
        if (match.start >= from.end && match != from) {
            next = match;
            if (forward)
                return false;
        }
        if (match.end <= from.start && match != from)
            previous = match;
        return true;
    });
    return forward ? (next ? next : first) : (previous ? previous : last);
}

std::string Replacement(const SReplaceOrder& order, const TGroupOf& groupOf)
{
    static const std::string Letters = "abfnrtv\\";
    static const std::string Meanings = "\a\b\f\n\r\t\v\\";
    const std::string replacement = order.replacement.toStdString();
    if (!order.regExp)
        return replacement;
    std::string text;
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char next = replacement[i] == '\\' && i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        const std::size_t letter = next == '\0' ? std::string::npos : Letters.find(next);
        if (next >= '0' && next <= '9')
            text += groupOf(next - '0');
        else if (letter != std::string::npos)
            text += Meanings[letter];
        else {
            text += replacement[i];
            continue;
        }
        ++i;
    }
    return text;
}

SMatchCount CountMatches(const CCodeEditor& editor, const SReplaceOrder& order)
{
    constexpr int MaxTime = 25; // ms
    SMatchCount counted;
    if (order.pattern.isEmpty())
        return counted;
    const SByteSpan selected{editor.SendScintilla(TBase::SCI_GETSELECTIONSTART),
                             editor.SendScintilla(TBase::SCI_GETSELECTIONEND)};
    QElapsedTimer time;
    time.start();
    ForEachMatch(editor, order, [&](const SByteSpan& match, const TGroupOf&) {
        ++counted.count;
        if (match == selected)
            counted.current = counted.count;
        counted.isComplete = time.elapsed() < MaxTime;
        return counted.isComplete;
    });
    return counted;
}

} // namespace Kesh::Workbench
