#include "Components/CAErrorsManager.h"

#include "Base/HostComponent.h"
#include "Components/CAErrorKinds.h"
#include "Components/CAErrorsBar.h"
#include "Components/CAErrorsEvent.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SyntaxParser/IParserComponent.h"

#include <QCoreApplication>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;
using SyntaxParser::CIterator;
using SyntaxParser::SScheme;

void CCAErrorsManager::Init(SDK::IApplication* application, CCAErrorsBar* bar, const QIcon& icon)
{
    m_icon = icon;
    m_bar = bar;
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent");
    parser->GetFindErrorRegionsSignal().connect(
        boost::bind(&CCAErrorsManager::OnFindErrorRegions, this, _1, _2, _3));
}

void CCAErrorsManager::DetachBar()
{
    m_bar = nullptr;
}

void CCAErrorsManager::AddErrors(const std::wstring& file, const std::vector<SCAError>& errors)
{
    if (m_bar && !file.empty() && !errors.empty())
        QCoreApplication::postEvent(m_bar, new CCAErrorsEvent(CCAErrorsEvent::Add, file, errors));
}

void CCAErrorsManager::RemoveErrorsMSG(const std::wstring& file)
{
    if (m_bar)
        QCoreApplication::postEvent(m_bar, new CCAErrorsEvent(CCAErrorsEvent::Remove, file, {}));
}

void CCAErrorsManager::DeliverPosted()
{
    if (m_bar)
        QCoreApplication::sendPostedEvents(m_bar, CCAErrorsEvent::EventType);
}

void CCAErrorsManager::AddErrorsFormBar(const std::wstring& file, const std::vector<SCAError>& errors)
{
    QMutexLocker locker(&m_lock);
    std::vector<SCAError>& stored = m_errors[file];
    stored.insert(stored.end(), errors.begin(), errors.end());
    m_added(file, errors);
}

void CCAErrorsManager::AddErrorsMT(const std::wstring& file, const std::vector<SCAError>& errors)
{
    QMutexLocker locker(&m_lock);
    m_removed(file);
    m_errors[file] = errors;
    m_added(file, errors);
}

void CCAErrorsManager::RemoveErrors(const std::wstring& file)
{
    QMutexLocker locker(&m_lock);
    m_removed(file);
    m_errors.erase(file);
}

void CCAErrorsManager::Clear()
{
    QMutexLocker locker(&m_lock);
    m_errors.clear();
}

void CCAErrorsManager::GetErrors(const std::wstring& file, std::vector<SCAError>& out)
{
    QMutexLocker locker(&m_lock);
    if (const auto found = m_errors.find(file); found != m_errors.end())
        out.assign(found->second.begin(), found->second.end());
}

CCAErrorsManager::ErrorsTable CCAErrorsManager::GetAllErrors()
{
    QMutexLocker locker(&m_lock);
    return m_errors;
}

bool CCAErrorsManager::MayHaveErrors(const std::wstring& file)
{
    // In this order: what is delivered in between is seen by the second look.
    if (CCAErrorsEvent::IsWaiting(file))
        return true;
    QMutexLocker locker(&m_lock);
    const auto found = m_errors.find(file);
    return found != m_errors.end() && !found->second.empty();
}

bool CCAErrorsManager::IsErrorOnLine(const std::wstring& file, int line)
{
    QMutexLocker locker(&m_lock);
    const auto found = m_errors.find(file);
    return found != m_errors.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [line](const SCAError& error) { return error.pos.start.y == line; });
}

QIcon CCAErrorsManager::GetIcon()
{
    return m_icon;
}

void CCAErrorsManager::OnFindErrorRegions(const std::wstring& file, const SScheme& span,
                                          std::vector<SScheme>& out)
{
    QMutexLocker locker(&m_lock);
    const auto found = m_errors.find(file);
    if (found == m_errors.end())
        return;
    // An error that encloses the whole span is not drawn in it.
    for (const SCAError& error : found->second) {
        const auto& [start, end] = error.pos;
        if (span.start <= start && start < span.end)
            out.push_back({start, std::min(end, span.end)});
        else if (span.start < end && end <= span.end)
            out.push_back({std::max(start, span.start), end});
    }
}

std::wstring CCAErrorsManager::GetErrorDescription(const SCAError& error)
{
    return LangSupport::CLangSupport::LoadStr(ErrorMessageKey(error.code));
}

} // namespace Kesh::CodeAnalyzer
