#pragma once

#include <string>

namespace Kesh::SDK {

/// A named part of an owner of type T: of the application, or of one parsed document.
/// Never deleted through this interface.
template <class T> class IComponent1
{
public:
    /// Called once, when the component is attached to its owner, which outlives it.
    virtual void InitComponent(T* owner) = 0;
    /// The name under which the owner's GetComponent() finds it.
    virtual std::wstring GetComponentName() = 0;

protected:
    ~IComponent1() = default;
};

} // namespace Kesh::SDK
