#pragma once

#include "Kesh/SDK/IMenu.h"

#include <memory>
#include <string>
#include <vector>

namespace Kesh::Host {

/// One entry of the menu that plug-ins fill; a front end shows it in its own way. GUI thread only.
class CMenuItem final : public SDK::IMenuItem
{
public:
    /// Takes ownership of `command`, which is null for a root.
    explicit CMenuItem(SDK::ICommand* command, bool separator = false, bool checkable = false);

    boost::shared_ptr<SDK::IMenuItem> AddPopup(SDK::ICommand* head, int position) override;
    boost::shared_ptr<SDK::IMenuItem> AddCommand(SDK::ICommand* command, int position, int separator,
                                                 int checkable) override;

    SDK::ICommand* GetCommand() const { return m_command.get(); }
    bool IsPopup() const { return m_popup; }
    bool HasSeparator() const { return m_separator; }
    bool IsCheckable() const { return m_checkable; }
    const std::vector<boost::shared_ptr<CMenuItem>>& GetChildren() const { return m_children; }
    /// The popup of this name among the children; null when there is none.
    boost::shared_ptr<CMenuItem> FindPopup(const std::wstring& name) const;

private:
    struct SFree
    {
        void operator()(SDK::ICommand* command) const { command->Free(); }
    };
    boost::shared_ptr<CMenuItem> Insert(boost::shared_ptr<CMenuItem> item, int position);

    std::unique_ptr<SDK::ICommand, SFree> m_command;
    bool m_popup = false;
    bool m_separator;
    bool m_checkable;
    std::vector<boost::shared_ptr<CMenuItem>> m_children;
};

class CMenu final : public SDK::IMenu
{
public:
    CMenu();
    boost::shared_ptr<SDK::IMenuItem> GetItem(const std::vector<std::wstring>& path) override;
    const CMenuItem& GetRoot() const { return *m_root; }

private:
    boost::shared_ptr<CMenuItem> m_root;
};

} // namespace Kesh::Host
