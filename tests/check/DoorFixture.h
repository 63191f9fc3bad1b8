#pragma once

#include "CodeAnalyzerCheck.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

/// A session of the C interface, and what it hands over.
class CDoor : public ::testing::Test
{
protected:
    struct SFound
    {
        code_analyzer_status status = CODE_ANALYZER_FAILED;
        std::vector<std::string> findings; ///< "LINE:COLUMN-LINE:COLUMN CODE", from 0
        std::vector<std::string> bytes;    ///< what the offsets cut out of the text
        std::vector<std::string> fixed;    ///< the text after the first fix that mends; empty: none does
        std::vector<std::string> messages;
    };

    ~CDoor() override { code_analyzer_close(m_session); }

    code_analyzer_session* Open(const code_analyzer_settings& settings = CODE_ANALYZER_SETTINGS_INIT)
    {
        code_analyzer_close(m_session);
        EXPECT_EQ(code_analyzer_open(&settings, &m_session), CODE_ANALYZER_DONE)
            << code_analyzer_error(nullptr);
        return m_session;
    }
    SFound Check(std::string_view text, const char* path = "/none/a.php")
    {
        SFound found;
        STaker taker{text, &found};
        found.status = code_analyzer_check_text(m_session ? m_session : Open(), path, text.data(),
                                                text.size(), &CDoor::Take, &taker);
        return found;
    }
    SFound CheckFile(const std::string& path, std::string_view bytes)
    {
        SFound found;
        STaker taker{bytes, &found};
        found.status =
            code_analyzer_check_file(m_session ? m_session : Open(), path.c_str(), &CDoor::Take, &taker);
        return found;
    }
    static std::string Show(const code_analyzer_span& span)
    {
        const auto point = [](const code_analyzer_position& p) {
            return std::to_string(p.line) + ':' + std::to_string(p.column);
        };
        return point(span.start) + '-' + point(span.end);
    }

    code_analyzer_session* m_session = nullptr;

private:
    struct STaker
    {
        std::string_view text;
        SFound* found;
    };

    static int Take(const code_analyzer_finding* finding, void* data)
    {
        const auto& [text, found] = *static_cast<STaker*>(data);
        const code_analyzer_span& span = finding->span;
        found->findings.push_back(Show(span) + ' ' + std::to_string(finding->code));
        found->messages.emplace_back(finding->message);
        found->bytes.emplace_back(span.start.offset == CODE_ANALYZER_NO_OFFSET
                                      ? "no offset"
                                      : text.substr(span.start.offset, span.end.offset - span.start.offset));
        std::string fixed;
        for (std::size_t i = 0; i < finding->fix_count && fixed.empty(); ++i)
            if (finding->fixes[i].proof == CODE_ANALYZER_MENDS)
                fixed = Edited(text, finding->fixes[i]);
        found->fixed.push_back(fixed);
        return 0;
    }
    /// Of fixes with one edit.
    static std::string Edited(std::string_view text, const code_analyzer_fix& fix)
    {
        EXPECT_EQ(fix.edit_count, 1U);
        const code_analyzer_edit& edit = fix.edits[0];
        return std::string(text.substr(0, edit.span.start.offset)) + edit.text +
               std::string(text.substr(edit.span.end.offset));
    }
};
