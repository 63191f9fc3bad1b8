#pragma once

#include "Kesh/SyntaxParser/IReader.h"
#include "SPBase/SPException.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// A reader over a string, walking forwards. Lines keep their "\n"; "\r" is never stored.
class CSimpleReader : public IReader
{
public:
    /// One empty line.
    CSimpleReader();
    explicit CSimpleReader(const std::wstring& text);

    void InitComponent(ISPDocument*) override {}
    std::wstring GetComponentName() override { return L"IReader"; }
    void Reset() override;
    bool NextChar() override;
    /// Not before the first NextChar() after Reset().
    bool PrevChar() override;
    wchar_t ReadChar() override;
    CIterator GetPos() override { return m_pos; }
    /// The next NextChar() then reads the character at `pos`.
    void SetPos(CIterator pos) override;
    /// Raises CCriticalError when `to` lies before `from`, Base::CCriticalError when it lies below the text.
    std::wstring GetText(CIterator from, CIterator to) override;
    std::wstring GetText() override { return GetText({0, 0}, GetEnd()); }
    void SetText(const std::wstring& text) override { SetString(text); }
    /// The first line without white space at its ends.
    std::wstring GetFirstString() override;
    void Free() override { delete this; }
    CIterator GetEnd() override;

    /// Replaces the text; it ends at the first zero character.
    void SetString(const wchar_t* text);
    void SetString(const std::wstring& text) { SetString(text.c_str()); }
    /// The same with the zero characters that the text may hold.
    void SetWhole(std::wstring_view text);
    /// The same without a copy.
    void TakeWhole(std::wstring text);
    /// Appends a further line as it is.
    void AddLine(const std::wstring& line);
    /// Leaves no line at all.
    void Clear();

private:
    std::wstring_view Line(std::int64_t number) const;
    std::int64_t Length(std::int64_t line) const { return static_cast<std::int64_t>(Line(line).size()); }
    std::int64_t LineCount() const { return static_cast<std::int64_t>(m_starts.size()); }
    void DropReturns();
    /// Where a column lies; one that the line does not have is at its end.
    std::size_t Offset(CIterator pos) const;

    std::wstring m_text;               ///< the lines one behind the other: documents may be large
    std::vector<std::size_t> m_starts; ///< of each line
    CIterator m_pos;
};

/// A reader over a string, walking from its end to its start: "next" is towards the start.
class CBackSimpleReader : public IReader
{
public:
    explicit CBackSimpleReader(const std::wstring& text);

    void InitComponent(ISPDocument*) override {}
    std::wstring GetComponentName() override { return L"IReader"; }
    void Reset() override;
    bool NextChar() override;
    bool PrevChar() override;
    wchar_t ReadChar() override;
    CIterator GetPos() override { return m_pos; }
    /// The next NextChar() then reads the character at `pos`.
    void SetPos(CIterator pos) override;
    /// Raises CCriticalError when the two do not make a span of the text.
    std::wstring GetText(CIterator from, CIterator to) override;
    std::wstring GetText() override;
    void SetText(const std::wstring& text) override { SetString(text); }
    std::wstring GetFirstString() override;
    void Free() override { delete this; }
    CIterator GetEnd() override { return {0, 0}; }

    void SetString(const std::wstring& text);

private:
    std::vector<std::wstring> m_string;
    CIterator m_pos;
};

} // namespace Kesh::SyntaxParser
