#pragma once

#include "Components/ErrorsView.h"

#include <QObject>

namespace Kesh::CodeAnalyzer {

class CErrorsStore;

/// Takes what workers post to the store of errors, where there is no window to show it. GUI thread.
class CErrorsInbox final : public QObject, public IErrorsView
{
public:
    /// The store is not owned.
    explicit CErrorsInbox(CErrorsStore& store) : m_store(store) {}
    QObject* Receiver() override { return this; }
    bool event(QEvent* e) override;

private:
    CErrorsStore& m_store;
};

} // namespace Kesh::CodeAnalyzer
