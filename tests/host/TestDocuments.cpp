#include "Base/Exception.h"
#include "HostFixture.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "SyntaxParser/TextReader.h"

#include <boost/make_shared.hpp>
#include <filesystem>
#include <fstream>

using namespace Kesh;

namespace {

class Documents : public CHostTest
{
protected:
    Editor::CMemoryText& Text(Host::CDocument& document)
    {
        return dynamic_cast<Editor::CMemoryText&>(document.GetHolder());
    }
    Host::CDocumentService& Service() { return m_host.Documents(); }
    std::string Bytes(const std::wstring& path) { return Host::ReadFileBytes(path); }
};

TEST_F(Documents, AnEditIsSavedInTheFilesOwnFormat)
{
    struct SCase
    {
        std::string before;
        std::string after;
    };
    const SCase cases[] = {{"a\nb\n", "a\nb\n!"},
                           {"a\r\nb", "a\r\nb!"},
                           {"a\rb", "a\rb!"},
                           {"\xEF\xBB\xBF\xC3\xA9\r\n", "\xEF\xBB\xBF\xC3\xA9\r\n!"},
                           {"", "!"},
                           {std::string("\0\n\0", 3), std::string("\0\n\0!", 4)}};
    for (const SCase& c : cases) {
        const std::wstring path = m_folder.Write(L"file.php", c.before);
        Host::CDocument& document = Service().OpenFile(path);
        EXPECT_FALSE(document.IsModified());
        Text(document).Edit(document.GetBuffer()->GetText(L"\n") + L"!");
        EXPECT_TRUE(document.IsModified());
        document.Save();
        EXPECT_FALSE(document.IsModified());
        EXPECT_FALSE(document.IsStale());
        EXPECT_EQ(Bytes(path), c.after);
        Service().Close(document);
    }
}

/// Notes what it is asked, and the regions that it gets.
struct CHandler : SyntaxParser::IStateRegionHandler
{
    CHandler(SyntaxParser::CIterator start, SyntaxParser::CIterator end) : m_start(start), m_end(end) {}
    void Init(boost::shared_ptr<SyntaxParser::IReader> reader) override
    {
        m_log += reader ? "init " : "null ";
    }
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        m_log += "before ";
        return true;
    }
    int AddRegion(SyntaxParser::CRegion* region) override
    {
        m_regions += region->text;
        return 0;
    }
    void SendRegsEnd() override { m_log += "end "; }
    void AfterParse() override { m_log += "after "; }
    std::wstring GetSRName() override
    {
        m_log += "name ";
        return L"handler";
    }
    SyntaxParser::CIterator GetStartPos() override
    {
        m_log += "from ";
        return m_start;
    }
    SyntaxParser::CIterator GetEndPos() override
    {
        m_log += "to ";
        return m_end;
    }
    SyntaxParser::CIterator m_start, m_end;
    std::string m_log;
    std::wstring m_regions;
};

TEST_F(Documents, AHandlerIsAskedAndGetsWhatItNeeds)
{
    struct SCase
    {
        SyntaxParser::CIterator start, end;
        const wchar_t* regions;
    };
    const SCase cases[] = {{{-1, -1}, {2147483647, 2147483647}, L"<?php f;g;"},
                           {{0, 0}, {2147483647, 2147483647}, L"<?php f;g;"},
                           {{7, 0}, {2147483647, 2147483647}, L";g;"},
                           {{-1, -1}, {7, 0}, L"<?php f"},
                           {{7, 0}, {8, 0}, L";"},
                           {{0, 1}, {5, 1}, L""}};
    for (const SCase& c : cases) {
        auto reader = boost::make_shared<SyntaxParser::CTextReader>(L"<?php f;g;");
        const auto document = m_host.Parser().CreateDocument(reader, L"/a.php", L"PHPSPDocFactory");
        CHandler handler(c.start, c.end);
        boost::dynamic_pointer_cast<SyntaxParser::IParser>(document->GetComponent(L"IParser").lock())
            ->AddStateRegionHandler(&handler);
        EXPECT_EQ(handler.m_log, "init name ");
        document->Parse(true);
        EXPECT_EQ(handler.m_log, "init name before from to end after ");
        EXPECT_EQ(handler.m_regions, c.regions);
    }
}

TEST_F(Documents, BytesThatAreNotUtf8AreOnlyReplacedWithConsent)
{
    const std::wstring path = m_folder.Write(L"broken.php", "\xC3\xA9 caf\xE9");
    Host::CDocument& document = Service().OpenFile(path);
    EXPECT_FALSE(document.IsFaithful());
    Text(document).Edit(L"x");
    EXPECT_THROW(document.Save(), Base::CWorkError);
    EXPECT_EQ(Bytes(path), "\xC3\xA9 caf\xE9");
    EXPECT_TRUE(document.IsModified());
    document.Save(true);
    EXPECT_EQ(Bytes(path), "x");
    EXPECT_TRUE(document.IsFaithful());
}

TEST_F(Documents, AFailedSaveKeepsTheFileAndTheEdit)
{
    const std::wstring path = m_folder.Write(L"sub/file.php", "old");
    Host::CDocument& document = Service().OpenFile(path);
    Text(document).Edit(L"new");
    const std::string folder = Host::PathToBytes(m_folder.Path(L"sub"));
    std::filesystem::rename(folder, folder + "2");
    EXPECT_THROW(document.Save(), Base::CWorkError);
    EXPECT_TRUE(document.IsModified());
    std::filesystem::rename(folder + "2", folder);
    EXPECT_EQ(Bytes(path), "old");
}

TEST_F(Documents, OneFileIsOneDocumentHoweverItIsSpelled)
{
    const std::wstring path = m_folder.Write(L"a.php", "<?php");
    std::filesystem::create_symlink(Host::PathToBytes(path), Host::PathToBytes(m_folder.Path(L"link.php")));
    Host::CDocument& document = Service().OpenFile(path);
    EXPECT_EQ(&Service().OpenFile(m_folder.Path(L"./x/../a.php")), &document);
    EXPECT_EQ(&Service().OpenFile(m_folder.Path(L"link.php")), &document);
    EXPECT_EQ(Service().GetDocuments().size(), 1u);
}

TEST_F(Documents, ALostFileIsReportedAndOpensNothing)
{
    std::wstring reason;
    Service().GetOpenErrorSignal().connect([&](const std::wstring&, const std::wstring& r) { reason = r; });
    EXPECT_EQ(Service().Open(m_folder.Path(L"none.php"), 0), nullptr);
    EXPECT_EQ(reason, L"No such file or directory");
    EXPECT_TRUE(Service().GetDocuments().empty());
}

TEST_F(Documents, SyntaxDocumentsComeAndGoInOrder)
{
    std::string log;
    m_host.Parser().GetDocCreatedSignal().connect([&](boost::shared_ptr<SyntaxParser::ISPDocument> syntax) {
        SDK::IDocument* document = syntax->GetDocument();
        ASSERT_NE(document, nullptr);
        EXPECT_EQ(syntax->GetBuffer(), document->GetBuffer());
        EXPECT_EQ(document->GetBuffer()->GetText(L"|"), L"<?php|");
        EXPECT_EQ(m_host.Parser().GetSPDocument(document), syntax);
        log += "created ";
        syntax->GetDocDestroySignal().connect([&, document](SDK::IDocument* ended) {
            EXPECT_EQ(ended, document);
            EXPECT_NE(m_host.Parser().GetSPDocument(document), nullptr);
            log += "destroyed ";
        });
    });
    const std::wstring php = m_folder.Write(L"a.php", "<?php\n");
    Host::CDocument& document = Service().OpenFile(php);
    EXPECT_EQ(m_host.Parser().GetParsedDocument(php), nullptr) << "it is open in the editor";
    Service().SaveAs(document, m_folder.Path(L"b.php"));
    EXPECT_NE(m_host.Parser().GetParsedDocument(php), nullptr);
    EXPECT_EQ(m_host.Parser().GetParsedDocument(m_folder.Path(L"b.php")), nullptr);
    Service().Close(document);
    EXPECT_EQ(log, "created destroyed created destroyed ");

    Host::CDocument& plain = Service().OpenFile(m_folder.Write(L"notes.txt", "x"));
    EXPECT_EQ(m_host.Parser().GetSPDocument(&plain), nullptr);
    EXPECT_EQ(log, "created destroyed created destroyed ");
}

TEST_F(Documents, AReaderOfAnOpenDocumentFollowsItsText)
{
    Host::CDocument& document = Service().OpenFile(m_folder.Write(L"a.php", "one"));
    const auto syntax = m_host.Parser().GetSPDocument(&document);
    const auto reader =
        boost::dynamic_pointer_cast<SyntaxParser::IReader>(syntax->GetComponent(L"IReader").lock());
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->GetText(), L"one");
    Text(document).Edit(L"two\nlines");
    reader->Reset();
    EXPECT_EQ(reader->GetEnd(), (SyntaxParser::CIterator{5, 1}));
}

} // namespace
