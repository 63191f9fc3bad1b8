#pragma once

#include "Kesh/SDK/ICommand.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

namespace Kesh::SDK {

/// One entry of a menu: a popup, or a command. GUI thread only.
class IMenuItem
{
public:
    virtual ~IMenuItem() = default;
    /// Finds the popup headed by a command of the same name, or adds it at `position` (-1: at the end).
    /// Takes ownership of `head` either way.
    virtual boost::shared_ptr<IMenuItem> AddPopup(ICommand* head, int position) = 0;
    /// Adds `command` at `position` (-1: at the end) and takes ownership of it.
    /// `separator` non-zero puts a separator before it; `checkable` makes the entry checkable.
    virtual boost::shared_ptr<IMenuItem> AddCommand(ICommand* command, int position, int separator,
                                                    int checkable) = 0;
};

class IMenu
{
public:
    /// The item at a path of popup names; the empty path is the root. Null when there is none.
    virtual boost::shared_ptr<IMenuItem> GetItem(const std::vector<std::wstring>& path) = 0;

protected:
    ~IMenu() = default;
};

} // namespace Kesh::SDK
