#pragma once

#include <boost/signals2/signal.hpp>
#include <string>

namespace Kesh::Editor {

/// The text of an open document. GUI thread only.
class IDocBuffer
{
public:
    /// What changed; empty for now, receivers read the buffer when they need it.
    class IChangeContext
    {
    protected:
        ~IChangeContext() = default;
    };
    using ChangeSignal = boost::signals2::signal<void(IChangeContext*)>;

    /// The whole text with its lines joined by `lineBreak`.
    virtual std::wstring GetText(const std::wstring& lineBreak) = 0;
    virtual int GetLinesCount() = 0;
    /// Emitted after every edit.
    virtual ChangeSignal& GetChangeSignal() = 0;

protected:
    ~IDocBuffer() = default;
};

} // namespace Kesh::Editor
