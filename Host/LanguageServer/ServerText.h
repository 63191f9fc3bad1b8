#pragma once

#include "Editor/TextHolder.h"

#include <memory>
#include <string_view>
#include <vector>

namespace Kesh::LanguageServer {

/// The text of a document that an editor has open, changed piece by piece. Lines end with "\n", whatever the
/// editor sends. GUI thread only.
class CServerText final : public Editor::ITextHolder, private Editor::IDocBuffer
{
public:
    IDocBuffer* GetBuffer() override { return this; }
    SDK::IView* GetView() override { return nullptr; }
    void SetText(const std::wstring& text) override;
    bool IsModified() override { return m_modified; }
    void SetUnmodified() override { m_modified = false; }

    const std::wstring& Text() const { return *m_text; }
    /// The text as it is now, whatever becomes of it; any thread may read it. The next edit makes a copy.
    std::shared_ptr<const std::wstring> Share()
    {
        m_isShared = true;
        return m_text;
    }
    std::size_t LineCount() const { return m_starts.size(); }
    /// Without its end; empty for a line that there is not.
    std::wstring_view Line(std::int64_t number) const;
    /// The place of a column of a line; both may lie beyond the text.
    std::size_t Offset(std::int64_t line, std::int64_t column) const;

    /// Whether it has more bytes than a file may have that is checked. A check then gets no text at all.
    bool IsTooLarge() const;

    /// Replaces what lies between two places. Tells nobody: several edits come at once.
    void Replace(std::size_t from, std::size_t to, std::wstring_view text);
    void ReplaceAll(std::wstring text);
    /// Announces the edits.
    void Announce();

private:
    std::wstring GetText(const std::wstring& lineBreak) override;
    int GetLinesCount() override { return static_cast<int>(m_starts.size()); }
    ChangeSignal& GetChangeSignal() override { return m_change; }

    /// Of nobody else.
    std::wstring& Own();

    std::shared_ptr<std::wstring> m_text = std::make_shared<std::wstring>();
    std::vector<std::size_t> m_starts{0};
    bool m_isShared = false; ///< since its last edit
    bool m_modified = false;
    ChangeSignal m_change;
};

/// Text as an editor sends it, with its line ends made "\n".
std::wstring TextFromUtf8(std::string_view utf8);

} // namespace Kesh::LanguageServer
