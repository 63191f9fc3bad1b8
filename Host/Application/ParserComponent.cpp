#include "Application/ParserComponent.h"

#include "Base/Exception.h"
#include "Editor/BufferReader.h"
#include "Files/Fault.h"
#include "Files/FileIO.h"
#include "Kesh/SDK/IDocument.h"
#include "SyntaxParser/CompletionData.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace Kesh::SyntaxParser {

CDefRegions* CParserComponent::GetDefRegions()
{
    return SyntaxParser::GetDefRegions();
}

const ICompletionData* CParserComponent::GetCompletionData()
{
    const ICompletionData* widened = m_names;
    return widened ? widened : GetBuiltInCompletionData();
}

void CParserComponent::SetOwnNames(const SOwnNames& names)
{
    if (names == m_ownNames)
        return;
    m_ownNames = names;
    if (names.IsEmpty()) {
        m_names = nullptr;
        return;
    }
    auto known = std::find_if(m_widened.begin(), m_widened.end(),
                              [&](const auto& widened) { return widened.first == names; });
    if (known == m_widened.end())
        known = m_widened.emplace(known, names, MakeWidenedData(*GetBuiltInCompletionData(), names));
    m_names = known->second.get();
}

ISynRegion* CParserComponent::GetPropertyNameKind() const
{
    return GetCssPropertyNameKind();
}

ISynRegion* CParserComponent::GetElementNameKind() const
{
    return GetCssElementNameKind();
}

boost::shared_ptr<ISPDocument> CParserComponent::CreateDocument(boost::shared_ptr<IReader> reader,
                                                                const std::wstring& path,
                                                                const std::wstring& factoryName)
{
    return Make(std::move(reader), path, factoryName, false);
}

boost::shared_ptr<ISPDocument> CParserComponent::Make(boost::shared_ptr<IReader> reader,
                                                      const std::wstring& path,
                                                      const std::wstring& factoryName, bool ofFile) const
{
    SDocumentSource source{path, factoryName};
    Choose(source);
    if (!ofFile) {
        const std::lock_guard lock(m_pathsMutex);
        if (const auto open = m_openPaths.find(path); open != m_openPaths.end())
            source.giveUp = open->second;
    }
    return MakeSPDocument(std::move(reader), source);
}

void CParserComponent::SetFileChoices(SFileChoices choices)
{
    auto shared = std::make_shared<const SFileChoices>(std::move(choices));
    const std::lock_guard lock(m_choicesMutex);
    m_choices = std::move(shared);
}

std::shared_ptr<const SFileChoices> CParserComponent::FileChoices() const
{
    const std::lock_guard lock(m_choicesMutex);
    return m_choices;
}

void CParserComponent::Choose(SDocumentSource& source) const
{
    const auto choices = FileChoices();
    source.shortTags = !choices->hasShortTags || choices->hasShortTags(source.path);
    if (choices->ownNames)
        source.names = choices->ownNames(source.path);
    source.hasMark = [path = source.path] { return BeginsWithMark(Host::ReadFileStart(path, 3)); };
}

std::wstring CParserComponent::FactoryOfFile(const std::wstring& path)
{
    std::wstring factory = FactoryForPath(path);
    if (!factory.empty())
        return factory;
    const auto choices = FileChoices();
    return choices->isPhp && choices->isPhp(path) ? L"PHPSPDocFactory" : L"";
}

boost::shared_ptr<ISPDocument> CParserComponent::GetParsedDocument(const std::wstring& path)
{
    if (m_fileHook)
        m_fileHook(path);
    const std::wstring factory = FactoryOfFile(path);
    if (factory.empty() || IsOpen(path))
        return {};
    try {
        const std::string bytes = Host::ReadFileBytes(path);
        if (HoldsNoSource(bytes))
            return {};
        auto reader = boost::make_shared<CTextReader>(std::wstring());
        reader->Decode(bytes);
        return Make(std::move(reader), path, factory, true);
    } catch (const Base::CWorkError&) {
        return {};
    }
}

boost::shared_ptr<ISPDocument> CParserComponent::GetSPDocument(SDK::IDocument* document)
{
    const auto found = m_opened.find(document);
    return found == m_opened.end() ? boost::shared_ptr<ISPDocument>() : found->second.syntax;
}

void CParserComponent::OpenDocument(SDK::IDocument* document, const std::wstring& factoryName)
{
    const std::wstring path = document->GetPath();
    SOpened& opened = m_opened[document];
    opened.path = path;
    {
        const std::lock_guard lock(m_pathsMutex);
        m_openPaths[path] = std::make_shared<std::atomic<bool>>(false);
    }
    Editor::IDocBuffer* buffer = document->GetBuffer();
    if (factoryName.empty() || !buffer)
        return;
    SDocumentSource source{path, factoryName, document, buffer};
    Choose(source);
    const boost::shared_ptr<ISPDocument> syntax = MakeSPDocument(Editor::MakeBufferReader(buffer), source);
    opened.syntax = syntax;
    if (syntax)
        Host::Guard(L"open document", [&] { m_docCreated(syntax); });
}

void CParserComponent::CloseDocument(SDK::IDocument* document, bool wanted)
{
    const auto found = m_opened.find(document);
    if (found == m_opened.end())
        return;
    if (const boost::shared_ptr<ISPDocument> syntax = found->second.syntax)
        Host::Guard(L"close document", [&] { syntax->GetDocDestroySignal()(document); });
    {
        const std::lock_guard lock(m_pathsMutex);
        // From here on the checker begins no other parse.
        if (const auto open = m_openPaths.extract(found->second.path); open && !wanted)
            *open.mapped() = true;
    }
    m_opened.erase(found);
}

bool CParserComponent::IsOpen(const std::wstring& path)
{
    const std::lock_guard lock(m_pathsMutex);
    return m_openPaths.count(path) != 0;
}

} // namespace Kesh::SyntaxParser
