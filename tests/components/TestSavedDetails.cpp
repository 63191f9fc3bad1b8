// What is known of errors beyond their records, as it is kept beside them.
#include "Components/CASavedDetails.h"
#include "ProjectFixture.h"

#include <set>

namespace Kesh::CodeAnalyzer {

namespace {

SCAError At(std::int64_t x, std::int32_t code)
{
    return {{{x, 0}, {x + 1, 0}}, code, 1};
}

const SDetails Full = {{{"expected", L";", SArgument::Source},
                        {"found", L"\x1F600 \"a\\\n\x7F\0'", SArgument::Plain},
                        {"what", L"tag", SArgument::Key}},
                       {{{{0, 1}, {4, 2}}, "It was opened here"}, {{{3, 4}, {3, 4}}, ""}},
                       {}};
const SDetails Named = {{{"name", L"foo", SArgument::Source}}, {}, {}};

TDetails Shared(std::vector<SDetails> details)
{
    return std::make_shared<const std::vector<SDetails>>(std::move(details));
}

const std::vector<SSavedFileErrors> Saved = {
    {L"/p/A.php", {At(1, 102), At(2, 101), At(2, 101), At(3, 302)}, Shared({Full, Named, {}, Full})},
    {L"/p/plain.php", {At(1, 102)}},
    {L"/p/b 'c\xE4.php", {At(2147483648, 9)}, Shared({Named})},
};

/// What of a text's details comes to the records; a record that has none counts as one with empty ones.
std::vector<SDetails> Read(const std::wstring& text, std::vector<SSavedFileErrors> files)
{
    std::vector<SDetails> all;
    for (SSavedFileErrors& file : files)
        file.details.reset();
    ReadSavedDetails(text, files);
    for (const SSavedFileErrors& file : files)
        for (std::size_t i = 0; i < file.errors.size(); ++i)
            all.push_back(file.details ? file.details->at(i) : SDetails());
    return all;
}

TEST(SavedDetails, EachRecordFindsItsOwn)
{
    // But for the fixes, which only a check may offer.
    std::vector<SSavedFileErrors> saved = Saved;
    auto withFix = std::make_shared<std::vector<SDetails>>(*saved[0].details);
    withFix->front().fixes = {{EFix::Insert, {{{{5, 0}, {5, 0}}, L";"}}}};
    saved[0].details = withFix;
    const std::wstring text = WriteSavedDetails(saved);
    EXPECT_EQ(Read(text, Saved), (std::vector<SDetails>{Full, Named, {}, Full, {}, Named}));
    // As the other text cuts the numbers.
    EXPECT_EQ(Read(text, {{Saved[2].file, {{{{-2147483648, 0}, {-2147483647, 0}}, 9, 1}}}}),
              std::vector<SDetails>{Named});
    // Others have come, gone or moved.
    EXPECT_EQ(Read(text, {{L"/p/A.php", {At(0, 102), At(3, 302), At(1, 102), At(1, 101)}},
                          {L"/p/a.php", {At(1, 102)}},
                          {L"/p/new.php", {At(1, 102)}}}),
              (std::vector<SDetails>{{}, Full, Full, {}, {}, {}}));
}

TEST(SavedDetails, WhatIsNoSuchTextGivesNone)
{
    const std::string start = R"({"version":1,"files":[["/a.php",[{"record":[1,0,2,0,102,1],)";
    const std::string good = R"("arguments":[["name","foo",0]])";
    const struct
    {
        std::string text;
        bool isRead;
    } cases[] = {
        {start + good + "}]]]}", true},
        {start + good + R"(,"later":1}]],5,["/b.php"]]})", true},
        {start + good + "}]]]", false},
        {R"({"version":2)" + start.substr(12) + good + "}]]]}", false},
        {"", false},
        {"[]", false},
        {R"({"version":1,"files":[["/a.php",{}]]})", false},
        {start + R"("arguments":[["name","foo",3]]}]]]})", false},
        {start + good + R"(,"related":[[[0,0,1],"here"]]}]]]})", false},
        {start + good + R"(,"related":[[[0,1,1,0],"here"]]}]]]})", false},
        {start + good + R"(,"fixes":[[1,[[[0,0,0,0],"evil"]]]]}]]]})", true},
        {std::string(100000, '['), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Read(QString::fromStdString(c.text).toStdWString(), {{L"/a.php", {At(1, 102)}}})[0] ==
                      Named,
                  c.isRead)
            << c.text.substr(0, 200);
}

class SavedDetailsTest : public ProjectHandlerTest
{
protected:
    /// What is known of all errors of a file.
    std::vector<SDetails> DetailsOf(const std::wstring& file)
    {
        std::vector<SDetails> all;
        for (const SDiagnostic& diagnostic : m_host.Errors().GetDiagnostics(file))
            all.push_back(diagnostic.details);
        return all;
    }
};

// Beside the GUI thread and in it, for a host that has asked; the check leaves the file alone.
TEST_F(SavedDetailsTest, ComeBackWithTheProject)
{
    const std::wstring file = Write("page.html", 0);
    const struct
    {
        bool gradual;
        bool otherErrors;
        std::vector<SDetails> expected;
    } cases[] = {{false, false, {Full, {}, Named}},
                 {true, false, {Full, {}, Named}},
                 {false, true, {{}, Named}},
                 {true, true, {{}, Named}}};
    for (const auto& c : cases) {
        Tests::CTestHost host;
        host.Errors().SetDetailed(true);
        host.component->GetProjectCheck()->SetGradual(c.gradual);
        const auto settle = [&] {
            return QTest::qWaitFor(
                [&] {
                    return !host.application.Project().IsDataHeld() &&
                           !host.application.Threads().IsRunning();
                },
                20000);
        };
        host.application.OpenProject(m_folder.Path(), {file});
        ASSERT_TRUE(settle());
        host.Errors().AddErrorsMT(file, {At(1, 102), At(2, 102)}, Shared({Full, {}}));
        host.Errors().AddErrorsFormBar(file, {At(3, 302)}, Shared({Named}));
        host.application.Project().Close();
        ASSERT_TRUE(settle());
        EXPECT_TRUE(host.Errors().GetDiagnostics(file).empty());
        if (c.otherErrors)
            Save({{file, {At(7, 102), At(3, 302)}}});
        host.application.OpenProject(m_folder.Path(), {file});
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return host.Errors().GetDiagnostics(file).size() == c.expected.size(); }, 20000));
        std::vector<SDetails> details;
        for (const SDiagnostic& diagnostic : host.Errors().GetDiagnostics(file))
            details.push_back(diagnostic.details);
        EXPECT_EQ(details, c.expected) << c.gradual;
        host.Errors().RemoveErrors(file);
    }
}

// A check that fails leaves what was known.
TEST_F(SavedDetailsTest, StayWithErrorsThatAFailedCheckLeaves)
{
    m_host.Errors().AddErrorsMT(L"/a.php", {At(1, 102)}, Shared({Full}));
    m_host.Errors().RestoreErrors(L"/a.php", {At(1, 102)}, m_host.Errors().GetDetails(L"/a.php"));
    m_host.Errors().DeliverPosted();
    EXPECT_EQ(DetailsOf(L"/a.php"), std::vector<SDetails>{Full});
}

} // namespace

} // namespace Kesh::CodeAnalyzer
