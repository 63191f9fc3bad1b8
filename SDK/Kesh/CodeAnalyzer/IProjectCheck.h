#pragma once

namespace Kesh::CodeAnalyzer {

/// What a host may ask of the project check beyond what it does by itself. GUI thread.
class IProjectCheck
{
public:
    /// Whether every project file is checked as an open document is, in all its languages and of any size,
    /// instead of the PHP files alone. Off until a host asks; holds for checks that begin afterwards.
    virtual void SetComplete(bool complete) = 0;
    /// Ends a check that runs, soon.
    virtual void Stop() = 0;
    /// Whether very many errors must not stop the window: those that were kept with a project are read and
    /// written in a thread, through IProjectManager::GetProjectData(), and rows come into the list, and into
    /// another order, some at a time, when the event loop has nothing else to do. Off until a host asks.
    virtual void SetGradual(bool gradual) = 0;

protected:
    ~IProjectCheck() = default;
};

} // namespace Kesh::CodeAnalyzer
