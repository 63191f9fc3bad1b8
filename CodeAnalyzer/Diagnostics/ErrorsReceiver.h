#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Takes what the checkers find, on the thread that checks.
class IErrorsReceiver
{
public:
    /// Errors of a file, in addition to those it has brought before, and what is known of them.
    virtual void AddErrors(const std::wstring& file, const std::vector<SCAError>& errors,
                           TDetails details = nullptr) = 0;

protected:
    ~IErrorsReceiver() = default;
};

/// Tells checkers under which name the errors of their document are to be reported.
class ICheckOwner
{
public:
    /// Any thread.
    virtual std::wstring GetFilePath() const = 0;

protected:
    ~ICheckOwner() = default;
};

} // namespace Kesh::CodeAnalyzer
