#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace Kesh::LanguageServer {

using nlohmann::json;

/// The codes of error responses.
enum EResponseError : int {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestCancelled = -32800,
    RequestFailed = -32803,
};

/// Thrown by a handler: the request is answered with this error.
struct SResponseError
{
    int code;
    std::string message;
};

/// The JSON-RPC side of a server: tells messages apart, calls handlers, answers. Whatever a handler throws
/// ends that message only. One thread.
class CConnection
{
public:
    using TSink = std::function<void(const std::string& body)>;
    using TRequest = std::function<json(const json& params)>;
    /// Answers later, with Respond() or RespondError().
    using TDeferred = std::function<void(const json& params, const json& id)>;
    using TNotification = std::function<void(const json& params)>;
    /// Gets the result, or null when the client answered with an error.
    using TResult = std::function<void(const json& result)>;
    /// Asked before each message; may throw SResponseError.
    using TGate = std::function<void(const std::string& method, bool isRequest)>;

    explicit CConnection(TSink sink) : m_sink(std::move(sink)) {}

    void On(const std::string& method, TRequest handler) { m_requests[method] = std::move(handler); }
    void OnDeferred(const std::string& method, TDeferred handler) { m_deferred[method] = std::move(handler); }
    void OnNotification(const std::string& method, TNotification handler)
    {
        m_notifications[method] = std::move(handler);
    }
    void SetGate(TGate gate) { m_gate = std::move(gate); }

    void Receive(std::string_view body);
    /// Something came that is no message.
    void ReceiveFault(const std::string& what) { RespondError(nullptr, ParseError, what); }

    /// Responds with what `call` gives, or with what it throws.
    void Answer(const json& id, const std::function<json()>& call);
    void Respond(const json& id, const json& result);
    void RespondError(const json& id, int code, const std::string& message);
    void Notify(const std::string& method, const json& params);
    /// With one more member of the parameters, of which there are others, as JSON text.
    void NotifyWith(const std::string& method, const json& params, const std::string& key,
                    const std::string& value);
    void Request(const std::string& method, const json& params, TResult onResult = {});

private:
    void Dispatch(const json& message);
    void DispatchRequest(const std::string& method, const json& params, const json& id);
    void TakeResponse(const json& message);
    void Send(const json& message);

    TSink m_sink;
    TGate m_gate;
    std::map<std::string, TRequest> m_requests;
    std::map<std::string, TDeferred> m_deferred;
    std::map<std::string, TNotification> m_notifications;
    std::map<std::int64_t, TResult> m_awaited;
    std::int64_t m_nextId = 1;
};

} // namespace Kesh::LanguageServer
