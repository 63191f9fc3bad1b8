#pragma once

#include "Application/ParserComponent.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/ProjectManager/IProjectManager.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SDK/IDocument.h"
#include "Kesh/SDK/IImageList.h"
#include "Kesh/SDK/IMainFrame.h"
#include "Kesh/SDK/IMenu.h"
#include "Kesh/SDK/IServices.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Kesh::Tests {

/// What has been called, in order. Any thread.
class CCallLog
{
public:
    void Add(const std::string& call);
    void Add(const std::string& call, const std::wstring& argument);
    /// All since the last time, a line each.
    std::string Take();
    bool Has(const std::string& call);

private:
    std::mutex m_mutex;
    std::string m_calls;
};

/// One document of the parsing service, with nothing that a host may leave aside.
class CRecordedDocument final : public SyntaxParser::ISPDocument
{
public:
    /// `name` tells what it is in the log; `document` and `buffer` may be null.
    CRecordedDocument(CCallLog& log, const std::string& name, boost::shared_ptr<SyntaxParser::IReader> reader,
                      const SyntaxParser::SDocumentSource& source);
    ~CRecordedDocument() override;

    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) override;
    std::wstring GetFilePath() override;
    std::wstring GetFactoryName() override;
    SyntaxParser::CDefRegions* GetDefRegions() override;
    SDK::IDocument* GetDocument() override;
    Editor::IDocBuffer* GetBuffer() override;
    SyntaxParser::ISemanticParser* GetSemanticParser(const std::wstring& language) override;
    void Parse(bool full) override;
    EndOfParseSignal& GetEndOfParseSignal() override { return m_inner->GetEndOfParseSignal(); }
    DocDestroySignal& GetDocDestroySignal() override;
    void LockSemanticData() override { m_inner->LockSemanticData(); }
    void UnlockSemanticData() override { m_inner->UnlockSemanticData(); }
    const SyntaxParser::SSemanticTree* GetSemanticTree(const std::wstring& language) override
    {
        return m_inner->GetSemanticTree(language);
    }

    std::function<void()> atParse; ///< called when a parse begins

private:
    CCallLog& m_log;
    const std::string m_name;
    const SyntaxParser::SDocumentSource m_source;
    const boost::shared_ptr<ISPDocument> m_inner; ///< parses
    DocDestroySignal m_destroyed;
};

/// A file that the host has open.
class CRecordedText final : public SDK::IDocument, private Editor::IDocBuffer
{
public:
    CRecordedText(CCallLog& log, std::wstring path, std::wstring text)
        : m_log(log), m_path(std::move(path)), m_text(std::move(text))
    {
    }
    std::wstring GetPath() override { return m_path; }
    Editor::IDocBuffer* GetBuffer() override { return this; }
    SDK::IView* GetView() override { return nullptr; }
    void Edit(const std::wstring& text)
    {
        m_text = text;
        m_change(nullptr);
    }

private:
    std::wstring GetText(const std::wstring& lineBreak) override;
    int GetLinesCount() override { return 1; }
    ChangeSignal& GetChangeSignal() override;

    CCallLog& m_log;
    std::wstring m_path;
    std::wstring m_text;
    ChangeSignal m_change;
};

/// A host that knows the interfaces and nothing else, asks for nothing, and writes every call down. Threads
/// run when the test says so.
class CRecordingHost final : public SDK::IApplication,
                             private SDK::IMainFrame,
                             private SDK::IBarManager,
                             private SDK::IImageListService,
                             private SDK::IImageList,
                             private SDK::ISettings,
                             private SDK::ITimerService,
                             private SDK::IThreadService,
                             private SDK::IThreadObject,
                             private SDK::IDocumentService,
                             private ProjectManager::IProjectManager,
                             private QObject
{
public:
    CRecordingHost();
    ~CRecordingHost();

    std::string Take() { return log.Take(); }
    void AddBars() { m_addBars(this); }
    /// `nullAt` 0: the root is null, 1: "&Tools", 2: "Code validator", 3: nothing is.
    void FillMenu(int nullAt = 3);
    /// Writes down what the bar is told.
    void Watch(QWidget& bar);

    struct SOpen
    {
        std::unique_ptr<CRecordedText> text;
        boost::shared_ptr<CRecordedDocument> syntax;
    };
    SOpen Open(const std::wstring& path, const std::wstring& text,
               const std::wstring& factory = L"PHPSPDocFactory");
    void Close(SOpen& open);
    /// The delay of the handler that was started last runs out.
    void FireTimer() { m_timer->OnTimer(); }

    void ParseProject() { m_projectParsed(); }
    /// A whole run of the thread that was started last, on a thread that this one waits for.
    void RunThread();
    void TellThreadEnd() { m_body->Finished(); }
    void CloseProject() { m_closeProject(this); }

    CCallLog log;
    std::vector<std::wstring> files;            ///< of the project
    std::map<std::wstring, std::wstring> texts; ///< of files that can be read
    std::wstring data;                          ///< what is kept with the project
    bool isOpened = false;
    bool isReopening = false;
    bool endsThreadsLater = false; ///< tells their end only when the test says so
    std::function<void()> atParse; ///< called when a parse begins

private:
    struct CParser;
    struct CProject;
    friend struct CParser;

    // IApplication
    boost::weak_ptr<SDK::IComponent1<IApplication>> GetComponent(const std::wstring& name) override;
    SDK::IMainFrame* GetMainFrame() override;
    SDK::IImageListService* GetImageListService() override;
    SDK::ISettings* GetSettings() override;
    SDK::ITimerService* GetTimerService() override { return this; }
    SDK::IThreadService* GetThreadService() override { return this; }
    SDK::IDocumentService* GetDocumentService() override { return this; }
    double GetScaleFactor() override;
    LangSupport::ILangSource* GetLangSource() override;
    // main frame
    SDK::IBarManager* GetBarManager() override;
    AddBarsSignal& GetAddBarsSignal() override;
    FillMenuSignal& GetFillMenuSignal() override;
    void SetProgressText(const std::wstring& text) override;
    std::int64_t AddBar(const std::wstring& name, QWidget* widget, int placement, int size) override;
    int ShowBar(std::int64_t handle, int activate) override;
    // images and settings
    SDK::IImageList* CreateImageList() override;
    int Load(const std::wstring& path, int width, int height, std::uint32_t transparent) override;
    QIcon GetIcon(int index) override;
    void Release() override { log.Add("Release"); }
    int HasSection(const std::wstring& section) override;
    std::wstring GetString(const std::wstring&, const std::wstring& key, const std::wstring&) override;
    void SetString(const std::wstring&, const std::wstring& key, const std::wstring&) override;
    // timers and threads
    void StartTimer(Base::ITimerHandler* handler) override;
    void StopTimer(Base::ITimerHandler* handler) override;
    SDK::IThreadObject* CreateThread(SDK::IThread* body, int flag) override;
    void Start() override;
    void Stop(ProjectManager::IProjectManager* pm) override;
    int IsStopRequested() override { return m_stopRequested; }
    // documents
    SDK::IDocument* Open(const std::wstring& path, int flag) override;
    SDK::IDocument* GetCurrent() override { return nullptr; }
    // project
    int IsOpened() override;
    int BelongsToProject(const std::wstring& path) override;
    std::vector<std::wstring> GetFiles() override;
    boost::shared_ptr<const ProjectManager::SProjectFilesCache> GetFilesCache() override;
    int IsReopening() override;
    std::wstring GetData(const std::wstring& name) override;
    void SetData(const std::wstring& name, const std::wstring& text) override;
    CloseProjectSignal& GetCloseProjectSignal() override;
    // what the bar is told
    bool eventFilter(QObject* receiver, QEvent* event) override;

    AddBarsSignal m_addBars;
    FillMenuSignal m_fillMenu;
    CloseProjectSignal m_closeProject;
    SyntaxParser::IParserComponent::DocCreatedSignal m_docCreated;
    SyntaxParser::IParserComponent::ProjectParsedSignal m_projectParsed;
    SyntaxParser::CParserComponent m_names; ///< knows what this host knows of HTML and CSS
    boost::shared_ptr<CParser> m_parser;
    boost::shared_ptr<CProject> m_project;
    Base::ITimerHandler* m_timer = nullptr;
    SDK::IThread* m_body = nullptr;
    std::atomic<int> m_stopRequested{0};
};

} // namespace Kesh::Tests
