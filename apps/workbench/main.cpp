#include "Application/Settings.h"
#include "Application/Version.h"
#include "DocumentArea.h"
#include "Files/FilePath.h"
#include "Languages.h"
#include "MainWindow.h"
#include "MessageStrip.h"
#include "Window/GuiApplication.h"
#include "WindowStyle.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    using namespace Kesh;
    CLI::App options("An editor for PHP, HTML and CSS that shows errors while you type.",
                     "code-analyzer-workbench");
    options.set_version_flag("--version", "code-analyzer-workbench " + Host::VersionText());
    std::string settingsFile;
    std::vector<std::string> paths;
    options.add_option("PATH", paths, "Files to open, or a folder as a project")->option_text(" ");
    options
        .add_option("--settings", settingsFile, "Keep the settings in FILE instead of the user's own place")
        ->option_text("FILE");
    try {
        options.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return options.exit(error) == 0 ? 0 : 2;
    }

    Host::InstallFileNameCodec();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    int qtArgc = 1; // the command line is ours
    Host::CGuiApplication application(qtArgc, argv);
    QApplication::setApplicationName(QStringLiteral("code-analyzer-workbench"));
    QApplication::setStyle(new Workbench::CWindowStyle);

    Host::CFileSettings settings(
        settingsFile.empty() ? std::wstring() : Host::AbsolutePath(Host::PathFromBytes(settingsFile)));
    const Workbench::CPreferences preferences(settings);
    QString problem;
    const auto translations = Workbench::LoadLanguage(preferences.GetChoices().language,
                                                      preferences.GetTranslationFolder(), problem);
    Workbench::CMainWindow window(settings, *translations);
    if (!problem.isEmpty())
        window.GetArea().GetMessageStrip().Show(problem);
    window.show();
    std::vector<std::wstring> absolute;
    for (const std::string& path : paths)
        absolute.push_back(Host::AbsolutePath(Host::PathFromBytes(path)));
    window.Begin(absolute);
    return QApplication::exec();
}
