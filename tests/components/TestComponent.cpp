#include "Base/Exception.h"
#include "Components/CCADocManager.h"
#include "Components/CCAProjectHandler.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "TestHost.h"
#include "Window/CACommands.h"

#include <QCoreApplication>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {

namespace {

struct CSwitch : SDK::ICommandUI
{
    void Enable(int enable) override { enabled = enable; }
    int enabled = -1;
};

TEST(Component, IsInertUntilItIsStarted)
{
    CCAComponent component;
    EXPECT_EQ(component.GetErrorsBar(), nullptr);
    EXPECT_EQ(component.GetComponentName(), L"ICAComponent");
}

TEST(Component, DocksItsBarAndFillsTheMenu)
{
    Tests::CTestHost host(Tests::CTestHost::NotStarted);
    host.frame.GetFillMenuSignal().connect([](SDK::IMenu* menu, int) {
        const auto tools = menu->GetItem({})->AddPopup(new SDK::CEmptyCmd(L"&Tools"), -1);
        tools->AddCommand(new SDK::CEmptyCmd(L"Other"), -1, 0, 0);
    });
    host.component->InitComponent(&host.application);
    EXPECT_EQ(host.component->ShowErrorPage(1), 0) << "not docked yet";
    host.frame.Build();

    ASSERT_EQ(host.frame.GetBars().size(), 1u);
    const auto& bar = host.frame.GetBars()[0];
    EXPECT_EQ(bar.name, L"Errors");
    EXPECT_EQ(bar.widget.data(), host.component->GetErrorsBar());
    EXPECT_EQ(bar.placement, 1);
    EXPECT_EQ(bar.size, 50);

    const auto& root = host.frame.GetMenu().GetRoot();
    ASSERT_EQ(root.GetChildren().size(), 1u);
    const auto tools = root.GetChildren()[0];
    ASSERT_EQ(tools->GetChildren().size(), 2u);
    const auto validator = tools->GetChildren()[0];
    EXPECT_EQ(validator->GetCommand()->GetName(), L"Code validator");
    EXPECT_EQ(tools->GetChildren()[1]->GetCommand()->GetName(), L"Other");
    ASSERT_EQ(validator->GetChildren().size(), 1u);
    SDK::ICommand* show = validator->GetChildren()[0]->GetCommand();
    EXPECT_EQ(show->GetClassName(), L"CCAShowErrorsBarCmd");
    EXPECT_FALSE(bar.shown);
    show->OnCommand(0);
    EXPECT_TRUE(bar.shown);
}

TEST(Component, MarksLinesWithTheIconOfItsStrip)
{
    Tests::CTestHost host;
    const QIcon icon = host.Errors().GetIcon();
    ASSERT_EQ(icon.availableSizes(), QList<QSize>{QSize(16, 16)});
    const QImage image = icon.pixmap(16, 16).toImage();
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "the strip's background";
}

TEST(Component, LeavesTheHostWhenItEnds)
{
    Tests::CTestHost host;
    host.component.reset();
    EXPECT_EQ(host.frame.GetBars()[0].widget, nullptr);
    host.frame.Build();
    EXPECT_EQ(host.frame.GetBars().size(), 1u);
    std::vector<SyntaxParser::SScheme> out;
    host.application.Parser().GetFindErrorRegionsSignal()(L"/a.php", {{0, 0}, {9, 9}}, out);
    host.application.Parser().GetProjectParsedSignal()();
    host.Close(host.Open(L"/a.php", "<?php else;"));
}

TEST(Component, CannotStartWithoutTheHostsComponents)
{
    for (const wchar_t* missing : {L"IParserComponent", L"IPMComponent"}) {
        Tests::CTestHost host(Tests::CTestHost::NotStarted);
        host.application.RemoveComponent(missing);
        EXPECT_THROW(host.component->InitComponent(&host.application), Base::CCriticalError);
        host.component.reset();
    }
}

TEST(Commands, AreWhatMenusExpect)
{
    Tests::CTestHost host;
    CCACheckNowCmd checkNow(host.component.get());
    CCACheckProjectCmd checkProject(host.component.get());
    CCAShowErrorsBarCmd show(&host.application, host.component.get());
    SDK::CEmptyCmd heading(L"Heading", QIcon(), 1);
    const struct
    {
        SDK::ICommand& command;
        const wchar_t* className;
        const wchar_t* name;
        int enabled;
    } cases[] = {
        {checkNow, L"CCACheckNowCmd", L"Check document", -1},
        {checkProject, L"CCACheckProjectCmd", L"Check project", -1},
        {show, L"CCAShowErrorsBarCmd", L"Show errors", -1},
        {heading, L"CEmptyCmd", L"Heading", 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.command.GetClassName(), c.className);
        EXPECT_EQ(c.command.GetName(), c.name);
        EXPECT_EQ(c.command.GetVK().key, 0);
        EXPECT_EQ(c.command.GetVK().modifiers, 0);
        EXPECT_TRUE(c.command.GetIcon().isNull());
        EXPECT_EQ(c.command.GetDefaultPath(), L"-");
        EXPECT_EQ(c.command.GetOwner(), nullptr);
        EXPECT_EQ(c.command.GetTransparentColor(), 0xFFFFFFFFu);
        c.command.Lock(1);
        EXPECT_EQ(c.command.IsLocked(), 1);
        CSwitch ui;
        c.command.OnUpdateCommandUI(&ui);
        EXPECT_EQ(ui.enabled, c.enabled) << "locking changes nothing else";
    }
}

TEST(Plugin, ExportsTheCommandsThatHostsMake)
{
    void* library = ::dlopen(BUILD_DIR "/lib/libCodeAnalyzer.so.1", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << ::dlerror();
    for (const char* name : {"_ZN4Kesh12CodeAnalyzer14CCACheckNowCmdC1EPNS0_12CCAComponentE",
                             "_ZN4Kesh12CodeAnalyzer18CCACheckProjectCmdC1EPNS0_12CCAComponentE"})
        EXPECT_NE(::dlsym(library, name), nullptr) << name;
    ::dlclose(library);
}

TEST(Plugin, IsDrivenThroughItsFunctions)
{
    Tests::CTestHost host(Tests::CTestHost::NotStarted);
    host.component.reset();
    ICAComponent* component = CodeAnalyzerCreate();
    component->InitComponent(&host.application);
    host.Open(L"/a.php", "<?php else;");

    SDK::ICommand* check = CodeAnalyzerCreateCommand(component, "CCACheckNowCmd");
    ASSERT_NE(check, nullptr);
    check->OnCommand(0);
    check->Free();
    QCoreApplication::sendPostedEvents();
    IErrorsSource* source = CodeAnalyzerGetErrorsSource(component);
    std::vector<SCAError> errors;
    source->GetErrors(L"/a.php", errors);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(source->GetTexts().GetTitle(errors[0].code), L"ElSE or ELSEIF has no IF statement");
    EXPECT_EQ(source->GetAllErrors().size(), 1u);
    int removed = 0;
    source->GetRemovedSignal().connect([&](const std::wstring&) { ++removed; });
    static_cast<CCAErrorsManager*>(component->GetErrorsManager())->RemoveErrors(L"/a.php");
    EXPECT_EQ(removed, 1);

    EXPECT_EQ(CodeAnalyzerCreateCommand(component, "CCAShowErrorsBarCmd"), nullptr);
    EXPECT_EQ(CodeAnalyzerCreateCommand(component, nullptr), nullptr);
    CodeAnalyzerGetCustomNames(component)->AddTags({L"My-Tag"});
    CodeAnalyzerDestroy(component);
}

} // namespace

} // namespace Kesh::CodeAnalyzer
