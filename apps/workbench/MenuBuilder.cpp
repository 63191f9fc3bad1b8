#include "MenuBuilder.h"

#include "Files/Fault.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Texts.h"

#include <QMenu>
#include <QMenuBar>

namespace Kesh::Workbench {

namespace {

/// A command's name may be a key of the translations.
QString NameOf(SDK::ICommand& command)
{
    return Tr(QString::fromStdWString(command.GetName()).toUtf8().constData());
}

class CActionUI final : public SDK::ICommandUI
{
public:
    explicit CActionUI(QAction& action) : m_action(action) {}
    void Enable(int enable) override { m_action.setEnabled(enable != 0); }

private:
    QAction& m_action;
};

void AddItems(const Host::CMenuItem& item, QMenu& menu)
{
    for (const boost::shared_ptr<Host::CMenuItem>& child : item.GetChildren()) {
        SDK::ICommand& command = *child->GetCommand();
        if (child->HasSeparator())
            menu.addSeparator();
        if (child->IsPopup()) {
            AddItems(*child, *menu.addMenu(command.GetIcon(), NameOf(command)));
            continue;
        }
        QAction* action = menu.addAction(command.GetIcon(), NameOf(command));
        action->setCheckable(child->IsCheckable());
        if (const SDK::SVirtualKey key = command.GetVK(); key.key != 0)
            action->setShortcut(QKeySequence(key.key | key.modifiers));
        QObject::connect(action, &QAction::triggered, action,
                         [&command] { Host::Guard(L"command", [&] { command.OnCommand(0); }); });
        QObject::connect(&menu, &QMenu::aboutToShow, action, [&command, action] {
            CActionUI ui(*action);
            Host::Guard(L"command", [&] { command.OnUpdateCommandUI(&ui); });
        });
    }
}

QMenu* FindMenu(const QMenuBar& bar, const QString& title)
{
    for (QAction* action : bar.actions())
        if (action->menu() && action->menu()->title() == title)
            return action->menu();
    return nullptr;
}

} // namespace

void ShowPluginMenu(const Host::CMenuItem& root, QMenuBar& bar, QAction* end)
{
    for (const boost::shared_ptr<Host::CMenuItem>& child : root.GetChildren()) {
        if (!child->IsPopup())
            continue; // a menu bar holds menus
        const QString title = NameOf(*child->GetCommand());
        QMenu* menu = FindMenu(bar, title);
        if (!menu) {
            menu = new QMenu(title, &bar);
            bar.insertMenu(end, menu);
        }
        AddItems(*child, *menu);
    }
}

} // namespace Kesh::Workbench
