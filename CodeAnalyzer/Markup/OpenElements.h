#pragma once

#include "Markup/NestingEvents.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

struct SConditional;

/// What is open at a place: an element, or one thing or another by the branch that was taken.
struct SOpenItem
{
    std::uint32_t event = NoEvent;       ///< its start tag; NoEvent: conditional
    std::uint32_t suspect = NoEvent;     ///< the first tag that is not indented as if it were inside
    std::uint32_t blockInside = NoEvent; ///< of a paragraph: the block that has ended it
    std::int32_t stray = -1;             ///< the finding of an end tag that fits nothing, inside of it
    bool printsUnknown = false;          ///< something in it is not known
    bool callsUnknown = false;           ///< which may be more than a value
    bool contentTold = false;            ///< of what is wrong in it, or may be, nothing more is to be said
    bool assumed = false;                ///< that a branch without it is never taken
    bool indented = false;               ///< something inside is further indented
    std::unique_ptr<SConditional> conditional;

    bool IsElement() const { return event != NoEvent; }
};

/// A condition, so that equal ones and opposites are known.
struct SCondition
{
    std::wstring text; ///< without blanks and `!`
    bool negated = false;
};

SCondition ReadCondition(std::wstring_view text);

/// What a statement leaves open, by branches; the last one is that without a condition.
struct SConditional
{
    std::vector<SCondition> conditions; ///< of all branches but the last
    bool isLoop = false;
    std::uint32_t depth = 0; ///< of conditionals in it
    std::vector<std::vector<SOpenItem>> branches;
};

/// What a stretch of a text does to the elements around it.
struct SEffect
{
    std::vector<std::uint32_t> closes; ///< end tags whose elements were open before
    std::vector<SOpenItem> opens;      ///< what is open after
    bool unknown = false;              ///< it cannot be told
    bool exits = false;                ///< what follows it is not reached
    bool printsUnknown = false;        ///< between the tags, nobody knows what
    bool callsUnknown = false;         ///< which may be more than a value
};

} // namespace Kesh::CodeAnalyzer
