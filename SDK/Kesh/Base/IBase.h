#pragma once

namespace Kesh::Base {

/// An object whose owner ends it with Free() instead of delete.
class IBase
{
public:
    /// Ends the object's life for its present owner. What that means is the implementor's to say:
    /// commands destroy themselves, a thread body that is a member of something else does nothing.
    virtual void Free() = 0;

protected:
    ~IBase() = default;
};

} // namespace Kesh::Base
