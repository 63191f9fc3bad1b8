// Any stream of bytes where an editor's messages are expected: the server answers or passes over, and goes
// on. An input that begins with "L" is taken line by line for the bodies of messages, any other as it is.

#include "Application/HeadlessHost.h"
#include "Application/PluginLoader.h"
#include "LanguageServer/Framing.h"
#include "LanguageServer/Server.h"
#include "Require.h"

#include <QApplication>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace Kesh;
using LanguageServer::json;

namespace {

/// One for all inputs.
struct SHost : Host::SHeadlessHost
{
    SHost() { frame.Build(); }

    Host::CPlugin plugin{application, Host::CPlugin::Windowless};
};

SHost& TheHost()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QApplication application(count, arguments);
    static SHost host;
    return host;
}

/// Commands write settings files, and folders are searched, wherever an input says: neither is for a fuzzer.
void Receive(LanguageServer::CServer& server, std::string_view body)
{
    const json message = json::parse(body, nullptr, false);
    const json method = message.is_object() ? message.value("method", json()) : json();
    if (method != "workspace/executeCommand" && method != "workspace/didChangeWorkspaceFolders")
        server.Receive(body);
}

void Initialize(LanguageServer::CServer& server)
{
    server.Receive(R"({"id":1,"method":"initialize","params":{"capabilities":{}}})");
    server.Receive(R"({"method":"initialized"})");
    server.Receive(R"({"method":"textDocument/didOpen","params":{"textDocument":)"
                   R"({"uri":"file:///f.php","languageId":"php","version":1,"text":"<?php\n$a = 1\n$b;"}}})");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SHost& host = TheHost();
    std::string_view input(reinterpret_cast<const char*>(data), size);
    LanguageServer::CServer server({host.application,
                                    host.plugin,
                                    [](const std::string& body) { Require(!json::parse(body).is_null()); },
                                    [] {},
                                    {},
                                    "0"});
    Initialize(server);
    host.application.Timers().SetDelayOverride(0);
    const auto run = [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 1); };
    if (input.starts_with('L')) {
        for (std::size_t begin = 1; begin < input.size();) {
            const std::size_t end = std::min(input.find('\n', begin), input.size());
            Receive(server, input.substr(begin, end - begin));
            run();
            begin = end + 1;
        }
    } else {
        LanguageServer::CMessageReader reader(1 << 16);
        for (std::size_t at = 0; at < input.size(); at += 7) {
            reader.Feed(input.substr(at, 7));
            while (const auto message = reader.Next()) {
                if (message->fault.empty())
                    Receive(server, message->body);
                else
                    server.ReceiveFault(message->fault);
            }
        }
    }
    run();
    return 0;
}
