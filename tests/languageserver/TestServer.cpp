// What a server answers to whatever comes, message by message, in one process.

#include "Application/HeadlessHost.h"
#include "Application/PluginLoader.h"
#include "Files/FileIO.h"
#include "LanguageServer/Server.h"
#include "components/GatedParser.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

using namespace Kesh;
using LanguageServer::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Server : public ::testing::Test
{
protected:
    Server()
    {
        m_host.frame.Build();
        Start();
    }
    void Start()
    {
        m_server.reset();
        m_server.emplace(LanguageServer::CServer::SParts{
            m_host.application, m_plugin,
            [this](const std::string& body) { m_sent.push_back(json::parse(body)); },
            [this] { m_ended = true; }, "file:///errors.md", "0"});
    }

    /// The answers to one message.
    std::vector<json> Send(const std::string& body)
    {
        m_sent.clear();
        m_server->Receive(body);
        return m_sent;
    }
    std::vector<json> Send(const json& message) { return Send(message.dump()); }
    void Notify(const std::string& method, const json& params)
    {
        m_server->Receive(json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}.dump());
    }
    void Initialize(const json& capabilities = json::object())
    {
        Send(json{{"id", 0},
                  {"method", "initialize"},
                  {"params", {{"capabilities", capabilities}, {"initializationOptions", {{"delay", 0}}}}}});
        Notify("initialized", json::object());
    }
    void Open(const std::string& uri, const std::string& text, const std::string& language = "php")
    {
        Notify("textDocument/didOpen",
               {{"textDocument", {{"uri", uri}, {"languageId", language}, {"version", 1}, {"text", text}}}});
    }
    void Change(const std::string& uri, int version, const json& changes)
    {
        Notify("textDocument/didChange",
               {{"textDocument", {{"uri", uri}, {"version", version}}}, {"contentChanges", changes}});
    }
    /// The diagnostics of a version, as "LINE:COLUMN-LINE:COLUMN CODE".
    std::vector<std::string> Await(const std::string& uri, int version)
    {
        const auto isIt = [&](const json& message) {
            return message.value("method", "") == "textDocument/publishDiagnostics" &&
                   message["params"]["uri"] == uri && message["params"].value("version", 0) == version;
        };
        for (const QDeadlineTimer end(30000); !end.hasExpired();) {
            for (const json& message : m_sent)
                if (isIt(message))
                    return Brief(message["params"]["diagnostics"]);
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return {"waited in vain"};
    }
    static std::vector<std::string> Brief(const json& diagnostics)
    {
        std::vector<std::string> brief;
        for (const json& diagnostic : diagnostics) {
            const auto at = [&](const char* end) {
                const json& position = diagnostic["range"][end];
                return position["line"].dump() + ':' + position["character"].dump();
            };
            brief.push_back(at("start") + '-' + at("end") + ' ' + diagnostic["code"].dump());
        }
        return brief;
    }

    const bool m_located = qputenv("CODE_ANALYZER_PLUGIN", PLUGIN);
    Host::SHeadlessHost m_host;
    Host::CPlugin m_plugin{m_host.application, Host::CPlugin::Windowless};
    std::vector<json> m_sent;
    bool m_ended = false;
    std::optional<LanguageServer::CServer> m_server;
};

/// The messages of a method.
std::vector<json> Of(const std::vector<json>& sent, const char* method)
{
    std::vector<json> found;
    for (const json& message : sent)
        if (message.value("method", "") == method)
            found.push_back(message["params"]);
    return found;
}

const std::string Wrong = "<?php\n$a = 1;\n$b = = 2;\n";
const std::string Found = "2:5-2:6 1025";

TEST_F(Server, ATextThatIsTooLargeIsNotCheckedAndTheUserIsTold)
{
    Initialize();
    const auto told = [this] {
        return std::count_if(m_sent.begin(), m_sent.end(), [](const json& message) {
            return message.value("method", "") == "window/showMessage" &&
                   message["params"]["message"] == "big.php is larger than 64 MiB, and is not checked";
        });
    };
    // A character of the text may be several bytes of the file.
    std::string text = Wrong + "// ";
    while (text.size() < Host::MaxFileBytes - 2)
        text += "\xE2\x82\xAC";
    text.resize(Host::MaxFileBytes, ' ');
    LanguageServer::CServerText known;
    known.ReplaceAll(LanguageServer::TextFromUtf8(text));
    EXPECT_FALSE(known.IsTooLarge());
    Open("file:///big.php", text + ' ');
    EXPECT_THAT(Await("file:///big.php", 1), IsEmpty());
    EXPECT_EQ(told(), 1);
    Change("file:///big.php", 2, {{{"text", Wrong}}});
    EXPECT_THAT(Await("file:///big.php", 2), ::testing::ElementsAre(Found));
    EXPECT_EQ(told(), 1);
}

TEST_F(Server, AnswersEveryRequestOnceAndNothingElse)
{
    struct SCase
    {
        std::string body;
        json id;  ///< of the answer
        int code; ///< 0: a result; 1: no answer at all; 2: a note in the log
    };
    const std::string pi(400, '9');
    const std::vector<SCase> before = {
        {R"({"id":1,"method":"shutdown"})", 1, -32002},
        {R"({"id":"a","method":"textDocument/codeAction"})", "a", -32002},
        {R"({"method":"textDocument/didOpen"})", {}, 1},
        {R"({"method":"initialized"})", {}, 1},
        {R"({"id":1,"method":"initialize","params":[]})", 1, -32602},
        {R"({"id":1,"method":"initialize","params":{"workspaceFolders":[{}]}})", 1, -32602},
        {R"({"id":1,"method":"initialize","params":{"workspaceFolders":[{"uri":5}]}})", 1, -32602},
        {R"({"id":2,"method":"initialize","params":{"capabilities":null,"rootUri":7,"workspaceFolders":{}}})",
         2, 0},
    };
    const std::vector<SCase> running = {
        {"", {}, -32700},
        {"{", {}, -32700},
        {"\xFF", {}, -32700},
        {R"({"id":1,"method":"x"}})", {}, -32700},
        {std::string(100000, '['), {}, -32700},
        {std::string(100000, '[') + std::string(100000, ']'), {}, -32600},
        {"[]", {}, -32600},
        {"null", {}, -32600},
        {"{}", {}, -32600},
        {R"({"id":1})", {}, -32600},
        {R"({"id":77,"result":1})", {}, 1},
        {R"({"id":"x","error":{}})", {}, 1},
        {R"({"id":1,"method":5})", 1, -32600},
        {R"({"id":null,"method":"shutdown"})", {}, -32600},
        {R"({"id":1.5,"method":"shutdown"})", {}, -32600},
        {R"({"id":[1],"method":"shutdown"})", {}, -32600},
        {R"({"id":1,"method":"no/such"})", 1, -32601},
        {R"({"id":1,"method":"$/no"})", 1, -32601},
        {R"({"method":"$/no"})", {}, 1},
        {R"({"method":"no/such","params":[]})", {}, 1},
        {R"({"id":"\ud800","method":"no/such"})", "\xEF\xBF\xBD", -32601},
        {R"({"id":-9223372036854775808,"method":"no/such"})", std::numeric_limits<std::int64_t>::min(),
         -32601},
        {R"({"id":1,"method":"initialize","params":{}})", 1, -32600},
        {R"({"id":1,"method":"textDocument/codeAction"})", 1, -32602},
        {R"({"id":1,"method":"textDocument/codeAction","params":[]})", 1, -32602},
        {R"({"id":1,"method":"textDocument/codeAction","params":{"textDocument":{"uri":"file:///x"}}})", 1,
         0},
        {R"({"id":1,"method":"textDocument/diagnostic","params":{"textDocument":{}}})", 1, -32602},
        {R"({"id":1,"method":"textDocument/diagnostic","params":{"textDocument":{"uri":"x"},"previousResultId":5}})",
         1, 0},
        {R"({"id":1,"method":"workspace/diagnostic","params":{"previousResultIds":[{"uri":1}]}})", 1, -32602},
        {R"({"id":1,"method":"workspace/diagnostic"})", 1, 0},
        {R"({"id":1,"method":"workspace/executeCommand","params":{"command":"x"}})", 1, -32600},
        {R"({"id":1,"method":"workspace/executeCommand","params":{"command":"x","arguments":[5]}})", 1,
         -32602},
        {R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///a.php"}}})", {}, 2},
        {R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///a.php","text":"","languageId":1}}})",
         {},
         2},
        {R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///a.php","text":"","version":"1"}}})",
         {},
         2},
        {R"({"method":"textDocument/didChange","params":{"textDocument":{"uri":"file:///a.php"},"contentChanges":[{"text":"x"}]}})",
         {},
         1},
        {R"({"method":"textDocument/didClose","params":{"textDocument":{"uri":"file:///a.php"}}})", {}, 1},
        {R"({"method":"textDocument/didSave","params":{}})", {}, 2},
        {R"({"method":"$/cancelRequest","params":{"id":3}})", {}, 1},
        {R"({"method":"$/cancelRequest"})", {}, 2},
        {R"({"method":"workspace/didChangeConfiguration"})", {}, 1},
        {R"({"method":"workspace/didChangeConfiguration","params":{"settings":{"codeAnalyzer":{"delay":1e300,"checkProject":5,"configuration":{}}}}})",
         {},
         1},
        {R"({"method":"workspace/didChangeWorkspaceFolders","params":{"event":{"added":[{}]}}})", {}, 2},
        {R"({"method":"workspace/didChangeWatchedFiles","params":{"changes":[{"uri":"file:///a.php"}]}})",
         {},
         2},
        {R"({"method":"workspace/didChangeWatchedFiles","params":{"changes":[]}})", {}, 1},
        {R"({"method":"$/setTrace","params":{"value":"verbose"}})", {}, 1},
        {R"({"id":)" + pi + R"(,"method":"shutdown"})", {}, -32700},
    };
    const std::vector<SCase> after = {
        {R"({"id":1,"method":"shutdown"})", 1, 0},
        {R"({"id":2,"method":"shutdown"})", 2, -32600},
        {R"({"id":3,"method":"workspace/diagnostic"})", 3, -32600},
        {R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///a.php","text":""}}})",
         {},
         1},
    };
    for (const auto& cases : {before, running, after}) {
        for (const auto& [body, id, code] : cases) {
            SCOPED_TRACE(body.substr(0, 200));
            const std::vector<json> answers = Send(body);
            if (code == 1) {
                EXPECT_THAT(answers, IsEmpty());
                continue;
            }
            ASSERT_EQ(answers.size(), 1u);
            const json& answer = answers.front();
            if (code == 2) {
                EXPECT_EQ(answer.value("method", ""), "window/logMessage");
                continue;
            }
            EXPECT_EQ(answer["id"], id);
            EXPECT_EQ(answer.contains("result"), code == 0);
            EXPECT_EQ(answer.contains("error") ? answer["error"]["code"].get<int>() : 0, code) << answer;
        }
    }
    EXPECT_EQ(m_server->ExitStatus(), 0);
    EXPECT_FALSE(m_ended);
    Send(std::string(R"({"method":"exit"})"));
    EXPECT_TRUE(m_ended);
}

TEST_F(Server, EditsGoWhereTheySayInEveryEncoding)
{
    struct SCase
    {
        const char* encoding;
        std::vector<int> columns; ///< of each character of the line "é€😀b", and of its end
    };
    const SCase cases[] = {
        {"utf-8", {0, 2, 5, 9, 10}}, {"utf-16", {0, 1, 2, 4, 5}}, {"utf-32", {0, 1, 2, 3, 4}}};
    for (const SCase& test : cases) {
        Start();
        Initialize({{"general", {{"positionEncodings", {"x", 7, test.encoding}}}}});
        EXPECT_EQ(m_sent.at(0)["result"]["capabilities"]["positionEncoding"], test.encoding);
        int version = 1;
        for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
            const std::string uri = "file:///e" + std::to_string(version) + ".php";
            Open(uri, std::string("<?php ") + lineEnd + "é€😀b" + lineEnd + "$a = = 1;");
            // Each character is taken out from behind, an odd one put in: at the end "$b $b" is left.
            json changes = json::array();
            for (std::size_t i = test.columns.size() - 1; i-- > 0;)
                changes.push_back({{"text", i == 0 ? "$b  $b;" : ""},
                                   {"range",
                                    {{"start", {{"line", 1}, {"character", test.columns[i]}}},
                                     {"end", {{"line", 1}, {"character", test.columns[i + 1]}}}}}});
            changes.push_back(
                {{"text", ""},
                 {"range",
                  {{"start", {{"line", 2}, {"character", 4}}}, {"end", {{"line", 2}, {"character", 6}}}}}});
            Change(uri, ++version, changes);
            EXPECT_THAT(Await(uri, version), ::testing::ElementsAre("1:4-1:6 1035")) << test.encoding;
        }
    }
}

TEST_F(Server, TheTextStaysWhatTheEditorHas)
{
    Initialize();
    const auto range = [](json line, json character, json endLine, json endCharacter) {
        return json{{"start", {{"line", line}, {"character", character}}},
                    {"end", {{"line", endLine}, {"character", endCharacter}}}};
    };
    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    struct SCase
    {
        json changes;
        std::vector<std::string> found;
    };
    const SCase cases[] = {
        {{{{"text", Wrong}}}, {Found}},
        {{{{"text", "x"}}, {{"text", Wrong}, {"range", nullptr}}}, {Found}},
        {{{{"text", Wrong}}, {{"text", "\n"}, {"range", range(0, 99, 1, 0)}}}, {Found}},
        {{{{"text", Wrong}}, {{"text", "f(1;"}, {"range", range(huge, huge, huge, huge)}}},
         {Found, "3:2-3:3 1002"}},
        {{{{"text", Wrong}}, {{"text", ""}, {"range", range(least, least, least, 5)}}}, {Found}},
        // An end before its start takes nothing.
        {{{{"text", Wrong}}, {{"text", ""}, {"range", range(2, 5, 0, 0)}}}, {Found}},
        // What comes before a change that makes no sense has been made.
        {{{{"text", Wrong}}, {{"text", "x"}, {"range", range(1.5, 0, 1, 0)}}, {{"text", "<?php"}}}, {Found}},
        {{{{"text", Wrong}}, {{"text", 5}}}, {Found}},
        {{{{"text", Wrong}}, {{"range", range(0, 0, 9, 0)}}}, {Found}},
        {{{{"text", "\xEF\xBB\xBF" + Wrong}}}, {Found}},
        {{{{"text", Wrong + "$c = 3;" + std::string("\0", 1) + "f(1;"}}}, {Found, "3:7-3:8 1056"}},
        {json::array(), {Found, "3:7-3:8 1056"}},
    };
    const std::string uri = "untitled:Untitled-1";
    Open(uri, "<?php\n");
    int version = 1;
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.changes.dump().substr(0, 200));
        Change(uri, ++version, test.changes);
        EXPECT_EQ(Await(uri, version), test.found);
    }
    // Opened twice, closed twice.
    Open(uri, "<?php\n$c $c;\n");
    EXPECT_THAT(Await(uri, 1), ::testing::ElementsAre("1:3-1:5 1035"));
    for (int i = 0; i < 2; ++i)
        Notify("textDocument/didClose", {{"textDocument", {{"uri", uri}}}});
    EXPECT_EQ(m_sent.back()["params"], (json{{"uri", uri}, {"diagnostics", json::array()}}));
}

TEST_F(Server, ADocumentNeedNotBeAFile)
{
    Initialize();
    for (const std::string uri :
         {"vscode-vfs://github/x/y.php", "git:/a/../../b.php?HEAD", "untitled:a//b"}) {
        Open(uri, "<?php\n$c $c;\n");
        EXPECT_THAT(Await(uri, 1), ::testing::ElementsAre("1:3-1:5 1035")) << uri;
        Notify("textDocument/didClose", {{"textDocument", {{"uri", uri}}}});
        EXPECT_EQ(m_sent.back()["params"], (json{{"uri", uri}, {"diagnostics", json::array()}}));
    }
}

TEST_F(Server, HalvesOfCharactersDoNoHarm)
{
    Initialize();
    const std::string uri = "file:///a.php";
    struct SCase
    {
        const char* text;
        int column;
    };
    int version = 1;
    Open(uri, "");
    for (const auto& [text, column] :
         {SCase{R"('\ud800')", 3}, SCase{R"('\udc00\ud800')", 4}, SCase{R"('\ud83d\ude00')", 4},
          SCase{R"('\\ud800')", 8}, SCase{R"('\\\ud83d\ude00')", 5}, SCase{R"('\ud800\\\\')", 5}}) {
        Send(
            R"({"method":"textDocument/didChange","params":{"textDocument":{"uri":"file:///a.php","version":)" +
            std::to_string(++version) + R"(},"contentChanges":[{"text":"<?php\n)" + text + R"( $a;"}]}})");
        const std::string at = std::to_string(column + 1);
        EXPECT_THAT(Await(uri, version),
                    ::testing::ElementsAre("1:" + at + "-1:" + std::to_string(column + 3) + " 1012"))
            << text;
    }
}

TEST_F(Server, AMarkedFileGetsFixesForItsFirstFindings)
{
    Initialize();
    const std::string uri = "file:///a.php";
    std::string text = "<?php ?>\n";
    for (int i = 0; i < 5000; ++i)
        text += "<strng></strng>\n";
    Open(uri, text);
    EXPECT_EQ(Await(uri, 1).size(), 5000u);
    const json position = {{"line", 0}, {"character", 0}};
    const std::vector<json> answers =
        Send(json{{"id", 1},
                  {"method", "textDocument/codeAction"},
                  {"params",
                   {{"textDocument", {{"uri", uri}}},
                    {"context", {{"diagnostics", json::array()}}},
                    {"range", {{"start", position}, {"end", {{"line", 9999}, {"character", 0}}}}}}}});
    ASSERT_EQ(answers.size(), 1u);
    const json& actions = answers[0]["result"];
    EXPECT_GT(actions.size(), 100u);
    EXPECT_LT(actions.size(), 1000u);
    EXPECT_EQ(actions[0]["diagnostics"][0]["range"]["start"]["line"], 1);
}

TEST_F(Server, ADiagnosticSaysWhatAnEditorCanShow)
{
    Initialize();
    Open("file:///a.php", "<?php\n'\xF0\x9F\x98\x80' . f(1;\n?><strng>");
    Await("file:///a.php", 1);
    const json found = m_sent.back()["params"]["diagnostics"];
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]["source"], "code-analyzer");
    EXPECT_EQ(found[0]["severity"], 1);
    EXPECT_THAT(found[0]["codeDescription"]["href"].get<std::string>(), HasSubstr("file:///errors.md"));
    const json& related = found[0]["relatedInformation"][0];
    EXPECT_EQ(related["location"]["uri"], "file:///a.php");
    EXPECT_EQ(related["location"]["range"]["start"], (json{{"line", 1}, {"character", 8}}));
    EXPECT_THAT(found[1]["message"].get<std::string>(), HasSubstr(" 'strng', did you mean 'strong'?"));
}

// A text whose check ends with a fault is not clean: what was found before stays.
TEST_F(Server, AFailedCheckLeavesWhatWasKnown)
{
    const auto parser = boost::make_shared<Tests::CGatedParser>(m_host.application.Parser());
    m_host.application.AddComponent(parser);
    for (const bool pulls : {false, true}) {
        Start();
        Initialize(pulls ? json{{"textDocument", {{"diagnostic", json::object()}}}} : json::object());
        const std::string uri = pulls ? "file:///b.php" : "file:///a.php";
        Open(uri, Wrong);
        const auto pull = [&](int id) {
            m_server->Receive(json{{"id", id},
                                   {"method", "textDocument/diagnostic"},
                                   {"params", {{"textDocument", {{"uri", uri}}}}}}
                                  .dump());
            for (const QDeadlineTimer end(30000); !end.hasExpired();) {
                for (const json& message : m_sent)
                    if (message.value("id", -1) == id)
                        return message;
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
            }
            return json();
        };
        EXPECT_EQ(pulls ? Brief(pull(1)["result"]["items"]) : Await(uri, 1), std::vector<std::string>{Found});
        parser->Gate().FailCheck(1);
        m_sent.clear();
        Change(uri, 2, {{{"text", "<?php\n"}}});
        if (pulls) {
            EXPECT_EQ(pull(2)["error"]["code"], -32803);
        }
        for (const QDeadlineTimer end(30000); Of(m_sent, "window/logMessage").empty() && !end.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        ASSERT_EQ(Of(m_sent, "window/logMessage").size(), 1u);
        EXPECT_EQ(Of(m_sent, "window/logMessage")[0]["message"],
                  "the check of " + uri.substr(7) + " failed: a check that fails");
        if (pulls) {
            EXPECT_EQ(pull(3)["error"]["code"], -32803) << "asked for afterwards";
        }
        EXPECT_THAT(Of(m_sent, "textDocument/publishDiagnostics"), IsEmpty());
        Change(uri, 3, {{{"text", "<?php\n"}}});
        EXPECT_THAT(pulls ? Brief(pull(4)["result"]["items"]) : Await(uri, 3), IsEmpty());
    }
}

} // namespace
