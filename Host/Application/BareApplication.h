#pragma once

#include "Application/ParserComponent.h"
#include "Kesh/SDK/IApplication.h"

#include <boost/make_shared.hpp>

namespace Kesh::Host {

/// The host of checks that are shown to nobody: the parsing service and nothing else. It needs no
/// QApplication.
class CBareApplication : public SDK::IApplication
{
public:
    /// The translations are not owned; null: none.
    explicit CBareApplication(LangSupport::ILangSource* translations = nullptr)
        : m_parser(boost::make_shared<SyntaxParser::CParserComponent>()), m_translations(translations)
    {
    }

    boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> GetComponent(const std::wstring& name) override
    {
        return name == m_parser->GetComponentName() ? m_parser : nullptr;
    }
    SDK::IMainFrame* GetMainFrame() override { return nullptr; }
    SDK::IImageListService* GetImageListService() override { return nullptr; }
    SDK::ISettings* GetSettings() override { return nullptr; }
    SDK::ITimerService* GetTimerService() override { return nullptr; }
    SDK::IThreadService* GetThreadService() override { return nullptr; }
    SDK::IDocumentService* GetDocumentService() override { return nullptr; }
    double GetScaleFactor() override { return 1.0; }
    LangSupport::ILangSource* GetLangSource() override { return m_translations; }

    SyntaxParser::CParserComponent& Parser() { return *m_parser; }

private:
    boost::shared_ptr<SyntaxParser::CParserComponent> m_parser;
    LangSupport::ILangSource* m_translations;
};

} // namespace Kesh::Host
