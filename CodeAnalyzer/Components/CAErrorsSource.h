#pragma once

#include "Components/CAErrorsStore.h"
#include "Diagnostics/Messages.h"
#include "Kesh/CodeAnalyzer/Plugin.h"

namespace Kesh::CodeAnalyzer {

/// Shows the errors store to a host.
class CErrorsSource : public IErrorsSource
{
public:
    explicit CErrorsSource(CErrorsStore& manager) : m_manager(manager) {}

    void GetErrors(const std::wstring& file, std::vector<SCAError>& out) override
    {
        m_manager.GetErrors(file, out);
    }
    std::map<std::wstring, std::vector<SCAError>> GetAllErrors() override { return m_manager.GetAllErrors(); }
    std::vector<SDiagnostic> GetDiagnostics(const std::wstring& file) override
    {
        return m_manager.GetDiagnostics(file);
    }
    void SetDetailed(bool detailed) override { m_manager.SetDetailed(detailed); }
    IDiagnosticTexts& GetTexts() override { return m_texts; }
    AddedSignal& GetAddedSignal() override { return m_manager.GetAddedSignal(); }
    RemovedSignal& GetRemovedSignal() override { return m_manager.GetRemovedSignal(); }
    FailedSignal& GetFailedSignal() override { return m_manager.GetFailedSignal(); }
    CheckBegunSignal& GetCheckBegunSignal() override { return m_manager.GetCheckBegunSignal(); }
    CheckEndedSignal& GetCheckEndedSignal() override { return m_manager.GetCheckEndedSignal(); }
    void ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors) override
    {
        m_manager.ShowHostErrors(file, errors);
    }

private:
    CErrorsStore& m_manager;
    CDiagnosticTexts m_texts;
};

} // namespace Kesh::CodeAnalyzer
