// Any bytes through the C interface, with their fixes: what comes out lies in them; cancelling from a
// callback and stopping there end the call as they should.

#include "CodeAnalyzerCheck.h"
#include "Require.h"

#include <cstdint>
#include <string_view>

namespace {

struct STaker
{
    code_analyzer_session* session;
    std::size_t size;
    std::uint8_t choice;
    int taken = 0;

    void Judge(const code_analyzer_span& span) const
    {
        Require(span.start.offset <= span.end.offset && span.end.offset <= size);
    }
    static int Take(const code_analyzer_finding* finding, void* data)
    {
        auto* taker = static_cast<STaker*>(data);
        taker->Judge(finding->span);
        for (std::size_t i = 0; i < finding->related_count; ++i)
            taker->Judge(finding->related[i].span);
        for (std::size_t i = 0; i < finding->fix_count; ++i)
            for (std::size_t e = 0; e < finding->fixes[i].edit_count; ++e)
                taker->Judge(finding->fixes[i].edits[e].span);
        ++taker->taken;
        if (taker->choice == 1)
            code_analyzer_cancel(taker->session);
        return taker->choice == 2;
    }
};

code_analyzer_session* Session()
{
    code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
    settings.configuration = "";
    settings.fixes = CODE_ANALYZER_FIXES_PROVED;
    code_analyzer_session* session = nullptr;
    Require(code_analyzer_open(&settings, &session) == CODE_ANALYZER_DONE);
    return session;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static code_analyzer_session* const session = Session();
    if (size == 0)
        return 0;
    const std::uint8_t choice = data[0] % 4;
    constexpr const char* Paths[] = {"/none/a.php", "/none/a.html", "/none/a.css"};
    STaker taker{session, size - 1, choice};
    const code_analyzer_status status =
        code_analyzer_check_text(session, Paths[data[0] / 4 % 3], reinterpret_cast<const char*>(data + 1),
                                 size - 1, &STaker::Take, &taker);
    const bool ended = taker.taken > 0;
    Require(status == (choice == 1 && ended   ? CODE_ANALYZER_CANCELLED
                       : choice == 2 && ended ? CODE_ANALYZER_STOPPED
                                              : CODE_ANALYZER_DONE));
    return 0;
}
