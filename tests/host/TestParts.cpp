#include "Application/HeadlessMainFrame.h"
#include "Application/PluginLoader.h"
#include "Application/Settings.h"
#include "Base/Exception.h"
#include "HostFixture.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Window/ImageListService.h"

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Kesh;

namespace {

class CCommand : public SDK::ICommand
{
public:
    CCommand(const std::wstring& name, int& living) : m_name(name), m_living(living) { ++m_living; }
    ~CCommand() override { --m_living; }
    void Free() override { delete this; }
    SDK::SVirtualKey GetVK() override { return {}; }
    std::wstring GetName() override { return m_name; }
    QIcon GetIcon() override { return {}; }
    void OnCommand(int) override {}
    void OnUpdateCommandUI(SDK::ICommandUI*) override {}
    std::wstring GetClassName() override { return L"CCommand"; }
    std::wstring GetDefaultPath() override { return L"-"; }
    Base::IBase* GetOwner() override { return nullptr; }
    std::uint32_t GetTransparentColor() override { return 0xFFFFFFFF; }
    void Lock(int) override {}
    int IsLocked() override { return 0; }

private:
    std::wstring m_name;
    int& m_living;
};

TEST(MenuModel, FindsPopupsByNameAndEndsEveryCommandOnce)
{
    int living = 0;
    {
        Host::CMenu menu;
        const auto root = menu.GetItem({});
        const auto tools = root->AddPopup(new CCommand(L"&Tools", living), -1);
        tools->AddCommand(new CCommand(L"last", living), -1, 0, 0);
        tools->AddPopup(new CCommand(L"first", living), 0);
        EXPECT_EQ(root->AddPopup(new CCommand(L"&Tools", living), 0), tools);
        EXPECT_EQ(menu.GetItem({L"&Tools"}), tools);
        EXPECT_EQ(menu.GetItem({L"&Tools", L"last"}), nullptr) << "a command is no popup";
        EXPECT_EQ(menu.GetItem({L"none", L"first"}), nullptr);
        const auto& children = menu.GetRoot().GetChildren().front()->GetChildren();
        EXPECT_EQ(children.front()->GetCommand()->GetName(), L"first");
        EXPECT_EQ(children.back()->GetCommand()->GetName(), L"last");
        EXPECT_EQ(living, 3);
    }
    EXPECT_EQ(living, 0);
}

TEST(ImageList, CutsAStripAndMakesOneColourTransparent)
{
    const CTempFolder folder;
    QImage strip(32, 16, QImage::Format_RGB32);
    strip.fill(QColor(192, 192, 192));
    strip.setPixelColor(16, 0, Qt::red);
    const std::wstring path = folder.Path(L"strip.bmp");
    ASSERT_TRUE(strip.save(Host::PathToQt(path)));
    SDK::IImageList* list = Host::CImageListService().CreateImageList();
    EXPECT_EQ(list->Load(L"/none.bmp", 16, 16, 0), 0);
    EXPECT_EQ(list->Load(path, 16, 16, 0xFFC0C0C0), 1);
    const QImage icon = list->GetIcon(1).pixmap(16, 16).toImage();
    EXPECT_EQ(icon.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(1, 0).alpha(), 0);
    EXPECT_FALSE(list->GetIcon(0).isNull());
    EXPECT_TRUE(list->GetIcon(2).isNull());
    EXPECT_TRUE(list->GetIcon(-1).isNull());
    list->Release();
}

TEST(Settings, SectionsAndValuesOfBothKinds)
{
    const CTempFolder folder;
    const std::wstring file = folder.Write(L"s.ini", "[CAEBCTRL]\ncolumn0=120\n[Other]\ntext=a, b\n");
    Host::CFileSettings kept(file);
    Host::CMemorySettings memory;
    memory.SetString(L"CAEBCTRL", L"column0", L"120");
    memory.SetString(L"Other", L"text", L"a, b");
    for (SDK::ISettings* settings :
         {static_cast<SDK::ISettings*>(&kept), static_cast<SDK::ISettings*>(&memory)}) {
        EXPECT_TRUE(settings->HasSection(L"CAEBCTRL"));
        EXPECT_FALSE(settings->HasSection(L"CAEBCTR"));
        EXPECT_EQ(settings->GetString(L"CAEBCTRL", L"column0", L""), L"120");
        EXPECT_EQ(settings->GetString(L"CAEBCTRL", L"column1", L"x"), L"x");
        EXPECT_EQ(settings->GetString(L"Other", L"text", L""), L"a, b");
    }
    kept.SetString(L"New", L"name", L"\u00E9");
    kept.GetStore().sync();
    EXPECT_EQ(Host::CFileSettings(file).GetString(L"New", L"name", L""), L"\u00E9");
}

TEST(Translations, KeysAreTakenLetterForLetter)
{
    LangSupport::CTranslations texts(R"({"File     ": "Datei", "Udefined error": "Unbekannter Fehler"})");
    LangSupport::CLangSupport::SetSource(&texts);
    EXPECT_EQ(LangSupport::CLangSupport::LoadStr("File     "), L"Datei");
    EXPECT_EQ(LangSupport::CLangSupport::LoadStr("File"), L"File");
    EXPECT_EQ(LangSupport::CLangSupport::LoadStr("Udefined error"), L"Unbekannter Fehler");
    LangSupport::CLangSupport::SetSource(nullptr);
    for (const char* bad : {"", "[]", "{", R"({"a": 1})", "{\"a\": \"\xFF\"}"})
        EXPECT_THROW(LangSupport::CTranslations{bad}, Base::CWorkError) << bad;
}

class Plugin : public CHostTest
{
protected:
    std::string LoadError(const std::string& library)
    {
        qputenv("CODE_ANALYZER_PLUGIN", library.c_str());
        std::string message;
        try {
            Host::CPlugin plugin(m_host);
        } catch (const Base::CWorkError& fault) {
            message = fault.what();
        }
        qunsetenv("CODE_ANALYZER_PLUGIN");
        return message;
    }
};

TEST_F(Plugin, ALibraryThatCannotServeIsNamedWithTheReason)
{
    EXPECT_THAT(LoadError("/none/lib.so"), ::testing::HasSubstr("/none/lib.so"));
    EXPECT_THAT(LoadError(Host::PathToBytes(m_folder.Write(L"text.so", "no library"))),
                ::testing::HasSubstr("text.so"));
    EXPECT_THAT(LoadError("libm.so.6"), ::testing::HasSubstr("libm.so.6 is no code validator"));
}

} // namespace
