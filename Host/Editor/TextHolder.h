#pragma once

#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SDK/IDocument.h"

#include <memory>
#include <string>

namespace Kesh::Editor {

/// What keeps the text of an open document: plain memory, or an editor widget. Owned by its document. GUI
/// thread only.
class ITextHolder
{
public:
    virtual ~ITextHolder() = default;
    virtual IDocBuffer* GetBuffer() = 0;
    /// Null when the text is not shown.
    virtual SDK::IView* GetView() = 0;
    /// Replaces the text, whose lines end with "\n"; the text then counts as unmodified.
    virtual void SetText(const std::wstring& text) = 0;
    virtual bool IsModified() = 0;
    /// The text has been saved.
    virtual void SetUnmodified() = 0;
};

/// Text in memory.
class CMemoryText final : public ITextHolder, private IDocBuffer
{
public:
    IDocBuffer* GetBuffer() override { return this; }
    SDK::IView* GetView() override { return nullptr; }
    void SetText(const std::wstring& text) override;
    bool IsModified() override { return m_modified; }
    void SetUnmodified() override { m_modified = false; }

    /// Replaces the text as an edit of the user would.
    void Edit(const std::wstring& text);

private:
    std::wstring GetText(const std::wstring& lineBreak) override;
    int GetLinesCount() override;
    ChangeSignal& GetChangeSignal() override { return m_change; }

    std::wstring m_text;
    bool m_modified = false;
    ChangeSignal m_change;
};

/// `text` with each "\n" replaced by `lineBreak`.
std::wstring JoinLines(const std::wstring& text, const std::wstring& lineBreak);

} // namespace Kesh::Editor
