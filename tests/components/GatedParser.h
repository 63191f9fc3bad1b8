#pragma once

#include "Application/ParserComponent.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace Kesh::Tests {

/// Stands at the start of every check: counts it, and holds it back while the gate is closed.
class CGate : public SyntaxParser::IStateRegionHandler
{
public:
    void Close() { SetOpen(false); }
    void Open() { SetOpen(true); }
    /// The n-th check from now on (1: the next one) fails with an exception.
    void FailCheck(int n) { m_failing = m_begun + n; }
    /// Checks begun, and the most that ran at once.
    int GetBegun() const { return m_begun; }
    int GetMostAtOnce() const { return m_most; }
    /// Checks that have come to their end.
    int GetEnded() const { return m_ended; }

    void Init(boost::shared_ptr<SyntaxParser::IReader>) override {}
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        std::unique_lock lock(m_mutex);
        const int check = ++m_begun;
        m_most = std::max<int>(m_most, ++m_running);
        m_opened.wait(lock, [this] { return m_open; });
        if (check == m_failing) {
            --m_running;
            throw std::runtime_error("a check that fails");
        }
        return true;
    }
    int AddRegion(SyntaxParser::CRegion*) override { return 0; }
    void SendRegsEnd() override {}
    void AfterParse() override
    {
        std::lock_guard lock(m_mutex);
        --m_running;
        ++m_ended;
    }
    std::wstring GetSRName() override { return L"Gate"; }
    SyntaxParser::CIterator GetStartPos() override { return {-1, -1}; }
    SyntaxParser::CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    void SetOpen(bool open)
    {
        std::lock_guard lock(m_mutex);
        m_open = open;
        m_opened.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open = true;
    int m_running = 0;
    std::atomic<int> m_begun{0};
    std::atomic<int> m_most{0};
    std::atomic<int> m_ended{0};
    std::atomic<int> m_failing{0};
};

/// The host's parsing service with a gate before the checks of PHP documents.
class CGatedParser final : public SyntaxParser::IParserComponent
{
public:
    explicit CGatedParser(SyntaxParser::CParserComponent& host) : m_host(host) {}
    CGate& Gate() { return m_gate; }
    /// From now on no checking document can be had.
    void RefuseDocuments() { m_refuse = true; }

    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }
    SyntaxParser::CDefRegions* GetDefRegions() override { return m_host.GetDefRegions(); }
    const SyntaxParser::ICompletionData* GetCompletionData() override { return m_host.GetCompletionData(); }
    const SyntaxParser::ICssSyntax* GetCssSyntax() override { return m_host.GetCssSyntax(); }
    boost::shared_ptr<SyntaxParser::ISPDocument>
    CreateDocument(boost::shared_ptr<SyntaxParser::IReader> reader, const std::wstring& path,
                   const std::wstring& factory) override
    {
        return m_refuse ? nullptr : Watch(m_host.CreateDocument(reader, path, factory));
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetParsedDocument(const std::wstring& path) override
    {
        return Watch(m_host.GetParsedDocument(path));
    }
    boost::shared_ptr<SyntaxParser::ISPDocument> GetSPDocument(SDK::IDocument* document) override
    {
        return m_host.GetSPDocument(document);
    }
    DocCreatedSignal& GetDocCreatedSignal() override { return m_host.GetDocCreatedSignal(); }
    ProjectParsedSignal& GetProjectParsedSignal() override { return m_host.GetProjectParsedSignal(); }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override
    {
        return m_host.GetFindErrorRegionsSignal();
    }

private:
    boost::shared_ptr<SyntaxParser::ISPDocument> Watch(boost::shared_ptr<SyntaxParser::ISPDocument> document)
    {
        if (document && document->GetFactoryName() == L"PHPSPDocFactory")
            boost::dynamic_pointer_cast<SyntaxParser::IParser>(document->GetComponent(L"IParser").lock())
                ->AddStateRegionHandler(&m_gate);
        return document;
    }

    SyntaxParser::CParserComponent& m_host;
    CGate m_gate;
    bool m_refuse = false;
};

} // namespace Kesh::Tests
