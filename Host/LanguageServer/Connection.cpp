#include "LanguageServer/Connection.h"

#include <charconv>
#include <exception>

namespace Kesh::LanguageServer {

namespace {

bool IsId(const json& id)
{
    return id.is_string() || id.is_number_integer();
}

/// The four digits behind "\\u" at a place; -1: there are none.
int UnitAt(std::string_view text, std::size_t at)
{
    int unit = 0;
    if (text.substr(at, 2) != "\\u" || at + 6 > text.size())
        return -1;
    const char* end = text.data() + at + 6;
    return std::from_chars(text.data() + at + 2, end, unit, 16).ptr == end ? unit : -1;
}

/// Editors whose strings are UTF-16 can hold halves of a character, and write them as escapes that JSON does
/// not know; each becomes the replacement character.
std::string WithoutHalves(std::string_view text)
{
    std::string whole(text);
    for (std::size_t at = whole.find('\\'); at != std::string::npos; at = whole.find('\\', at)) {
        const int unit = UnitAt(whole, at);
        const int next = unit < 0xD800 || unit > 0xDBFF ? -1 : UnitAt(whole, at + 6);
        if (next >= 0xDC00 && next <= 0xDFFF) {
            at += 12;
            continue;
        }
        if (unit >= 0xD800 && unit <= 0xDFFF)
            whole.replace(at + 2, 4, "FFFD");
        at += unit < 0 ? 2 : 6;
    }
    return whole;
}

json Parse(std::string_view body)
{
    try {
        return json::parse(body);
    } catch (const json::parse_error&) {
        if (const std::string whole = WithoutHalves(body); whole != body)
            return json::parse(whole);
        throw;
    }
}

std::string Text(const json& message)
{
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Calls something and answers what went wrong; code 0: nothing.
template <class TCall> SResponseError Try(TCall&& call)
{
    try {
        call();
        return {0, {}};
    } catch (const SResponseError& error) {
        return error;
    } catch (const json::exception& fault) {
        return {InvalidParams, fault.what()};
    } catch (const std::exception& fault) {
        return {InternalError, fault.what()};
    } catch (...) {
        return {InternalError, "unknown fault"};
    }
}

} // namespace

void CConnection::Receive(std::string_view body)
{
    json message;
    try {
        message = Parse(body);
    } catch (const json::exception& fault) {
        ReceiveFault(fault.what());
        return;
    }
    if (!message.is_object()) {
        RespondError(nullptr, InvalidRequest, "a message is an object");
        return;
    }
    Dispatch(message);
}

void CConnection::Dispatch(const json& message)
{
    const auto method = message.find("method");
    const auto id = message.find("id");
    if (method == message.end()) {
        TakeResponse(message);
        return;
    }
    static const json none = json::object();
    const auto given = message.find("params");
    const json& params = given == message.end() || given->is_null() ? none : *given;
    if (!method->is_string()) {
        RespondError(id != message.end() && IsId(*id) ? *id : json(), InvalidRequest, "a method is a string");
    } else if (id == message.end()) {
        const auto handler = m_notifications.find(method->get<std::string>());
        const SResponseError error = Try([&] {
            if (m_gate)
                m_gate(*method, false);
            if (handler != m_notifications.end())
                handler->second(params);
        });
        // A notification has no answer; what went wrong is for whoever reads the log.
        if (error.code == InternalError || error.code == InvalidParams)
            Notify("window/logMessage",
                   {{"type", 1}, {"message", method->get<std::string>() + ": " + error.message}});
    } else if (!IsId(*id)) {
        RespondError(nullptr, InvalidRequest, "an id is a string or a whole number");
    } else {
        DispatchRequest(*method, params, *id);
    }
}

void CConnection::DispatchRequest(const std::string& method, const json& params, const json& id)
{
    json result;
    bool deferred = false;
    const SResponseError error = Try([&] {
        if (m_gate)
            m_gate(method, true);
        if (const auto later = m_deferred.find(method); later != m_deferred.end()) {
            deferred = true;
            later->second(params, id);
            return;
        }
        const auto handler = m_requests.find(method);
        if (handler == m_requests.end())
            throw SResponseError{MethodNotFound, "unknown method " + method};
        result = handler->second(params);
    });
    if (error.code)
        RespondError(id, error.code, error.message);
    else if (!deferred)
        Respond(id, result);
}

void CConnection::TakeResponse(const json& message)
{
    const auto id = message.find("id");
    if (id == message.end() || (!message.contains("result") && !message.contains("error"))) {
        RespondError(nullptr, InvalidRequest, "neither a method nor a response");
        return;
    }
    const auto awaited = id->is_number_integer() ? m_awaited.find(id->get<std::int64_t>()) : m_awaited.end();
    if (awaited == m_awaited.end())
        return;
    const TResult onResult = std::move(awaited->second);
    m_awaited.erase(awaited);
    if (onResult)
        Try([&] { onResult(message.value("result", json())); });
}

void CConnection::Answer(const json& id, const std::function<json()>& call)
{
    json result;
    const SResponseError error = Try([&] { result = call(); });
    if (error.code)
        RespondError(id, error.code, error.message);
    else
        Respond(id, result);
}

void CConnection::Respond(const json& id, const json& result)
{
    Send({{"jsonrpc", "2.0"}, {"id", id}, {"result", result}});
}

void CConnection::RespondError(const json& id, int code, const std::string& message)
{
    Send({{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}});
}

void CConnection::Notify(const std::string& method, const json& params)
{
    Send({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
}

void CConnection::NotifyWith(const std::string& method, const json& params, const std::string& key,
                             const std::string& value)
{
    // Sorted by name, the parameters stand last.
    std::string body = Text({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
    body.insert(body.size() - 2, ",\"" + key + "\":" + value);
    m_sink(body);
}

void CConnection::Request(const std::string& method, const json& params, TResult onResult)
{
    const std::int64_t id = m_nextId++;
    m_awaited[id] = std::move(onResult);
    Send({{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}});
}

void CConnection::Send(const json& message)
{
    m_sink(Text(message));
}

} // namespace Kesh::LanguageServer
