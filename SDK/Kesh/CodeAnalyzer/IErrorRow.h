#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"

#include <QString>
#include <functional>
#include <string>

namespace Kesh::CodeAnalyzer {

/// What an item of the errors bar is beside a row of texts, for a host that wants to know. GUI thread.
class IErrorRow
{
public:
    virtual const std::wstring& GetFile() const = 0;
    virtual SCAError GetError() const = 0;
    /// What its last column says.
    virtual QString GetMessage() const = 0;

protected:
    ~IErrorRow() = default;
};

/// What the errors bar itself is beside a tree of rows. GUI thread.
class IErrorRows
{
public:
    using TPick = std::function<bool(const IErrorRow& row)>;
    /// Which rows are wanted in the list; the others are kept aside. Empty: all are. The rows come and go as
    /// with IProjectCheck::SetGradual() from now on.
    virtual void SetPick(TPick pick) = 0;
    /// Asks again soon, because the answers may have become others: of all rows, or of those of a file.
    virtual void PickAgain() = 0;
    virtual void PickAgain(const std::wstring& file) = 0;
    /// Whether some rows wait for being asked about or put into their places.
    virtual bool IsArranging() const = 0;

protected:
    ~IErrorRows() = default;
};

} // namespace Kesh::CodeAnalyzer
