#pragma once

#include "Components/CAErrorsStore.h"
#include "Kesh/CodeAnalyzer/IErrorsManager.h"

#include <QIcon>

namespace Kesh::CodeAnalyzer {

class CCAErrorsBar;

/// The store of errors of a window, whose view is the errors bar. Any thread.
class CCAErrorsManager final : public IErrorsManager, public CErrorsStore
{
public:
    /// The bar is not owned. Raises CCriticalError "Bad sweak pointer" without "IParserComponent". GUI
    /// thread.
    void Init(SDK::IApplication* application, CCAErrorsBar* bar, const QIcon& icon);
    /// The bar is about to die: what is posted from now on goes nowhere. GUI thread, once no worker runs.
    void DetachBar() { DetachView(); }

    bool IsErrorOnLine(const std::wstring& file, int line) override { return HasErrorOnLine(file, line); }
    QIcon GetIcon() override { return m_icon; }

private:
    QIcon m_icon;
};

} // namespace Kesh::CodeAnalyzer
