// What a project says about its check: settings, comments that ignore, baseline, changes.

#include "CliFixture.h"
#include "Files/FileIO.h"

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

using TBrief = std::vector<std::string>;

const std::string Wrong = "<?php\n$a = 1;\n$b = = 2;\n";
const std::string Warned = "<?php\nif ($a);\n";

class Settings : public CCliTest
{
};

TEST_F(Settings, EachKeyDoesWhatItSays)
{
    m_folder.Write(L"a.php", Wrong);
    m_folder.Write(L"t/b.php", Warned);
    m_folder.Write(L"t/c.html", "<xy zoo='1'>a</xy><p zoo='1' boo='2'>b</p>\n");
    m_folder.Write(L"t/d.css", "xy { -own: 1; colr: red }\n");
    m_folder.Write(L"gen/e.php", Wrong);
    m_folder.Write(L"m.module", Wrong);
    struct SCase
    {
        const char* settings;
        TBrief found;
    };
    const std::string a = "./a.php:3 1025 error";
    const std::string b = "./t/b.php:2 901 warning";
    const TBrief c{"./t/c.html:1 2001 error", "./t/c.html:1 2002 error", "./t/c.html:1 2002 error"};
    const TBrief d{"./t/d.css:1 2501 error", "./t/d.css:1 2502 error", "./t/d.css:1 2502 error"};
    const std::string e = "./gen/e.php:3 1025 error";
    const SCase cases[] = {
        {"{}", {a, e, c[0], c[1], c[2], d[0], d[1], d[2], b}},
        {R"({"exclude": ["gen/", "*.html", "t/*.css"]})", {a, b}},
        {R"({"exclude": ["/gen", "./b.php", "*.html", "*.css"]})", {a, b}},
        {R"({"include": ["*.module", "gen"]})", {e, "./m.module:3 1025 error"}},
        {R"({"exclude": ["t"], "codes": {"1025": "warning"}})",
         {"./a.php:3 1025 warning", "./gen/e.php:3 1025 warning"}},
        {R"({"exclude": ["*.css", "*.html"], "codes": {"901": "error"},
             "overrides": [{"paths": ["gen"], "codes": {"1025": "off"}}]})",
         {a, "./t/b.php:2 901 error"}},
        {R"({"exclude": ["*.php"], "ownNames": {"tags": ["XY"], "attributes": ["zoo"], "properties": ["-own"]}})",
         {c[1], d[1]}},
        {R"({"exclude": ["*.php"], "ownNames": {"tags": ["X*"], "attributes": ["z*o"], "properties": ["-*", "colr*r"]}})",
         {c[1], d[1]}},
        {"// with comments\n{ /* here */ \"exclude\": [\"**/*.html\", \"**/*.css\", \"gen\", \"b.php\"] }",
         {a}},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.settings);
        m_folder.Write(L"code-analyzer.json", test.settings);
        TBrief found = Brief(RunJson({"."}, AnyExit));
        std::sort(found.begin(), found.end());
        TBrief expected = test.found;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(found, expected);
        const SResult project = Run({"project", "--format", "json", "."});
        EXPECT_EQ(project.out, Run({"check", "--format", "json", "."}).out);
        const auto summary = [this](const char* command) {
            const std::string text = Run({command, "."}).out;
            return text.substr(text.rfind('\n', text.size() - 2) + 1);
        };
        EXPECT_EQ(summary("project"), summary("check")) << "the number of files";
    }
}

TEST_F(Settings, AProjectIsReadAsItsFoldersAre)
{
    m_folder.Write(L"a.php", Wrong);
    m_folder.Write(L"binary.php", std::string("GIF\0\0", 5));
    m_folder.Write(L"old.php", Warned);
    m_folder.Write(L"code-analyzer.json", R"({"baseline": "b.json"})");
    m_folder.Write(L"b.json",
                   R"({"version": 1, "findings": [{"file": "old.php", "code": 901, "line": "if ($a);"},
                                                             {"file": "a.php", "code": 1, "line": "x"}]})");
    for (const char* command : {"check", "project"}) {
        SCOPED_TRACE(command);
        const SResult result = Run({command, "."});
        EXPECT_EQ(result.exit, 1);
        EXPECT_EQ(result.out, "./a.php:3:6: error: Unexpected operator '=' [1025]\n"
                              "1 error and 0 warnings in 1 of 2 files.\n");
        EXPECT_EQ(result.err, "code-analyzer: ./binary.php: skipped: a binary file\n"
                              "code-analyzer: a.php: gone from the baseline's findings: [1] x\n");
    }
}

TEST_F(Settings, PhpIsJudgedByTheVersionThatTheProjectIsFor)
{
    struct SCase
    {
        const char* settings;
        const char* composer;
        QStringList options;
        TBrief found;
    };
    const TBrief tooNew{"./a.php:2 1091 error"};
    const TBrief tooOld{"./a.php:3 1092 error"};
    const SCase cases[] = {
        {"", "", {}, {}},
        {"", "", {"--php-version", "7.4"}, tooNew},
        {"", "", {"--php-version", "8.2"}, tooOld},
        {R"({"phpVersion": "7.4"})", "", {}, tooNew},
        {R"({"phpVersion": "7.4"})", "", {"--php-version", "8.2"}, tooOld},
        {R"({"phpVersion": "7.4", "grammar": false})", "", {}, {}},
        {"", R"({"require": {"php": "^7.3 || ~8.1.0"}})", {}, tooNew},
        {"", R"({"require": {"php": ">=8.0 <8.5"}})", {}, tooOld},
        {"", R"({"require": {"php": "<8"}})", {}, {}},
        // Composer's own business: the next known one, or the newest.
        {"", R"({"require": {"php": ">=5.2"}})", {}, tooNew},
        {"", R"({"require": {"php": "^5"}})", {}, tooNew},
        {"", R"({"require": {"php": ">=7.9"}})", {}, tooOld},
        {"", R"({"require": {"php": ">=9.0"}})", {}, tooOld},
        {"", R"({"config": {"platform": {"php": "8.6.0"}}})", {}, tooOld},
        {"", R"({"require": {"php": "7.1 - 8.4"}})", {}, tooNew},
        {"", R"({"require": {"php": ">=7.1"}, "config": {"platform": {"php": "8.1.3"}}})", {}, tooOld},
        {"", R"({"require": {"php": ">=7.1"}})", {"--no-grammar"}, {}},
        {"", "no JSON", {}, {}},
    };
    m_folder.Write(L"a.php", "<?php\n$a?->b;\n$a{0};\n");
    for (const auto& [settings, composer, options, found] : cases) {
        SCOPED_TRACE(std::string(settings) + composer + options.join(' ').toStdString());
        m_folder.Write(L"code-analyzer.json", *settings ? settings : "{}");
        m_folder.Write(L"composer.json", *composer ? composer : "{}");
        EXPECT_EQ(Brief(RunJson(QStringList{"."} + options, AnyExit)), found);
    }
}

// Names are checked in any case.
TEST_F(Settings, MarkupIsCheckedUnlessSomebodyObjects)
{
    m_folder.Write(L"a.html", "<strng>a</strng>\n<div><b>a</div>\n");
    m_folder.Write(L"a.css", "a { colr: red; color: rde }\n");
    m_folder.Write(L"a.php", "<?php if ($a): ?><i>a<?php endif ?></i>\n<p clas=\"a\" id=\"b\" id=\"c\">\n");
    const TBrief names{"./a.css:1 2502 error", "./a.html:1 2001 error", "./a.php:2 2002 error"};
    const TBrief all{"./a.css:1 2502 error",  "./a.css:1 2541 error", "./a.html:1 2001 error",
                     "./a.html:2 2102 error", "./a.php:1 2112 error", "./a.php:2 2002 error",
                     "./a.php:2 2005 error"};
    struct SCase
    {
        const char* settings;
        QStringList options;
        TBrief found;
    };
    for (const auto& [settings, options, found] :
         {SCase{"{}", {}, all}, SCase{"{}", {"--no-markup"}, names},
          SCase{R"({"markup": true})", {"--no-markup"}, names}, SCase{R"({"markup": false})", {}, names}}) {
        SCOPED_TRACE(settings + options.join(' ').toStdString());
        m_folder.Write(L"code-analyzer.json", settings);
        EXPECT_EQ(Brief(RunJson(QStringList{"."} + options, AnyExit)), found);
    }
}

TEST_F(Settings, ShortTagsOpenPhpUnlessSomebodyObjects)
{
    m_folder.Write(L"a.php", "<? f( ?>\n<?php $a = 1; $b = 2; ?>\n<?= h( ?>\n");
    const TBrief withThem{"./a.php:1 1002 error", "./a.php:3 1002 error"};
    const TBrief without(withThem.begin() + 1, withThem.end());
    struct SCase
    {
        const char* settings;
        QStringList options;
        TBrief found;
    };
    for (const auto& [settings, options, found] :
         {SCase{"{}", {}, withThem}, SCase{"{}", {"--no-short-tags"}, without},
          SCase{R"({"shortOpenTag": true})", {"--no-short-tags"}, without},
          SCase{R"({"shortOpenTag": false})", {}, without}}) {
        SCOPED_TRACE(settings + options.join(' ').toStdString());
        m_folder.Write(L"code-analyzer.json", settings);
        EXPECT_EQ(Brief(RunJson(QStringList{".", "--no-markup"} + options, AnyExit)), found);
    }
}

TEST_F(Settings, AMessageSaysWhoAsksForAVersionThatIsTooOld)
{
    m_folder.Write(L"a.php", "<?php\nenum A { }\n");
    m_folder.Write(L"composer.json", R"({"require": {"php": "^7.2"}})");
    m_folder.Write(L"b.json", R"({"phpVersion": "7.4"})");
    const auto message = [&](const QStringList& options) {
        return RunJson(QStringList{"a.php"} + options, AnyExit).at(0)["message"].get<std::string>();
    };
    EXPECT_EQ(message({}), "An enum needs PHP 8.1; composer.json asks for 7.2");
    EXPECT_EQ(message({"--config", "b.json"}), "An enum needs PHP 8.1; b.json asks for 7.4");
    m_folder.Write(L"code-analyzer.json", R"({"phpVersion": "7.3"})");
    EXPECT_EQ(message({}), "An enum needs PHP 8.1; code-analyzer.json asks for 7.3");
    EXPECT_EQ(message({"--php-version", "8.0"}), "An enum needs PHP 8.1; --php-version asks for 8.0");
}

TEST_F(Settings, UnknownVersionsOfPhpAreRefusedWithThoseKnown)
{
    m_folder.Write(L"a.php", "<?php\n");
    const char* known = "5.3, 5.4, 5.5, 5.6, 7.0, 7.1, 7.2, 7.3, 7.4, 8.0, 8.1, 8.2, 8.3, 8.4, 8.5\n";
    for (const char* version : {"5.3", "5.6.40", "7.0", "8.5", "8.2.14"}) {
        SCOPED_TRACE(version);
        m_folder.Write(L"code-analyzer.json", std::string("{\"phpVersion\": \"") + version + "\"}");
        EXPECT_EQ(Run({"check", "a.php"}).exit, 0);
        EXPECT_EQ(Run({"check", "--php-version", version, "a.php"}).exit, 0);
    }
    for (const char* version :
         {"8.6", "9.0", "5.2", "9.9", "6.0", "7.5", "4", "8", "8.-2", "-8.2", "8.2x", "php"}) {
        SCOPED_TRACE(version);
        const std::string refused =
            '"' + std::string(version) + "\" is no version of PHP that is known; those known are " + known;
        m_folder.Write(L"code-analyzer.json", "{}");
        const SResult option = Run({"check", QString("--php-version=") + version, "a.php"});
        EXPECT_EQ(option.exit, 2);
        EXPECT_EQ(option.out, "");
        EXPECT_THAT(option.err, HasSubstr("--php-version: " + refused));
        m_folder.Write(L"code-analyzer.json", std::string("{\n\"phpVersion\": \"") + version + "\"}");
        const SResult settings = Run({"check", "a.php"});
        EXPECT_EQ(settings.exit, 2);
        EXPECT_EQ(settings.out, "");
        EXPECT_THAT(settings.err, HasSubstr("code-analyzer.json:2: \"phpVersion\": " + refused));
    }
}

TEST_F(Settings, FaultsAreShownWithTheirLine)
{
    m_folder.Write(L"a.php", Wrong);
    struct SCase
    {
        const char* settings;
        const char* message;
    };
    const SCase cases[] = {
        {"{\n  \"exlude\": []\n}",
         "code-analyzer.json:2: unknown key \"exlude\"; those known here are extends, include"},
        {"{\n\n \"ownNames\": {\n \"tag\": []}}", "code-analyzer.json:4: unknown key \"tag\""},
        {"{\"codes\": {\n\"1025\": \"of\"}}",
         "code-analyzer.json:2: a code is \"off\", \"warning\" or \"error\""},
        {"{\"codes\": {\"x\": \"off\"}}", "code-analyzer.json:1: \"x\" is no code"},
        {"{\"codes\": {\n\"9999\": \"off\"}}", "code-analyzer.json:2: there is no error 9999"},
        {"{\n\"exclude\": [\"a\", ]}", "code-analyzer.json:2: no valid JSON: a comma with nothing behind it"},
        {"{\n\"grammar\": true,\n}", "code-analyzer.json:3: no valid JSON: a comma with nothing behind it"},
        {"{\n\"extends\": \"b.json\"}", "code-analyzer.json:2: \"extends\": there is no file /"},
        {"{\"extends\": \"code-analyzer.json\"}", "code-analyzer.json adds to this file itself"},
        {"{\n\"phpVersion\": \"4.4\"}", "code-analyzer.json:2: \"phpVersion\": \"4.4\" is no version"},
        {"{\"exclude\": \"a\"}", "code-analyzer.json:1: \"exclude\" must be an array"},
        {"{\"baseline\": \"\"}", "code-analyzer.json:1: \"baseline\" must name a file"},
        {"{\n\"presets\": [\"vue\", \"Vue\"]}",
         "code-analyzer.json:2: \"presets\": \"Vue\" is no preset; those known are alpine, angular, "},
        {"{\"presets\": \"vue\"}", "code-analyzer.json:1: \"presets\" must be an array"},
        {"{\"grammar\": 1}", "code-analyzer.json:1: \"grammar\" must be true or false"},
        {"{\"overrides\": [{\"codes\": {}}]}",
         "code-analyzer.json:1: an entry of \"overrides\" needs \"paths\""},
        {"{\n\"exclude\": [],\n\"exclude\": []}",
         "code-analyzer.json:3: the key \"exclude\" stands there twice"},
        {"{\n\"exclude\": [}", "code-analyzer.json:2: no valid JSON"},
        {"{}\n}", "code-analyzer.json:2: no valid JSON"},
        {"", "code-analyzer.json:1: no valid JSON"},
        {"[]", "code-analyzer.json:1: \"the whole\" must be an object"},
    };
    for (const SCase& test : cases) {
        m_folder.Write(L"code-analyzer.json", test.settings);
        const SResult result = Run({"check", "a.php"});
        EXPECT_EQ(result.exit, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(test.message));
    }
}

TEST_F(Settings, AFileAddsToAnother)
{
    m_folder.Write(L"base.json",
                   R"({"phpVersion": "7.4", "codes": {"901": "off", "1025": "warning"}, "exclude": ["old"],
                       "overrides": [{"paths": ["p"], "codes": {"2001": "off"}}], "ownNames": {"tags": ["x-*"]}})");
    m_folder.Write(L"p/code-analyzer.json",
                   R"({"extends": "../base.json", "codes": {"1025": "error"}, "ownNames": {"tags": ["y"]}})");
    m_folder.Write(L"p/a.php", Wrong + "if ($a);\n?><x-a></x-a><y></y>");
    m_folder.Write(L"p/b.php", "<?php $a?->b();");
    m_folder.Write(L"p/old/a.php", Wrong);
    const auto records = RunJson({"p"}, 1);
    EXPECT_THAT(Brief(records), ElementsAre(HasSubstr("1025"), HasSubstr("1091")));
    EXPECT_THAT(records.at(1)["message"], HasSubstr("code-analyzer.json"));
    m_folder.Write(L"base.json", "{\n\"exclude\": 1}");
    EXPECT_THAT(Run({"check", "p"}).err, HasSubstr("base.json:2: \"exclude\" must be an array"));
}

TEST_F(Settings, TheNearestFileUpwardsCountsUnlessToldOtherwise)
{
    m_folder.Write(L"code-analyzer.json", R"({"codes": {"1025": "off"}})");
    m_folder.Write(L"other.json", R"({"codes": {"1025": "warning"}})");
    m_folder.Write(L"p/q/a.php", Wrong);
    EXPECT_THAT(RunJson({"p/q/a.php"}, 0), IsEmpty());
    EXPECT_THAT(RunJson({"p"}, 0), IsEmpty());
    EXPECT_THAT(RunJson({"--stdin-path", "p/x.php", "-"}, 0, Wrong), IsEmpty());
    EXPECT_EQ(RunJson({"--no-config", "p"}, 1).size(), 1u);
    EXPECT_THAT(Brief(RunJson({"--config", "other.json", "p"}, 0)), ElementsAre("p/q/a.php:3 1025 warning"));
    m_folder.Write(L"p/code-analyzer.json", "{}");
    EXPECT_EQ(RunJson({"p/q"}, 1).size(), 1u);
    EXPECT_THAT(Run({"check", "--config", "none.json", "p"}).err, HasSubstr("none.json: No such file"));
}

TEST_F(Settings, EachFileGoesByWhatIsNearestToIt)
{
    const std::string text = "<?php\n$a?->b;\n$a{0};\nif ($a);\n";
    m_folder.Write(L"code-analyzer.json", R"({"phpVersion": "7.4", "baseline": "known.json"})");
    m_folder.Write(L"known.json",
                   R"({"version": 1, "findings": [{"file": "a.php", "code": 901, "line": "if ($a);"}]})");
    m_folder.Write(L"a.php", text);
    m_folder.Write(L"a.html", "<owna>a</owna><ownb>b</ownb>\n");
    m_folder.Write(L"new/code-analyzer.json",
                   R"({"codes": {"901": "error"}, "ownNames": {"tags": ["owna"]}, "exclude": ["gen"]})");
    m_folder.Write(L"new/composer.json", R"({"require": {"php": "^8.2"}})");
    m_folder.Write(L"new/b.php", text);
    m_folder.Write(L"new/b.html", "<owna>a</owna><ownb>b</ownb>\n");
    m_folder.Write(L"new/gen/c.php", text);
    m_folder.Write(L"off/code-analyzer.json", R"({"grammar": false})");
    m_folder.Write(L"off/d.php", text);
    m_folder.Write(L"off/deep/e.php", text);
    const TBrief a{"a.php:2 1091 error"};
    const TBrief aHtml{"a.html:1 2001 error", "a.html:1 2001 error"};
    const TBrief b{"new/b.html:1 2001 error", "new/b.php:3 1092 error", "new/b.php:4 901 error"};
    const TBrief off{"off/d.php:4 901 warning", "off/deep/e.php:4 901 warning"};
    TBrief all = aHtml;
    for (const TBrief* more : {&a, &b, &off})
        all.insert(all.end(), more->begin(), more->end());
    for (const QStringList& paths :
         {QStringList{"a.html", "a.php", "new", "off"}, QStringList{"off", "new", "a.php", "a.html"}})
        for (const char* jobs : {"1", "2"}) {
            SCOPED_TRACE(paths.join(' ').toStdString() + " by " + jobs);
            EXPECT_EQ(Brief(RunJson(paths + QStringList{"--jobs", jobs}, AnyExit)), all);
        }
    EXPECT_EQ(Run({"project", "--format", "json", "new"}).out, Run({"check", "--format", "json", "new"}).out);

    // What the user says holds for all.
    EXPECT_EQ(Brief(RunJson({"a.php", "new/b.php", "--php-version", "8.2"}, AnyExit)),
              (TBrief{"a.php:3 1092 error", "new/b.php:3 1092 error", "new/b.php:4 901 error"}));
    EXPECT_EQ(Brief(RunJson({"new/b.php", "--config", "code-analyzer.json"}, AnyExit)),
              (TBrief{"new/b.php:2 1091 error", "new/b.php:4 901 warning"}));

    // Each project's baseline is its own.
    EXPECT_EQ(Run({"check", "--generate-baseline", "a.php", "new"}).exit, 0);
    EXPECT_THAT(Kesh::Host::ReadFileBytes(m_folder.Path(L"known.json")), HasSubstr("1091"));
    EXPECT_THAT(Kesh::Host::ReadFileBytes(m_folder.Path(L"new/code-analyzer-baseline.json")),
                HasSubstr(R"("file":"b.php","code":1092)"));
    m_folder.Write(L"off/code-analyzer.json", "{\n\"grammer\": 1}");
    EXPECT_THAT(Run({"check", "a.php", "off"}).err, HasSubstr("code-analyzer.json:2: unknown key"));
}

TEST_F(Settings, InitWritesAFileThatIsUnderstoodAndKeepsOneThatIsThere)
{
    m_folder.Write(L"a.php", Wrong);
    EXPECT_EQ(Run({"init"}).exit, 0);
    EXPECT_EQ(RunJson({"a.php"}, 1).size(), 1u);
    EXPECT_THAT(Run({"project", "."}).out, HasSubstr("1 error and 0 warnings in 1 of 1 file."));
    m_folder.Write(L"sub/code-analyzer.json", R"({"exclude": ["a.php"], "codes": {"1025": "warning"}})");
    m_folder.Write(L"sub/a.php", Wrong);
    m_folder.Write(L"sub/b.php", Wrong);
    EXPECT_THAT(Run({"project", "sub"}).out,
                HasSubstr("sub/b.php:3:6: warning: Unexpected operator '=' [1025]\n0 errors"));
    const SResult again = Run({"init"});
    EXPECT_EQ(again.exit, 2);
    EXPECT_THAT(again.err, HasSubstr("is there already"));
}

TEST_F(Settings, PresetsKnowTheNamesOfTheirFrameworks)
{
    // With each preset the first text passes, and the second is still unknown.
    struct SCase
    {
        const char* preset;
        const char* known;
        const char* unknown;
    };
    const SCase cases[] = {
        {"alpine", "<p x-data='{}' X-On:click.prevent='a' @click='b' :class='c' x-transition.opacity>",
         "<p x-dta='{}'>"},
        {"angular",
         "<input *ngIf='a' [(ngModel)]='b' (click)='c' [class.x]='d' #ref i18n-title formControlName='e'>",
         "<p ngfi='a'>"},
        {"angularjs", "<p ng-repeat='a in b' ng:click='c'>", "<p @click='a'>"},
        {"blade", "<x-slot:title :a='b' @class='c' {{ $attributes }}>", "<p wire:click='a'>"},
        {"fluid", "<f:if condition='a'><v:b.c d='e'>", "<p f-if='a'>"},
        {"htmx", "<p hx-get='/a' hx-on:click='b' hx-on--after='c' hx-swap='d' sse-connect='e'>",
         "<p hx-got='/a'>"},
        {"hyperscript", "<p _='on click toggle .a'>", "<p __='a'>"},
        {"latte", "<p n:if='$a' n:class='b'>", "<p m:if='$a'>"},
        {"lit", "<input @input='a' .value='b' ?disabled='c'>", "<p :a='b'>"},
        {"livewire", "<livewire:counter><p wire:click.prevent='a' wire:model='b'>", "<p wired:a='b'>"},
        {"rdfa", "<p property='a' typeof='b' vocab='c'>", "<p typof='b'>"},
        {"stimulus", "<p data-a-target='b'>", "<p dato-a='b'>"},
        {"svelte", "<svelte:head><p on:click='a' bind:value='b' {c}>", "<p v-if='a'>"},
        {"tal", "<tal:block><p tal:repeat='a b' metal:use-macro='c' i18n:translate='d'>", "<p tale:a='b'>"},
        {"twig", "<twig:Alert :a='b'>", "<p @a='b'>"},
        {"unpoly", "<p up-target='a'>", "<p upp-target='a'>"},
        {"vue", "<transition><p v-if='a' @click.once='b' :class='c' #default='d' v-focus>",
         "<p (click)='a'>"},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.preset);
        const QStringList option{
            "--no-config", "--no-markup", "--stdin-path", "a.html", "--preset", test.preset, "-"};
        EXPECT_THAT(Brief(RunJson(option, AnyExit, test.known)), IsEmpty());
        EXPECT_EQ(RunJson(option, AnyExit, test.unknown).size(), 1u);
        m_folder.Write(L"code-analyzer.json", std::string(R"({"presets": [")") + test.preset + "\"]}");
        m_folder.Write(L"a.html", test.known);
        m_folder.Write(L"b.html", test.unknown);
        EXPECT_THAT(Brief(RunJson({"."}, AnyExit)), ElementsAre("./b.html:1 2002 error"));
    }
    // Several at once, and beside what the settings name.
    const std::string both = "<p v-if='a' hx-get='b' wire:click='c'>";
    EXPECT_EQ(RunJson({"--stdin-path", "a.html", "-"}, AnyExit, both).size(), 2u) << "vue, of the settings";
    EXPECT_THAT(RunJson({"--preset", "htmx", "--preset", "livewire", "--stdin-path", "a.html", "-"}, 0, both),
                IsEmpty());
    EXPECT_THAT(Run({"project", "--preset", "htmx", "."}).out, HasSubstr("1 error and"));
    const SResult wrong = Run({"check", "--preset", "vu", "a.html"});
    EXPECT_EQ(wrong.exit, 2);
    EXPECT_THAT(wrong.err,
                HasSubstr("\"vu\" is no preset; those known are alpine, angular, angularjs, blade"));
}

TEST_F(Settings, NamesOfBrowsersAreTheirs)
{
    m_folder.Write(L"a.css",
                   "a { -o-animation: b; -MOZ-font-smoothing: c; -ms-zz: 1; mso-list: d; -khtml-x: e }\n"
                   "a { -webkit-transtion: none 0s }\na { -foo-bar: 1 }\na { -o: 1 }\n");
    EXPECT_THAT(Brief(RunJson({"a.css"}, AnyExit)),
                ElementsAre("a.css:2 2502 error", "a.css:3 2502 error", "a.css:4 2502 error"));
    EXPECT_EQ(RunJson({"--no-markup", "a.css"}, AnyExit).size(), 8u);
}

TEST_F(Settings, InitProposesThePresetsThatTheFolderAsksFor)
{
    struct SCase
    {
        const char* package;
        const char* composer;
        const char* line;
    };
    const SCase cases[] = {
        {"", "", "\n  // \"presets\": [\"vue\"],\n"},
        {R"({"dependencies": {"vue": "^3", "angular-like": "1"}, "devDependencies": {"@alpinejs/mask": "3"}})",
         R"({"require": {"livewire/livewire": "*"}, "require-dev": {"latte/latte": "1"}})",
         "\n  \"presets\": [\"alpine\", \"latte\", \"livewire\", \"vue\"],\n"},
        {"{\"dependencies\": {\"vue\"", "[1]", "\n  // \"presets\": [\"vue\"],\n"},
        {R"({"dependencies": ["vue"]})", R"({"require": "latte/latte"})", "\n  // \"presets\": [\"vue\"],\n"},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.package);
        m_folder.Write(L"package.json", test.package);
        m_folder.Write(L"composer.json", test.composer);
        ASSERT_EQ(Run({"init"}).exit, 0);
        EXPECT_THAT(Kesh::Host::ReadFileBytes(m_folder.Path(L"code-analyzer.json")), HasSubstr(test.line));
        EXPECT_EQ(Run({"check", "."}).exit, 0);
        ASSERT_TRUE(QFile::remove(QString::fromStdWString(m_folder.Path(L"code-analyzer.json"))));
    }
}

TEST_F(Settings, CommentsIgnore)
{
    struct SCase
    {
        const char* name;
        std::string text;
        TBrief found;
    };
    const SCase cases[] = {
        {"a.php", "<?php\n$a = 1;\n$b = = 2; // code-analyzer-ignore 1025\n", {}},
        {"a.php",
         "<?php\n$a = 1;\n// code-analyzer-ignore 1025, 101 -- old\n$b = = 2;\n",
         {"a.php:3 9001 warning"}},
        {"a.php", "<?php\n$a = 1;\n/* code-analyzer-ignore */\n$b = = 2;\n", {}},
        {"a.php",
         "<?php\n$a = 1;\n # code-analyzer-ignore 101\n # code-analyzer-ignore 1025\n$b = = 2;\n",
         {"a.php:3 9001 warning"}},
        {"a.php",
         "<?php\n$a = 1;\n$b = = 2; // code-analyzer-ignore 901\n",
         {"a.php:3 1025 error", "a.php:3 9001 warning"}},
        {"a.php",
         "<?php // code-analyzer-ignore-start 1025\n$a = = 1;\n$b = 1;\n$c = = 2; // "
         "code-analyzer-ignore-end\n$d = "
         "1;\n$e = = 2;\n",
         {"a.php:6 1025 error"}},
        {"a.php", "<?php // code-analyzer-ignore-start\n$a = 1\n$b = 1\n$c = 2;\n", {}},
        {"a.php", "<?php\n// code-analyzer-ignore-end\n$a = 1;\n", {"a.php:2 9001 warning"}},
        {"a.php",
         "<?php\n$x = 'code-analyzer-ignore';\n$a = 1;\n$b = = 1; // code-analyzer-ignored\n",
         {"a.php:4 1025 error", "a.php:4 9002 warning"}},
        {"a.php",
         "<?php\n// Code-Analyzer-Ignore 901\n$b = 1;\n# code-analyser-ignore\n$c = 1; // "
         "@code-analyzer-ignore-next-line\n/* CODE_ANALYZER IGNORE */ // code analyzers ignore this\n",
         {"a.php:2 9002 warning", "a.php:4 9002 warning", "a.php:5 9002 warning", "a.php:6 9002 warning"}},
        {"a.css",
         "/* code-analyzer-ignore-file */ a { colr: red }\n",
         {"a.css:1 9002 warning", "a.css:1 2502 error"}},
        {"a.html",
         "<!-- code-analyzer-ignore 2001 -->\n<strng>x</strng>\n<strng>y</strng>\n",
         {"a.html:3 2001 error"}},
        {"a.css", "a { colr: red; /* code-analyzer-ignore 2502*/\nwidht: 1px }\n", {"a.css:2 2502 error"}},
        // Stretches: one in another, one that silences nothing, ends without a start, all lines of a span.
        {"a.php",
         "<?php\n// code-analyzer-ignore-start 901\n// code-analyzer-ignore-start 1025\n$a = = 1;\nif ($a);\n"
         "// code-analyzer-ignore-end\n$b = = 1;\nif ($a);\n// code-analyzer-ignore-end\nif ($a);\n",
         {"a.php:7 1025 error", "a.php:10 901 warning"}},
        {"a.php",
         "<?php\n// code-analyzer-ignore-start 1025, 901\n$a = = 1;\n// code-analyzer-ignore-end\n",
         {"a.php:2 9001 warning"}},
        {"a.html",
         "<!-- code-analyzer-ignore-start 2001 -->\n<strng></strng>\n<p zoo=1></p>\n<!-- "
         "code-analyzer-ignore-end -->\n"
         "<strng></strng><!--code-analyzer-ignore-end-->",
         {"a.html:3 2002 error", "a.html:5 2001 error", "a.html:5 9001 warning"}},
        {"a.css",
         "/* code-analyzer-ignore-start */ a { colr: red }\nb { widht: 1px } /* code-analyzer-ignore-end */\n"
         "strng { top: 0 }\n",
         {"a.css:3 2501 error"}},
        {"a.php", "<?php\r\n$a = 1;\r\n// code-analyzer-ignore: 1025\r\n$b = = 2;\r\n", {}},
        {"a.php", "<?php\n/**\n * code-analyzer-ignore 1025\n */\n$b = = 2;\n", {"a.php:5 1025 error"}},
        {"a.php", "<?php\n$b = = 2; /** code-analyzer-ignore 1025 */\n", {}},
        {"a.php",
         "<?php\n// code-analyzer-ignore\n\n$b = = 2;\n",
         {"a.php:2 9001 warning", "a.php:4 1025 error"}},
        {"a.php",
         "<?php\n// code-analyzer-ignore 1025 1025 99999999999\n$b = = 2;\n",
         {"a.php:2 9001 warning"}},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.text);
        m_folder.Write(Kesh::Host::PathFromBytes(test.name), test.text);
        EXPECT_EQ(Brief(RunJson({test.name}, AnyExit)), test.found);
    }
    m_folder.Write(L"code-analyzer.json", R"({"codes": {"9001": "off"}})");
    m_folder.Write(L"a.php", "<?php // code-analyzer-ignore 1025\n");
    EXPECT_THAT(RunJson({"a.php"}, 0), IsEmpty());
}

TEST_F(Settings, ABaselineSilencesWhatWasThereAndNothingElse)
{
    m_folder.Write(L"p/a.php", Wrong + Wrong.substr(6));
    m_folder.Write(L"p/b.php", Warned);
    const SResult made = Run({"check", "--generate-baseline", "p"});
    EXPECT_EQ(made.exit, 0);
    EXPECT_EQ(made.out, "") << "no \"No errors\"";
    EXPECT_THAT(made.err, HasSubstr("3 findings written"));
    const QStringList check{"--baseline", "code-analyzer-baseline.json", "p"};
    EXPECT_THAT(RunJson(check, 0), IsEmpty());
    // Lines move; a third finding on a line like the old two is new; other text is new.
    m_folder.Write(L"p/a.php",
                   "<?php\n\n\n" + Wrong.substr(6) + Wrong.substr(6) + Wrong.substr(6) + "$c = 1\n$d = 2;\n");
    EXPECT_EQ(RunJson(check, 1).size(), 2u);
    m_folder.Write(L"p/b.php", "<?php\n");
    const SResult gone = Run(QStringList{"check"} + check);
    EXPECT_THAT(gone.err, HasSubstr("p/b.php: gone from the baseline's findings: [901] if ($a);"));
    // What was not checked is not gone, nor forgotten when some files are taken anew; what is deleted is.
    EXPECT_EQ(Run({"check", "--baseline", "code-analyzer-baseline.json", "p/a.php"}).err, "");
    m_folder.Write(L"code-analyzer.json", R"({"baseline": "code-analyzer-baseline.json"})");
    EXPECT_EQ(RunJson({"p"}, 1).size(), 2u);
    m_folder.Write(L"p/c.php", Wrong);
    EXPECT_THAT(Run({"check", "--generate-baseline", "p/c.php"}).err,
                HasSubstr("4 findings written, 3 of them kept from files that were not checked"));
    EXPECT_EQ(RunJson({"p"}, 1).size(), 2u);
    ASSERT_TRUE(QFile::remove(QString::fromStdWString(m_folder.Path(L"p/b.php"))));
    EXPECT_THAT(Run({"check", "--generate-baseline", "p/c.php"}).err, HasSubstr("3 findings written, 2 of"));
    m_folder.Write(L"code-analyzer-baseline.json", "{\"version\": 1, \"findings\": [{}]}");
    EXPECT_THAT(Run({"check", "p"}).err, HasSubstr("code-analyzer-baseline.json: no baseline"));
}

TEST_F(Settings, OnlyWhatGitSaysHasChanged)
{
    for (const wchar_t* name : {L"r/old.php", L"r/s/edited.php", L"r/gone.php", L"r/vendor/v.php"})
        m_folder.Write(name, Wrong);
    Git(L"r", {"init", "-q"});
    Git(L"r", {"add", "."});
    Git(L"r", {"commit", "-qm", "a"});
    Git(L"r", {"branch", "base"});
    m_folder.Write(L"r/s/edited.php", Wrong + "\n");
    m_folder.Write(L"r/vendor/v.php", Wrong + "\n");
    m_folder.Write(L"r/s/\u00E4 new.php", Wrong);
    m_folder.Write(L"r/notes.txt", Wrong);
    Git(L"r", {"rm", "-q", "gone.php"});
    Git(L"r", {"add", "."});
    const TBrief both{"r/s/edited.php:3 1025 error", "r/s/\xC3\xA4 new.php:3 1025 error"};
    EXPECT_EQ(Brief(RunJson({"r", "--changed"}, 1)), both);
    EXPECT_EQ(Brief(RunJson({"r/s", "--changed"}, 1)), both);
    EXPECT_EQ(RunJson({"r/old.php", "--changed"}, 0), json::array());
    Git(L"r", {"commit", "-qm", "b"});
    EXPECT_EQ(RunJson({"r", "--changed"}, 0), json::array());
    EXPECT_EQ(Brief(RunJson({"r", "--changed=base"}, 1)), both);
    const SResult wrong = Run({"check", "r", "--changed", "nowhere"});
    EXPECT_EQ(wrong.exit, 2);
    EXPECT_THAT(wrong.err, HasSubstr("--changed: "));
    EXPECT_EQ(Run({"check", "--changed"}).exit, 2) << "outside a repository";
}

} // namespace
