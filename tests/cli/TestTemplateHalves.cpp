// Parts of documents that other files go on with: only the check of a whole project knows both.

#include "CliFixture.h"

#include <map>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class TemplateHalves : public CCliTest
{
protected:
    using TFiles = std::map<std::wstring, std::string>;

    nlohmann::json CheckProject(const TFiles& files)
    {
        const std::wstring project = L"p" + std::to_wstring(++m_projects);
        for (const auto& [name, text] : files)
            m_folder.Write(project + L'/' + name, text);
        return nlohmann::json::parse(
            Run({"project", "--format", "json", QString::fromStdWString(project)}).out);
    }
    std::string FoundIn(const TFiles& files)
    {
        std::string found;
        for (const auto& record : CheckProject(files)) {
            const std::string path = record["file"];
            found += (found.empty() ? "" : " ") + path.substr(path.rfind('/') + 1) + ':' +
                     std::to_string(record["code"].get<int>());
        }
        return found;
    }

private:
    int m_projects = 0;
};

} // namespace

TEST_F(TemplateHalves, AreFoundWhereNothingInTheProjectIsThePartner)
{
    const std::string header = "<section><?php f();";
    const struct
    {
        TFiles files;
        std::string found;
    } cases[] = {
        {{{L"a.php", header}, {L"b.php", "<?php f() ?></section>"}}, ""},
        {{{L"a.php", header}}, "a.php:2117"},
        {{{L"a.php", header}, {L"b.php", header}}, "a.php:2117 b.php:2117"},
        {{{L"a.php", "<?php f() ?></section>"}, {L"b.php", "<p>x</p>"}}, "a.php:2118"},
        // One that closes first and opens again is its own partner as little as another file's.
        {{{L"a.php", "</section>x<section>"}}, "a.php:2118 a.php:2117"},
        {{{L"a.php", "</section>x<section>"}, {L"b.php", header}, {L"c.php", "</section>"}}, ""},
        // What may print the partner: a function, a string, a branch that cannot be followed.
        {{{L"a.php", header}, {L"b.php", "<?php function end_page() { echo '</section>'; }"}}, "b.php:2116"},
        {{{L"a.php", header}, {L"b.php", "<?php return ['after' => '</section>'];"}}, ""},
        {{{L"a.php", header}, {L"b.php", "<?php if ($a): ?>x</section><?php endif; f(); ?>"}}, ""},
        // A whole document goes on in no other file, and what may be left out is no half.
        {{{L"a.php", "<html><body><p><?php f() ?></body></html>"}, {L"b.php", "<ul><li>x"}}, "b.php:2117"},
    };
    for (const auto& [files, found] : cases)
        EXPECT_EQ(FoundIn(files), found) << files.begin()->second;
}

TEST_F(TemplateHalves, NameWhatComesNearest)
{
    const auto records = CheckProject({{L"a/header.php", "<section><?php f();"},
                                       {L"a/footer.php", "<?php f() ?></article>"},
                                       {L"b/footer.php", "<?php f() ?></aside>"}});
    ASSERT_EQ(records.size(), 3U);
    EXPECT_THAT(records[1]["message"], HasSubstr("'<section>' is left open"));
    EXPECT_THAT(records[1]["message"], HasSubstr("'</article>' in 'footer.php'"));
}

// One file alone cannot tell, so that nothing is said.
TEST_F(TemplateHalves, AreNoMatterForOneFile)
{
    m_folder.Write(L"a.php", "<section><?php f();");
    EXPECT_THAT(Brief(RunJson({"a.php"}, 0)), ElementsAre());
}
