// The C functions: what they are given is looked at, and nothing is thrown out of them.

#include "CodeAnalyzerCheck.h"

#include "Base/Exception.h"
#include "Session.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <string>

using Kesh::CheckLibrary::CSession;

struct code_analyzer_session : CSession
{
    using CSession::CSession;
};

namespace {

thread_local std::string t_openError;

/// What the caller's version of the structure has; the rest as it is by default.
bool Take(const code_analyzer_settings* given, code_analyzer_settings& settings)
{
    settings = CODE_ANALYZER_SETTINGS_INIT;
    if (!given)
        return true;
    // A later version's has more at its end.
    if (given->size < offsetof(code_analyzer_settings, configuration) || given->size > 65536)
        return false;
    std::memcpy(&settings, given, std::min(given->size, sizeof settings));
    return true;
}

/// Runs a call of a session; what it throws becomes a status.
template <class TCall> code_analyzer_status Guarded(code_analyzer_session& session, const TCall& call)
{
    try {
        return call();
    } catch (const std::exception& fault) {
        return session.Refuse(CODE_ANALYZER_FAILED, fault.what());
    } catch (...) {
        return session.Refuse(CODE_ANALYZER_FAILED, "an unknown fault");
    }
}

} // namespace

const char* code_analyzer_version()
{
    return CODE_ANALYZER_VERSION;
}

code_analyzer_status code_analyzer_open(const code_analyzer_settings* settings,
                                        code_analyzer_session** session)
{
    code_analyzer_status fault = CODE_ANALYZER_BAD_CALL;
    try {
        t_openError = "there is no place for the session";
        if (!session)
            return fault;
        *session = nullptr;
        t_openError = "the size of the settings is none";
        code_analyzer_settings taken;
        if (!Take(settings, taken))
            return fault;
        fault = CODE_ANALYZER_BAD_SETTINGS;
        *session = new code_analyzer_session(taken);
        t_openError.clear();
        return CODE_ANALYZER_DONE;
    } catch (const Kesh::Base::CWorkError& problem) {
        t_openError = problem.what();
        return fault;
    } catch (const std::exception& problem) {
        t_openError = problem.what();
        return CODE_ANALYZER_FAILED;
    } catch (...) {
        t_openError = "an unknown fault";
        return CODE_ANALYZER_FAILED;
    }
}

code_analyzer_status code_analyzer_check_text(code_analyzer_session* session, const char* path,
                                              const char* text, size_t length,
                                              code_analyzer_callback callback, void* data)
{
    if (!session)
        return CODE_ANALYZER_BAD_CALL;
    return Guarded(*session, [&] {
        if (!path || !*path || (!text && length != 0))
            return session->Refuse(CODE_ANALYZER_BAD_CALL, !text ? "there is no text" : "there is no path");
        return session->CheckText(path, {text ? text : "", length}, {callback, data});
    });
}

code_analyzer_status code_analyzer_check_file(code_analyzer_session* session, const char* path,
                                              code_analyzer_callback callback, void* data)
{
    if (!session)
        return CODE_ANALYZER_BAD_CALL;
    return Guarded(*session, [&] {
        if (!path || !*path)
            return session->Refuse(CODE_ANALYZER_BAD_CALL, "there is no path");
        return session->CheckFile(path, {callback, data});
    });
}

void code_analyzer_cancel(code_analyzer_session* session)
{
    if (session)
        session->Cancel();
}

void code_analyzer_reload(code_analyzer_session* session)
{
    if (session)
        Guarded(*session, [&] {
            session->Reload();
            return CODE_ANALYZER_DONE;
        });
}

const char* code_analyzer_error(const code_analyzer_session* session)
{
    return session ? session->Error() : t_openError.c_str();
}

void code_analyzer_close(code_analyzer_session* session)
{
    delete session;
}
