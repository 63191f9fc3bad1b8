#pragma once

namespace Kesh::CodeAnalyzer {

/// Counts the braces of a body that no statement parser has taken over, as in the header of a loop.
class CSkippedBody
{
public:
    /// The opening brace of the body has been read.
    void Start() { m_depth = 1; }
    void Open() { ++m_depth; }
    /// Whether this closing brace ends the body.
    bool Close() { return --m_depth == 0; }

private:
    int m_depth = 0;
};

} // namespace Kesh::CodeAnalyzer
