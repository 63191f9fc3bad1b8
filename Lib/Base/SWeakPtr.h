#pragma once

#include "Base/Exception.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

namespace Kesh::Base {

/// A weak reference to a host component of type T; using an expired one, or one of another type, raises
/// CCriticalError "Bad sweak pointer".
template <class T> class sweak_ptr
{
public:
    sweak_ptr() = default;
    /// `component` may be a base of T.
    template <class U>
    explicit sweak_ptr(const boost::weak_ptr<U>& component)
        : m_target(boost::dynamic_pointer_cast<T>(component.lock()))
    {
    }

    /// The component, kept alive as long as the result.
    boost::shared_ptr<T> Lock() const
    {
        boost::shared_ptr<T> target = m_target.lock();
        if (!target)
            throw CCriticalError("Bad sweak pointer", 14, "Lib/sweak_ptr");
        return target;
    }

private:
    boost::weak_ptr<T> m_target;
};

} // namespace Kesh::Base
