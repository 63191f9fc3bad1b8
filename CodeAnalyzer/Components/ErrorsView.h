#pragma once

#include <string>
#include <vector>

class QObject;

namespace Kesh::CodeAnalyzer {

struct SHostError;

/// What stands between the workers and the store of errors: it receives what they post, hands it on, and may
/// show what is stored. GUI thread, unless said otherwise.
class IErrorsView
{
public:
    /// Receives each CCAErrorsEvent, and calls that are queued for it. Any thread.
    virtual QObject* Receiver() = 0;

    /// The errors of these files are about to be removed one by one.
    virtual void RemoveErrorsOf(const std::vector<std::wstring>& /*files*/) {}
    /// Between the two the errors of many files come.
    virtual void BeginMany() {}
    virtual void EndMany() {}
    /// Very many errors are about to come some at a time, or all have come.
    virtual void ExpectMany(bool /*many*/) {}
    /// From now on they come so.
    virtual void SetGradual() {}
    virtual void ShowHostErrors(const std::wstring& /*file*/, const std::vector<SHostError>& /*errors*/) {}

protected:
    ~IErrorsView() = default;
};

} // namespace Kesh::CodeAnalyzer
