#include "EditLog.h"

#include <algorithm>

namespace Kesh::Workbench {

using SyntaxParser::CIterator;

namespace {

/// More of them would be told one by one for too long; they become one.
constexpr std::size_t MaxEdits = 200;

CIterator EndOf(CIterator at, std::string_view text)
{
    // A whole document may be put in: only its last line is looked at by the character.
    if (const std::size_t last = text.rfind('\n'); last != text.npos) {
        const std::string_view lines = text.substr(0, last);
        at = {0, at.y + 1 + std::count(lines.begin(), lines.end(), '\n')};
        for (std::size_t cr = lines.find('\r'); cr != lines.npos; cr = lines.find('\r', cr + 1))
            if (text[cr + 1] != '\n')
                ++at.y;
        text.remove_prefix(last + 1);
    }
    for (const char c : text) {
        if (c == '\r')
            at = {0, at.y + 1};
        else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++at.x;
    }
    return at;
}

/// A place at or behind `from` after what ended there has come to end at `to`.
CIterator Shifted(const CIterator& place, const CIterator& from, const CIterator& to)
{
    if (place.y == from.y)
        return {place.x - from.x + to.x, to.y};
    return {place.x, place.y - from.y + to.y};
}

} // namespace

void CEditLog::NoteInsertion(const CIterator& at, std::string_view text)
{
    Add({at, at, EndOf(at, text)});
}

void CEditLog::NoteDeletion(const CIterator& at, std::string_view text)
{
    Add({at, EndOf(at, text), at});
}

void CEditLog::Clear()
{
    m_edits.clear();
    m_ofCheck = 0;
}

void CEditLog::BeginCheck()
{
    m_ofCheck = m_edits.size();
}

void CEditLog::EndCheck(bool isComplete)
{
    if (isComplete)
        m_edits.erase(m_edits.begin(), m_edits.begin() + static_cast<std::ptrdiff_t>(m_ofCheck));
    m_ofCheck = 0;
}

void CEditLog::Add(const SEdit& edit)
{
    const bool mayJoin = m_edits.size() > m_ofCheck;
    const bool touches =
        mayJoin && edit.start <= m_edits.back().newEnd && m_edits.back().start <= edit.oldEnd;
    if (touches || (mayJoin && m_edits.size() >= MaxEdits))
        m_edits.back() = Joined(m_edits.back(), edit);
    else
        m_edits.push_back(edit);
}

CEditLog::SEdit CEditLog::Joined(const SEdit& first, const SEdit& second)
{
    SEdit joined{std::min(first.start, second.start), first.oldEnd, second.newEnd};
    if (first.newEnd < second.oldEnd)
        joined.oldEnd = Shifted(second.oldEnd, first.newEnd, first.oldEnd);
    else
        joined.newEnd = Shifted(first.newEnd, second.oldEnd, second.newEnd);
    return joined;
}

CIterator CEditLog::MovedBy(const SEdit& edit, const CIterator& place, bool staysAtInsertion)
{
    if (place < edit.start || (staysAtInsertion && place == edit.start))
        return place;
    if (edit.oldEnd <= place)
        return Shifted(place, edit.oldEnd, edit.newEnd);
    return std::min(place, edit.newEnd); // what stood there is another text now
}

SyntaxParser::SScheme CEditLog::Moved(const SyntaxParser::SScheme& span) const
{
    SyntaxParser::SScheme moved = span;
    for (const SEdit& edit : m_edits) {
        const bool isEmpty = moved.start == moved.end;
        moved.start = MovedBy(edit, moved.start, false);
        // What is typed behind a span does not belong to it.
        moved.end = isEmpty ? moved.start : std::max(moved.start, MovedBy(edit, moved.end, true));
    }
    return moved;
}

} // namespace Kesh::Workbench
