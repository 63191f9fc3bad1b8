// 10,000 texts of anything through the C interface: what comes out lies in the text, and no text changes what
// is found in the next one.

#include "DoorFixture.h"
#include "RandomText.h"

#include <algorithm>

namespace {

/// What has to hold of a finding of a text.
struct SJudge
{
    std::string_view text;
    std::size_t last = 0;
    std::size_t count = 0;

    void Judge(const code_analyzer_span& span)
    {
        ASSERT_LE(span.start.offset, span.end.offset);
        ASSERT_LE(span.end.offset, text.size());
        for (const code_analyzer_position& place : {span.start, span.end}) {
            const std::string_view before = text.substr(0, place.offset);
            std::size_t lines = 0;
            for (std::size_t i = 0; i < before.size(); ++i)
                lines += before[i] == '\n' || (before[i] == '\r' && text.substr(i, 2) != "\r\n");
            ASSERT_EQ(lines, place.line);
        }
    }
    static int Take(const code_analyzer_finding* finding, void* data)
    {
        auto* judge = static_cast<SJudge*>(data);
        judge->Judge(finding->span);
        EXPECT_GE(finding->span.start.offset, judge->last) << "in the order of the text";
        judge->last = finding->span.start.offset;
        ++judge->count;
        EXPECT_STRNE(finding->message, "");
        for (std::size_t i = 0; i < finding->related_count; ++i)
            judge->Judge(finding->related[i].span);
        for (std::size_t i = 0; i < finding->fix_count; ++i)
            for (std::size_t e = 0; e < finding->fixes[i].edit_count; ++e)
                judge->Judge(finding->fixes[i].edits[e].span);
        return 0;
    }
};

} // namespace

TEST_F(CDoor, LivesThroughTenThousandTexts)
{
    std::mt19937 random(25);
    code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
    settings.fixes = CODE_ANALYZER_FIXES_LIKELY;
    Open(settings);
    const char* const paths[] = {"/none/a.php", "/none/a.html", "/none/a.css"};
    std::size_t found = 0;
    for (int i = 0; i < 10000; ++i) {
        const std::string text = RandomText(random);
        const char* path = paths[i % 8 < 6 ? 0 : i % 8 - 5];
        SCOPED_TRACE(path + (": " + text));
        SJudge judge{text};
        const auto status =
            code_analyzer_check_text(m_session, path, text.data(), text.size(), &SJudge::Take, &judge);
        ASSERT_EQ(status, CODE_ANALYZER_DONE) << code_analyzer_error(m_session);
        found += judge.count;
        if (i % 500 == 0) {
            const SFound here = Check(text, path);
            code_analyzer_session* used = std::exchange(m_session, nullptr);
            Open(settings);
            EXPECT_EQ(Check(text, path).findings, here.findings) << "a session without a past";
            code_analyzer_close(std::exchange(m_session, used));
        }
        if (HasFailure())
            return;
    }
    EXPECT_GT(found, 10000U);
}
