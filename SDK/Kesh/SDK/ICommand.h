#pragma once

#include "Kesh/Base/IBase.h"

#include <QIcon>
#include <cstdint>
#include <string>

namespace Kesh::SDK {

/// A shortcut: Qt key code and Qt keyboard modifiers; all zero means none.
struct SVirtualKey
{
    std::int32_t key = 0;
    std::int32_t modifiers = 0;
};

/// What a command may change about its menu entry or button while the host updates it.
class ICommandUI
{
public:
    virtual void Enable(int enable) = 0;

protected:
    ~ICommandUI() = default;
};

/// A user action. Whoever is handed a command owns it and ends it with Free(). GUI thread only.
class ICommand : public Base::IBase
{
public:
    virtual SVirtualKey GetVK() = 0;
    /// Display name, already in the user's language or a key for it.
    virtual std::wstring GetName() = 0;
    virtual QIcon GetIcon() = 0;
    virtual void OnCommand(int argument) = 0;
    virtual void OnUpdateCommandUI(ICommandUI* ui) = 0;
    virtual std::wstring GetClassName() = 0;
    virtual std::wstring GetDefaultPath() = 0;
    virtual Base::IBase* GetOwner() = 0;
    /// 0xAARRGGBB; 0xFFFFFFFF means that no colour of the icon is transparent.
    virtual std::uint32_t GetTransparentColor() = 0;
    virtual void Lock(int locked) = 0;
    virtual int IsLocked() = 0;
    virtual ~ICommand() = default;
};

} // namespace Kesh::SDK
