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
    /// Whether the stored errors follow the files closely: those of files that have gone, have grown too
    /// large or have left the project are removed; the file of a document that was closed with edits that
    /// nobody saved is checked; open documents are checked again when their project has been opened; the
    /// progress text goes with the check, which waits for a GUI thread that is far behind with what it has
    /// found. Off until a host asks.
    virtual void SetThorough(bool thorough) = 0;

protected:
    ~IProjectCheck() = default;
};

} // namespace Kesh::CodeAnalyzer
