#pragma once

#include "Application/Settings.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "SyntaxParser/CompletionData.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/make_shared.hpp>
#include <deque>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A document whose parse delivers trees made before.
class CFakeDocument : public SyntaxParser::ISPDocument
{
public:
    /// Makes `trees` the result of a parse.
    void SetTrees(SyntaxParser::SMarkupTrees trees)
    {
        m_trees = std::move(trees);
        m_built = true;
    }
    void Parse(bool) override { m_parsed(this); }
    const SyntaxParser::SSemanticTree* GetSemanticTree(const std::wstring& language) override
    {
        if (m_locks != 1)
            throw std::logic_error("read without the lock");
        return !m_built              ? nullptr
               : language == L"HTML" ? &m_trees.html
               : language == L"CSS"  ? &m_trees.css
                                     : nullptr;
    }
    void LockSemanticData() override { ++m_locks; }
    void UnlockSemanticData() override { --m_locks; }
    int GetLocks() const { return m_locks; }

    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring&) override { return {}; }
    std::wstring GetFilePath() override { return L"/p/a.php"; }
    std::wstring GetFactoryName() override { return L"PHPSPDocFactory"; }
    SyntaxParser::CDefRegions* GetDefRegions() override { return nullptr; }
    SDK::IDocument* GetDocument() override { return nullptr; }
    Editor::IDocBuffer* GetBuffer() override { return nullptr; }
    SyntaxParser::ISemanticParser* GetSemanticParser(const std::wstring&) override { return nullptr; }
    EndOfParseSignal& GetEndOfParseSignal() override { return m_parsed; }
    DocDestroySignal& GetDocDestroySignal() override { return m_destroyed; }

private:
    SyntaxParser::SMarkupTrees m_trees;
    bool m_built = false;
    int m_locks = 0;
    EndOfParseSignal m_parsed;
    DocDestroySignal m_destroyed;
};

/// The lists of a host with names of its own, in any order.
class CFakeNames : public SyntaxParser::ICompletionData, private SyntaxParser::IAttributeSource
{
public:
    CFakeNames(const std::vector<std::wstring>& tags, const std::vector<std::wstring>& others)
    {
        for (const std::wstring& name : tags)
            m_tags.push_back(&m_items.emplace_back(name));
        for (const std::wstring& name : others)
            m_others.push_back(&m_items.emplace_back(name));
    }
    void AddTag(const std::wstring& name) { m_tags.push_back(&m_items.emplace_back(name)); }

    const SyntaxParser::TCompletionList& GetTags() const override { return m_tags; }
    const SyntaxParser::TCompletionList& GetStyleProperties() const override { return m_others; }
    const SyntaxParser::IAttributeSource* GetAttributeSource() const override { return this; }

private:
    struct SItem : SyntaxParser::ICompletionItem
    {
        explicit SItem(const std::wstring& text) : name(text) {}
        const std::wstring& GetName() const override { return name; }
        std::wstring name;
    };
    const SyntaxParser::TCompletionList& GetAttributes(const std::wstring&) const override
    {
        return m_others;
    }

    std::deque<SItem> m_items;
    SyntaxParser::TCompletionList m_tags;
    SyntaxParser::TCompletionList m_others;
};

class CFakeParserComponent : public SyntaxParser::IParserComponent,
                             public SyntaxParser::ICssSyntax,
                             public SyntaxParser::ICompletionData
{
public:
    /// Instead of the host's own.
    void SetAttributeSource(const SyntaxParser::IAttributeSource* source) { m_attributes = source; }

    const SyntaxParser::ICompletionData* GetCompletionData() override
    {
        if (m_names)
            return m_names;
        return m_attributes ? this : Data();
    }
    const SyntaxParser::TCompletionList& GetTags() const override { return Data()->GetTags(); }
    const SyntaxParser::TCompletionList& GetStyleProperties() const override
    {
        return Data()->GetStyleProperties();
    }
    const SyntaxParser::IAttributeSource* GetAttributeSource() const override
    {
        return m_attributes ? m_attributes : Data()->GetAttributeSource();
    }
    /// Knows these names instead of the built-in ones.
    void SetNames(const SyntaxParser::ICompletionData* names) { m_names = names; }
    const SyntaxParser::ICssSyntax* GetCssSyntax() override { return this; }
    SyntaxParser::ISynRegion* GetPropertyNameKind() const override
    {
        return SyntaxParser::GetCssPropertyNameKind();
    }
    SyntaxParser::ISynRegion* GetElementNameKind() const override
    {
        return SyntaxParser::GetCssElementNameKind();
    }

    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }
    SyntaxParser::CDefRegions* GetDefRegions() override { return nullptr; }
    boost::shared_ptr<SyntaxParser::ISPDocument> CreateDocument(boost::shared_ptr<SyntaxParser::IReader>,
                                                                const std::wstring&,
                                                                const std::wstring&) override
    {
        return {};
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetParsedDocument(const std::wstring&) override
    {
        return {};
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetSPDocument(SDK::IDocument*) override { return {}; }
    DocCreatedSignal& GetDocCreatedSignal() override { return m_created; }
    ProjectParsedSignal& GetProjectParsedSignal() override { return m_projectParsed; }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override { return m_findRegions; }

private:
    static const SyntaxParser::ICompletionData* Data() { return SyntaxParser::GetBuiltInCompletionData(); }

    const SyntaxParser::IAttributeSource* m_attributes = nullptr;
    const SyntaxParser::ICompletionData* m_names = nullptr;
    DocCreatedSignal m_created;
    ProjectParsedSignal m_projectParsed;
    FindErrorRegionsSignal m_findRegions;
};

/// A host that has the parsing service, or nothing at all.
class CFakeApplication : public SDK::IApplication
{
public:
    explicit CFakeApplication(bool hasParser = true)
    {
        if (hasParser)
            m_parser = boost::make_shared<CFakeParserComponent>();
    }
    boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> GetComponent(const std::wstring& name) override
    {
        return name == L"IParserComponent" ? m_parser : nullptr;
    }
    void SetAttributeSource(const SyntaxParser::IAttributeSource* source)
    {
        m_parser->SetAttributeSource(source);
    }
    CFakeParserComponent& Parser() { return *m_parser; }
    SDK::IMainFrame* GetMainFrame() override { return nullptr; }
    SDK::IImageListService* GetImageListService() override { return nullptr; }
    SDK::ISettings* GetSettings() override { return &m_settings; }
    SDK::ITimerService* GetTimerService() override { return nullptr; }
    SDK::IThreadService* GetThreadService() override { return nullptr; }
    SDK::IDocumentService* GetDocumentService() override { return nullptr; }
    double GetScaleFactor() override { return 1.0; }
    LangSupport::ILangSource* GetLangSource() override { return nullptr; }

private:
    boost::shared_ptr<CFakeParserComponent> m_parser;
    Host::CMemorySettings m_settings;
};

} // namespace Kesh::CodeAnalyzer
