#pragma once

#include "Components/CAGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IErrorDetails.h"
#include "Kesh/SDK/IApplication.h"

namespace Kesh::CodeAnalyzer {

/// Reads a text once more to tell what there is to say about its errors.
class CErrorDetails final : public IErrorDetails
{
public:
    explicit CErrorDetails(const CCAGrammarCheck& grammarCheck) : m_grammarCheck(grammarCheck) {}
    /// Not owned. Before it nothing is told.
    void Init(SDK::IApplication* application) { m_application = application; }

    std::vector<SErrorDetails> GetDetails(const std::wstring& path, const std::wstring& factoryName,
                                          const std::wstring& text,
                                          const std::vector<SCAError>& errors) override;

private:
    const CCAGrammarCheck& m_grammarCheck;
    SDK::IApplication* m_application = nullptr;
};

} // namespace Kesh::CodeAnalyzer
