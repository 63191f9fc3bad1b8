#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

namespace Kesh::CodeAnalyzer {

/// Declarations in which nothing was found: most are written again and again, in one sheet and in the next.
/// Whoever borrows it has it alone. Bounded in size.
class CRightDeclarations
{
public:
    struct SReturn
    {
        void operator()(CRightDeclarations* borrowed) const;
    };
    using TBorrowed = std::unique_ptr<CRightDeclarations, SReturn>;

    /// One that others have filled before, if it is not in use. Any thread.
    static TBorrowed Borrow();

    /// `rule`: the at-rule around. What is given here is what Add() adds.
    bool Contains(std::string_view rule, std::wstring_view declaration);
    void Add();

private:
    struct SHash
    {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view text) const { return std::hash<std::wstring_view>()(text); }
    };

    std::unordered_set<std::wstring, SHash, std::equal_to<>> m_keys;
    std::wstring m_key; ///< of the last question; empty: too long to be kept
};

} // namespace Kesh::CodeAnalyzer
