#pragma once

#include <QString>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::Workbench {

class CDocumentArea;
class CProjectSession;
class IPrompts;

/// What the user names in a dialog: files, folders and lines. GUI thread.
class CFileCommands
{
public:
    /// Nothing is owned.
    CFileCommands(Host::CApplication& application, CDocumentArea& area, CProjectSession& project,
                  IPrompts& prompts)
        : m_application(application), m_area(area), m_project(project), m_prompts(&prompts)
    {
    }

    /// Asks through these from now on.
    void SetPrompts(IPrompts& prompts) { m_prompts = &prompts; }
    void NewFile();
    void OpenFile();
    void OpenFolder();
    void GoToLine();

private:
    QString FolderToStartFrom() const;

    Host::CApplication& m_application;
    CDocumentArea& m_area;
    CProjectSession& m_project;
    IPrompts* m_prompts;
};

} // namespace Kesh::Workbench
