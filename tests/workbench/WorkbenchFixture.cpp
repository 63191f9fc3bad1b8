#include "WorkbenchFixture.h"

#include "Languages.h"
#include "MessageStrip.h"
#include "Preferences.h"
#include "ProjectManager/ProjectManager.h"

#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QHelpEvent>
#include <QPushButton>
#include <QTest>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

constexpr int ErrorIndicator = 8; // that of warnings follows, here and below
constexpr int ErrorMarker = 2;
constexpr int CheckDelay = 60; // ms instead of the validator's own

} // namespace

CWorkbenchTest::CWorkbenchTest()
{
    OpenWindow();
}

CWorkbenchTest::~CWorkbenchTest() = default;

void CWorkbenchTest::OpenWindow()
{
    m_window.reset();
    m_settings = std::make_unique<Host::CFileSettings>(m_folder.Path(L"settings/workbench.ini"));
    // Most tests count what the statement parsers and the markup checks find.
    if (!m_settings->GetStore().contains("Workbench/grammar"))
        m_settings->GetStore().setValue("Workbench/grammar", false);
    const Workbench::CPreferences preferences(*m_settings);
    QString problem;
    m_translations = Workbench::LoadLanguage(preferences.GetChoices().language,
                                             preferences.GetTranslationFolder(), problem);
    m_window = std::make_unique<Workbench::CMainWindow>(*m_settings, *m_translations);
    m_window->SetPrompts(m_prompts);
    m_window->GetApplication().Timers().SetDelayOverride(CheckDelay);
    m_window->resize(1100, 700);
    m_window->show();
    ASSERT_NE(m_window->GetPlugin(), nullptr);
}

bool CWorkbenchTest::CloseByUser()
{
    Window().close();
    return WaitFor([this] { return !Window().GetApplication().Project().IsDataHeld(); }) &&
           !Window().isVisible();
}

ProjectManager::IProjectManager& CWorkbenchTest::Project()
{
    return *m_window->GetApplication().Project().GetProjectManager();
}

void CWorkbenchTest::OpenProject(const std::wstring& folder)
{
    int ended = 0; // checks
    const auto watch = QObject::connect(&Window().GetFrame(), &Workbench::CMainFrame::progressTextChanged,
                                        [&](const QString& text) { ended += text.isEmpty(); });
    Window().OpenProject(folder);
    ASSERT_TRUE(WaitFor([&] { return Project().IsOpened() && ended > 0; }));
    QObject::disconnect(watch);
    ASSERT_TRUE(WaitFor([&] { return !Window().GetApplication().Threads().IsRunning(); }));
    QCoreApplication::sendPostedEvents();
}

CCodeEditor& CWorkbenchTest::Open(const std::wstring& path)
{
    EXPECT_TRUE(Area().Open(path));
    return *Area().GetCurrentEditor();
}

QTreeWidget* CWorkbenchTest::Bar()
{
    for (QDockWidget* dock : Window().GetFrame().GetDocks())
        return dock->findChild<QTreeWidget*>();
    return nullptr;
}

QStringList CWorkbenchTest::Rows()
{
    QStringList rows;
    for (int i = 0; i < Bar()->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = Bar()->topLevelItem(i);
        rows.append(item->text(0) + '|' + item->text(1).section('/', -1) + '|' + item->text(2));
    }
    return rows;
}

bool CWorkbenchTest::WaitForRows(int count)
{
    return WaitFor([&] { return Bar()->topLevelItemCount() == count; });
}

bool CWorkbenchTest::WaitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 20000);
}

QString CWorkbenchTest::Strip()
{
    return Area().GetMessageStrip().GetText();
}

void CWorkbenchTest::Answer(const QString& title)
{
    for (QPushButton* button : Area().GetMessageStrip().findChildren<QPushButton*>())
        if (button->text() == title && !button->isHidden())
            return button->click();
    ADD_FAILURE() << "no button " << title.toStdString();
}

QPoint CWorkbenchTest::PointOf(CCodeEditor& editor, int line, int column)
{
    const int position = editor.positionFromLineIndex(line, column);
    return {static_cast<int>(editor.SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0L, position)),
            static_cast<int>(editor.SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0L, position))};
}

QStringList CWorkbenchTest::Underlines(CCodeEditor& editor, bool ofWarnings)
{
    const int indicator = ErrorIndicator + ofWarnings;
    QStringList spans;
    const auto place = [&](long position) {
        int line = 0, index = 0;
        editor.lineIndexFromPosition(static_cast<int>(position), &line, &index);
        return QStringLiteral("%1:%2").arg(line).arg(index);
    };
    for (long at = 0; at < editor.length();) {
        const long end = editor.SendScintilla(QsciScintillaBase::SCI_INDICATOREND, indicator, at);
        if (editor.SendScintilla(QsciScintillaBase::SCI_INDICATORVALUEAT, indicator, at))
            spans.append(place(at) + '-' + place(end));
        if (end <= at)
            break;
        at = end;
    }
    return spans;
}

QList<int> CWorkbenchTest::MarkedLines(CCodeEditor& editor, bool withWarnings)
{
    QList<int> lines;
    for (int line = 0; line < editor.lines(); ++line)
        if (editor.SendScintilla(QsciScintillaBase::SCI_MARKERGET, line) &
            (1 << (ErrorMarker + withWarnings)))
            lines.append(line);
    return lines;
}

Workbench::CErrorTip* CWorkbenchTest::TipAt(CCodeEditor& editor, const QPoint& point)
{
    QHelpEvent help(QEvent::ToolTip, point, editor.viewport()->mapToGlobal(point));
    QApplication::sendEvent(editor.viewport(), &help);
    auto* tip = editor.findChild<Workbench::CErrorTip*>("errorTip");
    return tip && tip->isVisible() ? tip : nullptr;
}

void CWorkbenchTest::DoubleClickRow(int row)
{
    Bar()->setCurrentItem(Bar()->topLevelItem(row));
    QTest::mouseDClick(Bar()->viewport(), Qt::LeftButton, {},
                       Bar()->visualItemRect(Bar()->currentItem()).center());
}

void CWorkbenchTest::Trigger(const char* action)
{
    auto* found = Window().findChild<QAction*>(QLatin1String(action));
    ASSERT_NE(found, nullptr) << action;
    ASSERT_TRUE(found->isEnabled()) << action;
    found->trigger();
}

void CWorkbenchTest::Shoot(QWidget& widget, const char* name)
{
    const QString folder = qEnvironmentVariable("SCREENSHOT_DIR", QStringLiteral(SCREENSHOT_DIR));
    QDir().mkpath(folder);
    QTest::qWait(300); // what is shown a moment later belongs to the picture
    EXPECT_TRUE(widget.grab().save(folder + '/' + name + QStringLiteral(".png"))) << folder.toStdString();
}
