#pragma once

#include "Kesh/Base/Export.h"
#include "Kesh/SDK/ICommand.h"

namespace Kesh::SDK {

class IApplication;

/// A command that does nothing: the heading of a popup, and the base of real commands.
class KESH_EXPORT CEmptyCmd : public ICommand
{
public:
    /// `disabled` non-zero greys the menu entry.
    explicit CEmptyCmd(const std::wstring& name, const QIcon& icon = QIcon(), int disabled = 0);

    void Free() override { delete this; }
    SVirtualKey GetVK() override { return {}; }
    std::wstring GetName() override { return m_name; }
    QIcon GetIcon() override { return m_icon; }
    void OnCommand(int /*argument*/) override {}
    void OnUpdateCommandUI(ICommandUI* ui) override;
    std::wstring GetClassName() override { return L"CEmptyCmd"; }
    std::wstring GetDefaultPath() override { return L"-"; }
    Base::IBase* GetOwner() override { return nullptr; }
    std::uint32_t GetTransparentColor() override { return 0xFFFFFFFF; }
    void Lock(int locked) override { m_locked = locked; }
    int IsLocked() override { return m_locked; }

private:
    std::wstring m_name;
    QIcon m_icon;
    std::int32_t m_disabled;
    std::int32_t m_locked = 0;
};

} // namespace Kesh::SDK

namespace Kesh::CodeAnalyzer {

class CCAComponent;

/// Checks the document that the user works in. The component, here and below, outlives the command. A host
/// may make this one and the next itself, for menus and tool bars of its own.
class KESH_EXPORT CCACheckNowCmd : public SDK::CEmptyCmd
{
public:
    explicit CCACheckNowCmd(CCAComponent* component);
    void OnCommand(int argument) override;
    std::wstring GetClassName() override { return L"CCACheckNowCmd"; }

private:
    CCAComponent* m_component;
};

/// Checks all files of the open project.
class KESH_EXPORT CCACheckProjectCmd : public SDK::CEmptyCmd
{
public:
    explicit CCACheckProjectCmd(CCAComponent* component);
    void OnCommand(int argument) override;
    std::wstring GetClassName() override { return L"CCACheckProjectCmd"; }

private:
    CCAComponent* m_component;
};

/// Brings the errors bar to the front.
class CCAShowErrorsBarCmd : public SDK::CEmptyCmd
{
public:
    CCAShowErrorsBarCmd(SDK::IApplication* application, CCAComponent* component);
    void OnCommand(int argument) override;
    std::wstring GetClassName() override { return L"CCAShowErrorsBarCmd"; }

private:
    SDK::IApplication* m_application;
    CCAComponent* m_component;
};

} // namespace Kesh::CodeAnalyzer
