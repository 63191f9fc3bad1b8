#include "Application/MenuModel.h"

#include <boost/make_shared.hpp>

namespace Kesh::Host {

CMenuItem::CMenuItem(SDK::ICommand* command, bool separator, bool checkable)
    : m_command(command), m_separator(separator), m_checkable(checkable)
{
}

boost::shared_ptr<SDK::IMenuItem> CMenuItem::AddPopup(SDK::ICommand* head, int position)
{
    if (boost::shared_ptr<CMenuItem> present = FindPopup(head->GetName())) {
        head->Free();
        return present;
    }
    boost::shared_ptr<CMenuItem> popup = Insert(boost::make_shared<CMenuItem>(head), position);
    popup->m_popup = true;
    return popup;
}

boost::shared_ptr<SDK::IMenuItem> CMenuItem::AddCommand(SDK::ICommand* command, int position, int separator,
                                                        int checkable)
{
    return Insert(boost::make_shared<CMenuItem>(command, separator != 0, checkable != 0), position);
}

boost::shared_ptr<CMenuItem> CMenuItem::FindPopup(const std::wstring& name) const
{
    for (const boost::shared_ptr<CMenuItem>& child : m_children)
        if (child->IsPopup() && child->GetCommand()->GetName() == name)
            return child;
    return {};
}

boost::shared_ptr<CMenuItem> CMenuItem::Insert(boost::shared_ptr<CMenuItem> item, int position)
{
    const auto size = static_cast<int>(m_children.size());
    m_children.insert(m_children.begin() + (position < 0 || position > size ? size : position), item);
    return item;
}

CMenu::CMenu() : m_root(boost::make_shared<CMenuItem>(nullptr)) {}

boost::shared_ptr<SDK::IMenuItem> CMenu::GetItem(const std::vector<std::wstring>& path)
{
    boost::shared_ptr<CMenuItem> item = m_root;
    for (const std::wstring& name : path)
        if (item)
            item = item->FindPopup(name);
    return item;
}

} // namespace Kesh::Host
