#include "ProjectSession.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Application/PluginLoader.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "CheckControl.h"
#include "Configuration/NamePresets.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "FileTree.h"
#include "Files/FilePath.h"
#include "Findings/ApplyRules.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "StatusLine.h"
#include "Texts.h"

#include <QFileInfo>
#include <QMenu>
#include <utility>

namespace Kesh::Workbench {

namespace {

const QString RulesSubject = QStringLiteral("settings of the project");

/// Single names are the validator's own business, which knows no patterns.
void AddPatterns(const QStringList& names, std::vector<std::wstring>& all)
{
    for (const QString& name : names)
        if (name.contains('*'))
            all.push_back(Base::CCommonString::LowerCaseFast(name.toStdWString()));
}

SyntaxParser::SOwnNames UsersNames(const SChoices& choices)
{
    Configuration::SConfiguration settings;
    for (const QString& name : choices.presets)
        if (const auto* preset = Configuration::FindNamePreset(name.toStdString()))
            Configuration::AddNamePreset(*preset, settings);
    AddPatterns(choices.customTags, settings.tags);
    AddPatterns(choices.customAttributes, settings.attributes);
    return Findings::OwnNamesOf(settings);
}

} // namespace

CProjectSession::CProjectSession(const SParts& parts) : m_parts(parts)
{
    connect(&m_opener, &CProjectOpener::listed, this, &CProjectSession::OnListed);
    connect(&m_settings, &CSettingsWatch::changed, this, &CProjectSession::Refresh);
    connect(&parts.area, &CDocumentArea::linkActivated, this,
            [this](const QString& link) { Open(Host::PathFromQt(link)); });
}

void CProjectSession::SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch)
{
    m_plugin = plugin;
    m_watch = watch;
    if (!plugin)
        return;
    TakeNames();
}

void CProjectSession::UseRules(TProjectRules rules)
{
    Host::CApplication& application = m_parts.application;
    SyntaxParser::SOwnNames names = UsersNames(m_parts.preferences.GetChoices());
    // Open documents keep the names and the tags that they were opened with.
    const auto documents = application.Documents().GetDocuments();
    const bool isOpenedAnew =
        names != m_names || std::ranges::any_of(documents, [&](Host::CDocument* document) {
            const std::wstring path = document->GetPath();
            return !Findings::OpenAlike(*m_rules->For(path), *rules->For(path));
        });
    m_names = std::move(names);
    m_rules = std::move(rules);
    if (isOpenedAnew)
        application.Documents().Suspend();
    CodeAnalyzer::IGrammarCheck* grammar = m_plugin ? m_plugin->GrammarCheck() : nullptr;
    if (grammar)
        grammar->SetEnabled(m_parts.preferences.GetChoices().grammar);
    CodeAnalyzer::IMarkupCheck* markup = m_plugin ? m_plugin->MarkupCheck() : nullptr;
    if (markup)
        markup->SetEnabled(m_parts.preferences.GetChoices().markup);
    Findings::ApplyRules(m_rules, application.Parser(), grammar, markup);
    application.Parser().SetOwnNames(m_names);
    if (m_watch)
        m_watch->SetRules(m_rules);
    if (isOpenedAnew)
        application.Documents().Resume();
}

void CProjectSession::Open(const std::wstring& folder)
{
    if (!Close())
        return;
    m_parts.status.ShowProgress(Tr("Looking for files..."));
    m_opener.Start(Host::AbsolutePath(folder), nullptr);
}

void CProjectSession::OnListed(const SProjectListing& listing)
{
    const std::wstring& folder = listing.folder;
    m_parts.status.ShowProgress({});
    const QString shown = Host::PathToQt(folder);
    if (!listing.problem.isEmpty()) {
        m_parts.area.GetMessageStrip().Show(shown + QStringLiteral(": ") + listing.problem);
        return;
    }
    m_parts.area.GetMessageStrip().Withdraw(RulesSubject);
    if (!listing.rulesProblem.isEmpty())
        m_parts.area.GetMessageStrip().Show(listing.rulesProblem, {}, RulesSubject);
    m_settings.Follow(listing.rules, folder);
    m_parts.check.Expect();
    const bool isOpen = m_parts.application.Project().GetFolder() == folder;
    if (m_watch && !isOpen)
        m_watch->SetChecked(false);
    UseRules(listing.rules);
    if (isOpen) {
        m_parts.application.ReopenProject(listing.files);
    } else {
        m_parts.application.OpenProject(folder, listing.files);
        m_parts.tree.SetFolder(shown);
        m_parts.preferences.AddRecentProject(shown);
    }
    ShowWelcome();
    emit changed();
}

bool CProjectSession::Close()
{
    m_opener.Cancel();
    if (!m_parts.application.Project().GetProjectManager()->IsOpened())
        return true;
    // While the project is open the errors of its closed files stay, to be kept with it.
    if (!m_parts.area.CloseAll())
        return false;
    m_parts.application.Project().Close();
    ShowNone();
    return true;
}

void CProjectSession::ShowNone()
{
    m_settings.Follow(nullptr, {});
    m_parts.area.GetMessageStrip().Withdraw(RulesSubject);
    UseRules(Findings::CProjectRules::None());
    if (m_watch)
        m_watch->SetChecked(false);
    emit closed();
    m_parts.tree.SetFolder({});
    ShowWelcome();
    emit changed();
}

void CProjectSession::Refresh()
{
    if (const std::wstring& folder = m_parts.application.Project().GetFolder(); !folder.empty())
        m_opener.Start(folder, m_rules);
}

void CProjectSession::TakeNames()
{
    UseRules(m_rules);
}

SSession CProjectSession::GetOpen() const
{
    SSession session;
    session.project = Host::PathToQt(m_parts.application.Project().GetFolder());
    session.files = m_parts.area.GetOpenFiles();
    session.current = m_parts.area.GetTabs().currentIndex();
    return session;
}

void CProjectSession::Restore(const SSession& session)
{
    if (!session.project.isEmpty() && QFileInfo(session.project).isDir())
        Open(Host::PathFromQt(session.project));
    m_parts.area.RestoreFiles(session.files, session.current);
}

void CProjectSession::FillRecentMenu(QMenu& menu)
{
    menu.clear();
    for (const QString& folder : m_parts.preferences.GetRecentProjects()) {
        QString title = folder;
        connect(menu.addAction(title.replace('&', QStringLiteral("&&"))), &QAction::triggered, this,
                [this, folder] { Open(Host::PathFromQt(folder)); });
    }
    if (menu.isEmpty())
        menu.addAction(Tr("None yet"))->setEnabled(false);
}

void CProjectSession::ShowWelcome()
{
    if (!m_parts.application.Project().GetFolder().empty()) {
        m_parts.area.SetWelcomeText(
            Tr("Choose a file in the project, or an error in the list below.").toHtmlEscaped());
        return;
    }
    QString html = QStringLiteral("<p>%1</p>")
                       .arg(Tr("Open a folder with Ctrl+Shift+O, or a file with Ctrl+O.").toHtmlEscaped());
    const QStringList recent = m_parts.preferences.GetRecentProjects();
    if (!recent.isEmpty())
        html += QStringLiteral("<p><b>%1</b></p>").arg(Tr("Recent projects").toHtmlEscaped());
    for (const QString& folder : recent)
        html += QStringLiteral("<p><a href=\"%1\">%1</a></p>").arg(folder.toHtmlEscaped());
    m_parts.area.SetWelcomeText(html);
}

} // namespace Kesh::Workbench
