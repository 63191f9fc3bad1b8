#include "FileCommands.h"

#include "Application/Application.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "ProjectSession.h"
#include "Prompts.h"

#include <QDir>
#include <QFileInfo>

namespace Kesh::Workbench {

void CFileCommands::NewFile()
{
    const QString name = m_prompts->AskSaveName(FolderToStartFrom() + QStringLiteral("/"));
    if (name.isEmpty())
        return;
    const std::wstring path = Host::AbsolutePath(Host::PathFromQt(name));
    try {
        if (Host::StampOf(path).size < 0) {
            if (Host::LinkTarget(path) != path)
                throw Base::CWorkError(L"is a link that leads nowhere", __LINE__,
                                       "apps/workbench/FileCommands");
            Host::WriteFileBytes(path, "");
        }
        m_area.Open(path);
    } catch (const Base::CWorkError& fault) {
        m_area.GetMessageStrip().Show(name + QStringLiteral(": ") +
                                      QString::fromStdWString(fault.GetMessage()));
    }
}

void CFileCommands::OpenFile()
{
    if (const QString name = m_prompts->AskOpenFile(FolderToStartFrom()); !name.isEmpty())
        m_area.Open(Host::PathFromQt(name));
}

void CFileCommands::OpenFolder()
{
    if (const QString name = m_prompts->AskFolder(FolderToStartFrom()); !name.isEmpty())
        m_project.Open(Host::PathFromQt(name));
}

void CFileCommands::GoToLine()
{
    CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!editor)
        return;
    const auto line = static_cast<int>(editor->GetCaretPosition().y);
    if (const int wanted = m_prompts->AskLine(line + 1, editor->lines())) {
        editor->SetCaretPosition({0, wanted - 1});
        editor->CenterCaret();
        editor->setFocus();
    }
}

QString CFileCommands::FolderToStartFrom() const
{
    if (Host::CDocument* document = m_area.GetCurrent())
        return QFileInfo(Host::PathToQt(document->GetPath())).path();
    if (const std::wstring& folder = m_application.Project().GetFolder(); !folder.empty())
        return Host::PathToQt(folder);
    return QDir::homePath();
}

} // namespace Kesh::Workbench
