#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"
#include "SyntaxParser/OwnNames.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::SyntaxParser {

struct SDocumentSource;

/// What a project says of its files. Asked on any thread.
struct SFileChoices
{
    /// Whether a file is PHP although its ending tells no language.
    std::function<bool(const std::wstring& path)> isPhp;
    /// Whether `<?` alone opens PHP in it.
    std::function<bool(const std::wstring& path)> hasShortTags;
    /// Names that are right in it besides those of the lists; null: none.
    std::function<std::shared_ptr<const COwnNames>(const std::wstring& path)> ownNames;
};

/// The host's parsing service: the syntax documents of open files, and private ones for checks.
class CParserComponent final : public IParserComponent, private ICssSyntax
{
public:
    void InitComponent(SDK::IApplication* /*application*/) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }

    CDefRegions* GetDefRegions() override;
    const ICompletionData* GetCompletionData() override;
    const ICssSyntax* GetCssSyntax() override { return this; }
    boost::shared_ptr<ISPDocument> CreateDocument(boost::shared_ptr<IReader> reader, const std::wstring& path,
                                                  const std::wstring& factoryName) override;
    boost::shared_ptr<ISPDocument> GetParsedDocument(const std::wstring& path) override;
    boost::shared_ptr<ISPDocument> GetSPDocument(SDK::IDocument* document) override;
    DocCreatedSignal& GetDocCreatedSignal() override { return m_docCreated; }
    ProjectParsedSignal& GetProjectParsedSignal() override { return m_projectParsed; }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override { return m_findErrorRegions; }

    /// Follows a host document from now on: a syntax document is made for it and announced, unless the empty
    /// factory name says that the file is of no language. GUI thread.
    void OpenDocument(SDK::IDocument* document, const std::wstring& factoryName);
    /// Announces the end of its syntax document and drops it. Unless what a check of it finds is still
    /// `wanted`, one that runs is given up. GUI thread.
    void CloseDocument(SDK::IDocument* document, bool wanted = true);

    /// Documents that are open stay as they were opened. GUI thread.
    void SetFileChoices(SFileChoices choices);
    /// The factory name for a file: by its ending, or as above. Any thread.
    std::wstring FactoryOfFile(const std::wstring& path);
    /// Called with each path that GetParsedDocument() is asked for, on the asking thread. Set it while no
    /// thread asks.
    void SetFileHook(std::function<void(const std::wstring&)> hook) { m_fileHook = std::move(hook); }

    /// Widens the lists of names for all files by the user's own, in place of those of the last call.
    /// Documents that are open keep the lists they were opened with. GUI thread.
    void SetOwnNames(const SOwnNames& names);

private:
    struct SOpened
    {
        std::wstring path;
        boost::shared_ptr<ISPDocument> syntax; ///< null for a file of no language
    };

    ISynRegion* GetPropertyNameKind() const override;
    ISynRegion* GetElementNameKind() const override;
    bool IsOpen(const std::wstring& path);
    std::shared_ptr<const SFileChoices> FileChoices() const;
    void Choose(SDocumentSource& source) const;
    boost::shared_ptr<ISPDocument> Make(boost::shared_ptr<IReader> reader, const std::wstring& path,
                                        const std::wstring& factoryName, bool ofFile) const;

    DocCreatedSignal m_docCreated;
    ProjectParsedSignal m_projectParsed;
    FindErrorRegionsSignal m_findErrorRegions;
    std::map<SDK::IDocument*, SOpened> m_opened; ///< GUI thread
    mutable std::mutex m_choicesMutex;
    std::shared_ptr<const SFileChoices> m_choices = std::make_shared<const SFileChoices>();
    mutable std::mutex m_pathsMutex;
    /// The same files, for any thread, each with what gives up the parses of its texts.
    std::map<std::wstring, std::shared_ptr<std::atomic<bool>>> m_openPaths;
    std::function<void(const std::wstring&)> m_fileHook;
    SOwnNames m_ownNames;
    std::atomic<const ICompletionData*> m_names{nullptr};
    /// Lists that were handed out are in use for as long as the component lives.
    std::vector<std::pair<SOwnNames, std::shared_ptr<const ICompletionData>>> m_widened;
};

} // namespace Kesh::SyntaxParser
