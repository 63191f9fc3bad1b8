#include "RecordingHost.h"

#include "Components/CAErrorsEvent.h"
#include "SPBase/reader.h"
#include "SyntaxParser/SPDocument.h"

#include <QCoreApplication>
#include <QString>
#include <algorithm>
#include <utility>

namespace Kesh::Tests {

namespace {

std::string Utf8(const std::wstring& text)
{
    return QString::fromStdWString(text).toStdString();
}

} // namespace

void CCallLog::Add(const std::string& call)
{
    const std::lock_guard lock(m_mutex);
    m_calls += call + '\n';
}

void CCallLog::Add(const std::string& call, const std::wstring& argument)
{
    Add(call + '(' + Utf8(argument) + ')');
}

std::string CCallLog::Take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_calls, {});
}

bool CCallLog::Has(const std::string& call)
{
    const std::lock_guard lock(m_mutex);
    return m_calls.find(call + '\n') != std::string::npos;
}

CRecordedDocument::CRecordedDocument(CCallLog& log, const std::string& name,
                                     boost::shared_ptr<SyntaxParser::IReader> reader,
                                     const SyntaxParser::SDocumentSource& source)
    : m_log(log),
      m_name(name + '.'),
      m_source(source),
      m_inner(SyntaxParser::MakeSPDocument(std::move(reader), {source.path, L"PHPSPDocFactory"}))
{
}

CRecordedDocument::~CRecordedDocument()
{
    m_log.Add(m_name + "end");
}

boost::weak_ptr<SDK::IComponent1<SyntaxParser::ISPDocument>>
CRecordedDocument::GetComponent(const std::wstring& name)
{
    m_log.Add(m_name + "GetComponent", name);
    return m_inner->GetComponent(name);
}

std::wstring CRecordedDocument::GetFilePath()
{
    m_log.Add(m_name + "GetFilePath");
    return m_source.path;
}

std::wstring CRecordedDocument::GetFactoryName()
{
    m_log.Add(m_name + "GetFactoryName");
    return m_source.factory;
}

SyntaxParser::CDefRegions* CRecordedDocument::GetDefRegions()
{
    m_log.Add(m_name + "GetDefRegions");
    return m_inner->GetDefRegions();
}

SDK::IDocument* CRecordedDocument::GetDocument()
{
    m_log.Add(m_name + "GetDocument");
    return m_source.document;
}

Editor::IDocBuffer* CRecordedDocument::GetBuffer()
{
    m_log.Add(m_name + "GetBuffer");
    return m_source.buffer;
}

SyntaxParser::ISemanticParser* CRecordedDocument::GetSemanticParser(const std::wstring& language)
{
    m_log.Add(m_name + "GetSemanticParser", language);
    return m_inner->GetSemanticParser(language);
}

void CRecordedDocument::Parse(bool full)
{
    m_log.Add(m_name + (full ? "Parse(true)" : "Parse(false)"));
    if (atParse)
        atParse();
    m_inner->Parse(full);
}

SyntaxParser::ISPDocument::DocDestroySignal& CRecordedDocument::GetDocDestroySignal()
{
    m_log.Add(m_name + "GetDocDestroySignal");
    return m_destroyed;
}

std::wstring CRecordedText::GetText(const std::wstring& lineBreak)
{
    m_log.Add(lineBreak == L"\n" ? "buffer.GetText(LF)" : "buffer.GetText(?)");
    return m_text;
}

Editor::IDocBuffer::ChangeSignal& CRecordedText::GetChangeSignal()
{
    m_log.Add("buffer.GetChangeSignal");
    return m_change;
}

/// The parsing service.
struct CRecordingHost::CParser final : SyntaxParser::IParserComponent
{
    explicit CParser(CRecordingHost& owner) : host(owner) {}
    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }
    SyntaxParser::CDefRegions* GetDefRegions() override
    {
        host.log.Add("parser.GetDefRegions");
        return SyntaxParser::GetDefRegions();
    }
    const SyntaxParser::ICompletionData* GetCompletionData() override
    {
        host.log.Add("parser.GetCompletionData");
        return host.m_names.GetCompletionData();
    }
    const SyntaxParser::ICssSyntax* GetCssSyntax() override
    {
        host.log.Add("parser.GetCssSyntax");
        return host.m_names.GetCssSyntax();
    }
    boost::shared_ptr<SyntaxParser::ISPDocument>
    CreateDocument(boost::shared_ptr<SyntaxParser::IReader> reader, const std::wstring& path,
                   const std::wstring& factoryName) override
    {
        host.log.Add("parser.CreateDocument", path + L", " + factoryName);
        auto document = boost::make_shared<CRecordedDocument>(
            host.log, "check", std::move(reader), SyntaxParser::SDocumentSource{path, factoryName});
        document->atParse = host.atParse;
        return document;
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetParsedDocument(const std::wstring& path) override
    {
        host.log.Add("parser.GetParsedDocument", path);
        const auto text = host.texts.find(path);
        if (text == host.texts.end())
            return {};
        return boost::make_shared<CRecordedDocument>(
            host.log, "file", boost::make_shared<SyntaxParser::CSimpleReader>(text->second),
            SyntaxParser::SDocumentSource{path, L"PHPSPDocFactory"});
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetSPDocument(SDK::IDocument*) override { return {}; }
    DocCreatedSignal& GetDocCreatedSignal() override
    {
        host.log.Add("parser.GetDocCreatedSignal");
        return host.m_docCreated;
    }
    ProjectParsedSignal& GetProjectParsedSignal() override
    {
        host.log.Add("parser.GetProjectParsedSignal");
        return host.m_projectParsed;
    }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override
    {
        host.log.Add("parser.GetFindErrorRegionsSignal");
        return findErrorRegions;
    }
    CRecordingHost& host;
    FindErrorRegionsSignal findErrorRegions;
};

struct CRecordingHost::CProject final : ProjectManager::IPMComponent
{
    explicit CProject(CRecordingHost& owner) : host(owner) {}
    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IPMComponent"; }
    ProjectManager::IProjectManager* GetProjectManager() override { return &host; }
    CRecordingHost& host;
};

CRecordingHost::CRecordingHost()
    : m_parser(boost::make_shared<CParser>(*this)), m_project(boost::make_shared<CProject>(*this))
{
}

CRecordingHost::~CRecordingHost() = default;

void CRecordingHost::Watch(QWidget& bar)
{
    bar.installEventFilter(this);
    QObject::connect(&bar, &QObject::destroyed, [this] { log.Add("bar.end"); });
}

bool CRecordingHost::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == CodeAnalyzer::CCAErrorsEvent::EventType) {
        const auto* told = static_cast<CodeAnalyzer::CCAErrorsEvent*>(event);
        const char* const kinds[] = {"bar.Add", "bar.ProjectFinished", "bar.Remove"};
        log.Add(kinds[told->GetType()],
                told->GetFileName() + L", " + std::to_wstring(told->GetErrors().size()));
    }
    return false;
}

/// An entry of the menu.
class CRecordedItem final : public SDK::IMenuItem
{
public:
    CRecordedItem(CCallLog& log, std::string name, int nullAt)
        : m_log(log), m_name(std::move(name)), m_nullAt(nullAt)
    {
    }
    ~CRecordedItem() override { m_log.Add("end of " + m_name); }
    boost::shared_ptr<IMenuItem> AddPopup(SDK::ICommand* head, int position) override
    {
        const std::string name = Utf8(head->GetName());
        m_log.Add(m_name + ".AddPopup(" + Utf8(head->GetClassName()) + ' ' + name + ", " +
                  std::to_string(position) + ')');
        head->Free();
        return m_nullAt == 1 ? nullptr : boost::make_shared<CRecordedItem>(m_log, name, m_nullAt - 1);
    }
    boost::shared_ptr<IMenuItem> AddCommand(SDK::ICommand* command, int position, int separator,
                                            int checkable) override
    {
        m_log.Add(m_name + ".AddCommand(" + Utf8(command->GetClassName()) + ", " + std::to_string(position) +
                  ", " + std::to_string(separator) + ", " + std::to_string(checkable) + ')');
        command->OnCommand(0);
        command->Free();
        return {};
    }

private:
    CCallLog& m_log;
    std::string m_name;
    int m_nullAt;
};

void CRecordingHost::FillMenu(int nullAt)
{
    struct CMenu : SDK::IMenu
    {
        CMenu(CCallLog& calls, int null) : log(calls), nullAt(null) {}
        boost::shared_ptr<SDK::IMenuItem> GetItem(const std::vector<std::wstring>& path) override
        {
            log.Add("menu.GetItem(" + std::to_string(path.size()) + " names)");
            return nullAt == 0 ? nullptr : boost::make_shared<CRecordedItem>(log, "root", nullAt);
        }
        CCallLog& log;
        int nullAt;
    } menu(log, nullAt);
    m_fillMenu(&menu, 0);
}

CRecordingHost::SOpen CRecordingHost::Open(const std::wstring& path, const std::wstring& text,
                                           const std::wstring& factory)
{
    SOpen open{std::make_unique<CRecordedText>(log, path, text), {}};
    open.syntax = boost::make_shared<CRecordedDocument>(
        log, "source", boost::make_shared<SyntaxParser::CSimpleReader>(text),
        SyntaxParser::SDocumentSource{path, factory, open.text.get(), open.text->GetBuffer()});
    m_docCreated(open.syntax);
    return open;
}

void CRecordingHost::Close(SOpen& open)
{
    auto& signal = open.syntax->GetDocDestroySignal();
    log.Take(); // that was this host's own call
    signal(open.text.get());
}

void CRecordingHost::RunThread()
{
    SDK::IThread* body = m_body;
    std::thread([body] { body->Run(); }).join();
    body->Finished();
}

boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> CRecordingHost::GetComponent(const std::wstring& name)
{
    log.Add("GetComponent", name);
    if (name == L"IParserComponent")
        return m_parser;
    if (name == L"IPMComponent")
        return m_project;
    return {};
}

SDK::IMainFrame* CRecordingHost::GetMainFrame()
{
    log.Add("GetMainFrame");
    return this;
}

SDK::IImageListService* CRecordingHost::GetImageListService()
{
    log.Add("GetImageListService");
    return this;
}

SDK::ISettings* CRecordingHost::GetSettings()
{
    log.Add("GetSettings");
    return this;
}

double CRecordingHost::GetScaleFactor()
{
    log.Add("GetScaleFactor");
    return 1.0;
}

LangSupport::ILangSource* CRecordingHost::GetLangSource()
{
    log.Add("GetLangSource");
    return nullptr;
}

SDK::IBarManager* CRecordingHost::GetBarManager()
{
    log.Add("GetBarManager");
    return this;
}

SDK::IMainFrame::AddBarsSignal& CRecordingHost::GetAddBarsSignal()
{
    log.Add("GetAddBarsSignal");
    return m_addBars;
}

SDK::IMainFrame::FillMenuSignal& CRecordingHost::GetFillMenuSignal()
{
    log.Add("GetFillMenuSignal");
    return m_fillMenu;
}

void CRecordingHost::SetProgressText(const std::wstring& text)
{
    log.Add("SetProgressText", text);
}

std::int64_t CRecordingHost::AddBar(const std::wstring& name, QWidget* widget, int placement, int size)
{
    log.Add("AddBar", name + L", " + QString(widget->metaObject()->className()).toStdWString() + L", " +
                          std::to_wstring(placement) + L", " + std::to_wstring(size));
    return 77;
}

int CRecordingHost::ShowBar(std::int64_t handle, int activate)
{
    log.Add("ShowBar(" + std::to_string(handle) + ", " + std::to_string(activate) + ')');
    return handle != 0;
}

SDK::IImageList* CRecordingHost::CreateImageList()
{
    log.Add("CreateImageList");
    return this;
}

int CRecordingHost::Load(const std::wstring& path, int width, int height, std::uint32_t transparent)
{
    log.Add("Load", path + L", " + std::to_wstring(width) + L", " + std::to_wstring(height) + L", " +
                        QString::number(transparent, 16).toStdWString());
    return 1;
}

QIcon CRecordingHost::GetIcon(int index)
{
    log.Add("GetIcon(" + std::to_string(index) + ')');
    return {};
}

int CRecordingHost::HasSection(const std::wstring& section)
{
    log.Add("HasSection", section);
    return 0;
}

std::wstring CRecordingHost::GetString(const std::wstring&, const std::wstring& key, const std::wstring&)
{
    log.Add("GetString", key);
    return {};
}

void CRecordingHost::SetString(const std::wstring&, const std::wstring& key, const std::wstring&)
{
    log.Add("SetString", key);
}

void CRecordingHost::StartTimer(Base::ITimerHandler* handler)
{
    m_timer = handler;
    log.Add("StartTimer", handler->GetName() + L", " + std::to_wstring(handler->GetDelay()));
}

void CRecordingHost::StopTimer(Base::ITimerHandler* handler)
{
    log.Add("StopTimer", handler->GetName());
}

SDK::IThreadObject* CRecordingHost::CreateThread(SDK::IThread* body, int flag)
{
    log.Add("CreateThread", body->GetThreadName() + L", " + std::to_wstring(flag));
    m_body = body;
    m_stopRequested = 0;
    return this;
}

void CRecordingHost::Start()
{
    log.Add("thread.Start");
}

void CRecordingHost::Stop(ProjectManager::IProjectManager* pm)
{
    log.Add(pm ? "thread.Stop(project)" : "thread.Stop(null)");
    m_stopRequested = 1;
    if (!endsThreadsLater)
        m_body->Finished();
}

SDK::IDocument* CRecordingHost::Open(const std::wstring& path, int flag)
{
    log.Add("Open", path + L", " + std::to_wstring(flag));
    return nullptr;
}

int CRecordingHost::IsOpened()
{
    log.Add("project.IsOpened");
    return isOpened;
}

int CRecordingHost::BelongsToProject(const std::wstring& path)
{
    log.Add("project.BelongsToProject", path);
    return std::find(files.begin(), files.end(), path) != files.end();
}

std::vector<std::wstring> CRecordingHost::GetFiles()
{
    log.Add("project.GetFiles");
    return files;
}

boost::shared_ptr<const ProjectManager::SProjectFilesCache> CRecordingHost::GetFilesCache()
{
    log.Add("project.GetFilesCache");
    return boost::make_shared<ProjectManager::SProjectFilesCache>(ProjectManager::SProjectFilesCache{files});
}

int CRecordingHost::IsReopening()
{
    log.Add("project.IsReopening");
    return isReopening;
}

std::wstring CRecordingHost::GetData(const std::wstring& name)
{
    log.Add("project.GetData", name);
    return data;
}

void CRecordingHost::SetData(const std::wstring& name, const std::wstring& text)
{
    log.Add("project.SetData", name);
    data = text;
}

ProjectManager::IProjectManager::CloseProjectSignal& CRecordingHost::GetCloseProjectSignal()
{
    log.Add("project.GetCloseProjectSignal");
    return m_closeProject;
}

} // namespace Kesh::Tests
