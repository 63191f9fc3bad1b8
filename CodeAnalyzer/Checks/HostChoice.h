#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace Kesh::CodeAnalyzer {

/// A function that a host sets on the GUI thread and every check calls; may be empty.
template <class TFunction> class CHostChoice
{
public:
    void Set(TFunction function)
    {
        auto shared = function ? std::make_shared<const TFunction>(std::move(function)) : nullptr;
        const std::lock_guard lock(m_mutex);
        m_function.swap(shared);
    }
    /// As it is now, for as long as the result lives; null: there is none.
    std::shared_ptr<const TFunction> Get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_function;
    }

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const TFunction> m_function; ///< guarded by the mutex
};

} // namespace Kesh::CodeAnalyzer
