#pragma once

#include <cstdint>

namespace Kesh::SyntaxParser {

/// A position in a document: column within a line, and line, both 0-based and counted in UTF-32 characters.
struct CIterator
{
    std::int64_t x = 0;
    std::int64_t y = 0;

    friend bool operator==(const CIterator&, const CIterator&) = default;
    friend bool operator<(const CIterator& a, const CIterator& b)
    {
        return a.y != b.y ? a.y < b.y : a.x < b.x;
    }
    friend bool operator<=(const CIterator& a, const CIterator& b) { return !(b < a); }
};

/// A text span, end exclusive: start column, start line, end column, end line.
struct SScheme
{
    CIterator start;
    CIterator end;

    friend bool operator==(const SScheme&, const SScheme&) = default;
};

} // namespace Kesh::SyntaxParser
