#include "EditorHolder.h"

namespace Kesh::Workbench {

CEditorHolder::CEditorHolder(std::function<void(CCodeEditor&)> activate)
    : m_editor(new CCodeEditor), m_activate(std::move(activate))
{
    QObject::connect(m_editor, &QsciScintilla::textChanged, m_editor, [this] { m_change(nullptr); });
}

CEditorHolder::~CEditorHolder()
{
    delete m_editor;
}

void CEditorHolder::Activate()
{
    m_activate(*m_editor);
    m_editor->setFocus();
}

std::vector<Editor::SDocZone> CEditorHolder::GetZones()
{
    return {{Editor::SDocZone::Shown, 0, m_editor->lines()}};
}

std::wstring CEditorHolder::GetText(const std::wstring& lineBreak)
{
    return Editor::JoinLines(m_editor->GetContent(), lineBreak);
}

void CEditorHolder::SetPos(const SyntaxParser::CIterator& viewPos, int /*flag*/)
{
    m_editor->SetCaretPosition(viewPos);
}

} // namespace Kesh::Workbench
