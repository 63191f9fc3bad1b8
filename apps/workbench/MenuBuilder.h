#pragma once

#include "Application/MenuModel.h"

class QMenu;
class QMenuBar;
class QAction;

namespace Kesh::Workbench {

/// Shows a menu that plug-ins have filled: each popup at its top becomes a menu of `bar`, before `end`, or
/// joins the menu of the same title. The model must outlive the actions.
void ShowPluginMenu(const Host::CMenuItem& root, QMenuBar& bar, QAction* end);

} // namespace Kesh::Workbench
