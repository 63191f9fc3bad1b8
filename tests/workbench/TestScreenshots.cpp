// Pictures of the window on the example site; the tests only make sure that there is something to be seen.
#include "ErrorHelp.h"
#include "Files/FilePath.h"
#include "Languages.h"
#include "Preferences.h"
#include "SearchPanel.h"
#include "SettingsDialog.h"
#include "WorkbenchFixture.h"

#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QTextBrowser>
#include <filesystem>
#include <set>

using namespace Kesh;
using Workbench::CCodeEditor;
using Workbench::EAppearance;

namespace {

class Screenshots : public CWorkbenchTest
{
protected:
    /// A window with the site open, at a file with errors.
    void ShowSite(EAppearance appearance, const QString& language, const QSize& size)
    {
        Workbench::SChoices choices;
        choices.appearance = appearance;
        choices.language = language;
        CloseWindow();
        Workbench::CPreferences(*m_settings).SetChoices(choices);
        OpenWindow();
        Window().resize(size);
        const std::filesystem::path site = Host::PathToBytes(m_folder.Path(L"shop"));
        if (!std::filesystem::exists(site))
            for (const char* part : {"src", "public", "templates", "config.php", "products.json"}) {
                std::filesystem::create_directories(site);
                std::filesystem::copy(std::filesystem::path(SOURCE_DIR "/examples") / part, site / part,
                                      std::filesystem::copy_options::recursive);
            }
        OpenProject(m_folder.Path(L"shop"));
        Open(m_folder.Path(L"shop/public/about.html"));
        CCodeEditor& editor = Open(m_folder.Path(L"shop/src/Cart.php"));
        editor.SetCaretPosition({10, 16});
        editor.CenterCaret();
        constexpr int Planted = 16;
        ASSERT_TRUE(
            WaitFor([&] { return !Underlines(editor).isEmpty() && Bar()->topLevelItemCount() == Planted; }));
        editor.setFocus();
        QTest::qWait(500); // for the list, which follows the caret
    }
    /// The picture, at the window's own size.
    void Keep(QWidget& widget, const char* name)
    {
        EXPECT_GT(widget.width(), 100);
        const QImage picture = widget.grab().toImage();
        std::set<QRgb> colours;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                colours.insert(picture.pixel(x, y));
        EXPECT_GT(colours.size(), 10u) << "an empty picture";
        Shoot(widget, name);
    }
    /// The explanation of the error at the caret; null when none has come up.
    QDialog* Explain()
    {
        Trigger("&Explain the error");
        return Window().findChild<QDialog*>("explanation");
    }
    void KeepDialogs(const char* settings)
    {
        Workbench::CSettingsDialog dialog(Workbench::CPreferences(*m_settings).GetChoices(),
                                          Workbench::GetLanguages({}), &Window());
        dialog.show();
        Keep(dialog, settings);
        EXPECT_LE(dialog.height(), 600) << "too high for a small screen";
    }
    void KeepTip(const char* name)
    {
        auto& editor = *Area().GetCurrentEditor();
        auto* tip = TipAt(editor, PointOf(editor, 16, 17) + QPoint(2, 5));
        ASSERT_NE(tip, nullptr);
        Keep(*tip, name);
    }
    void TearDown() override
    {
        if (m_window) // the colours are the application's
            Window().ApplyChoices({});
    }
};

constexpr QSize Usual(1200, 800);

TEST_F(Screenshots, Light)
{
    ShowSite(EAppearance::Light, {}, Usual);
    Keep(Window(), "light");
    KeepDialogs("settings");
    KeepTip("tip");
    auto* page = Explain();
    ASSERT_NE(page, nullptr);
    Keep(*page, "explanation");
    page->close();
    Window().findChild<QLineEdit*>("errorFilter")->setText("html");
    Keep(Window(), "filter");
    Window().findChild<QLineEdit*>("errorFilter")->clear();
    Trigger("Find &in files...");
    Window().findChild<QLineEdit*>("searchText")->setText("amount");
    QTest::keyClick(Window().findChild<QLineEdit*>("searchText"), Qt::Key_Return);
    ASSERT_TRUE(
        WaitFor([&] { return !Window().findChild<Workbench::CSearchPanel*>("searchPanel")->IsRunning(); }));
    Keep(Window(), "search");
}

TEST_F(Screenshots, Dark)
{
    ShowSite(EAppearance::Dark, {}, Usual);
    Keep(Window(), "dark");
    KeepDialogs("settings-dark");
    KeepTip("tip-dark");
}

TEST_F(Screenshots, German)
{
    ShowSite(EAppearance::Light, "de", Usual);
    Keep(Window(), "german");
    KeepDialogs("settings-german");
    auto* page = Explain();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->findChild<QTextBrowser*>()->toPlainText().contains("Abhilfe: "));
    Keep(*page, "explanation-german");
    page->close();
}

TEST_F(Screenshots, Small)
{
    ShowSite(EAppearance::Light, {}, {800, 600});
    EXPECT_EQ(Window().size(), QSize(800, 600)) << "it gets no smaller";
    Keep(Window(), "small");
}

/// With QT_SCALE_FACTOR=2, as on a screen with fine pixels: in a run of its own.
class Scaled : public Screenshots
{
};

TEST_F(Scaled, Twice)
{
    ASSERT_EQ(Window().devicePixelRatioF(), 2.0);
    ShowSite(EAppearance::Light, {}, {800, 500});
    Keep(Window(), "scale-2");
    auto* page = Explain();
    ASSERT_NE(page, nullptr);
    EXPECT_LT(page->height(), page->screen()->availableSize().height()) << "its button would be out of reach";
    page->close();
}

} // namespace
