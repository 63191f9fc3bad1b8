#pragma once

#include "CodeEditor.h"
#include "Editor/TextHolder.h"
#include "Kesh/Editor/IStandartView.h"

#include <QPointer>
#include <functional>

namespace Kesh::Workbench {

/// An editor widget as the host knows it: the text of a document, its buffer and its view. The view's lines
/// are the document's: a folded line that is needed is unfolded. Owns the widget, which lives in a tab.
class CEditorHolder final : public Editor::ITextHolder,
                            private Editor::IDocBuffer,
                            public Editor::IStandartView,
                            private Editor::ICaret
{
public:
    /// `activate` brings the widget to the front.
    explicit CEditorHolder(std::function<void(CCodeEditor&)> activate);
    ~CEditorHolder() override;

    CCodeEditor& GetEditor() { return *m_editor; }

    Editor::IDocBuffer* GetBuffer() override { return this; }
    SDK::IView* GetView() override { return this; }
    void SetText(const std::wstring& text) override { m_editor->SetContent(text); }
    bool IsModified() override { return m_editor->isModified(); }
    void SetUnmodified() override { m_editor->setModified(false); }

    void Activate() override;
    Editor::ICaret* GetCaret() override { return this; }
    void EnsureVisible(int /*margin*/) override { m_editor->CenterCaret(); }
    int GetLinesCount() override { return m_editor->lines(); }
    std::vector<Editor::SDocZone> GetZones() override;

private:
    std::wstring GetText(const std::wstring& lineBreak) override;
    ChangeSignal& GetChangeSignal() override { return m_change; }
    void SetPos(const SyntaxParser::CIterator& viewPos, int flag) override;

    QPointer<CCodeEditor> m_editor;
    std::function<void(CCodeEditor&)> m_activate;
    ChangeSignal m_change;
};

} // namespace Kesh::Workbench
