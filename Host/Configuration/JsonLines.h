#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kesh::Configuration {

struct SJsonMember;

/// A JSON value that knows its line, so that a fault in what people wrote can be shown to them.
struct SJsonValue
{
    enum class EKind { Null, Boolean, Number, String, Array, Object };

    EKind kind = EKind::Null;
    std::size_t line = 1; ///< from 1
    /// The place in the text behind the opening bracket of an array or object, or behind a string.
    std::size_t inside = 0;
    bool boolean = false;
    std::string text; ///< of a string
    std::vector<SJsonValue> items;
    std::vector<SJsonMember> members; ///< in their order
};

struct SJsonMember
{
    std::string name;
    SJsonValue value;
};

/// Reads JSON with comments. Throws Base::CWorkError "LINE: what is wrong".
SJsonValue ReadJsonLines(std::string_view text);

} // namespace Kesh::Configuration
