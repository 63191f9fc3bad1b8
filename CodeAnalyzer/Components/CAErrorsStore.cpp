#include "Components/CAErrorsStore.h"

#include "Base/HostComponent.h"
#include "Components/CAErrorsEvent.h"
#include "Components/ErrorsView.h"
#include "Diagnostics/Messages.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SyntaxParser/IParserComponent.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <utility>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;
using SyntaxParser::CIterator;
using SyntaxParser::SScheme;

void CErrorsStore::Init(SDK::IApplication* application, IErrorsView* view)
{
    m_view = view;
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent");
    parser->GetFindErrorRegionsSignal().connect(
        boost::bind(&CErrorsStore::OnFindErrorRegions, this, _1, _2, _3));
}

void CErrorsStore::DetachView()
{
    m_view = nullptr;
}

void CErrorsStore::AddErrors(const std::wstring& file, const std::vector<SCAError>& errors, TDetails details)
{
    if (!m_view || file.empty() || errors.empty())
        return;
    auto event = std::make_unique<CCAErrorsEvent>(CCAErrorsEvent::Add, file, errors);
    event->SetDetails(std::move(details));
    QCoreApplication::postEvent(m_view->Receiver(), event.release());
}

void CErrorsStore::RemoveErrorsMSG(const std::wstring& file)
{
    if (m_view)
        QCoreApplication::postEvent(m_view->Receiver(), new CCAErrorsEvent(CCAErrorsEvent::Remove, file, {}));
}

void CErrorsStore::RestoreErrors(const std::wstring& file, const std::vector<SCAError>& errors,
                                 TDetails details)
{
    RemoveErrorsMSG(file);
    AddErrors(file, errors, std::move(details));
}

void CErrorsStore::TellFailure(const std::wstring& file, const std::wstring& reason)
{
    // The view does not outlive the store, and what waits for it ends with it.
    if (m_view)
        QMetaObject::invokeMethod(
            m_view->Receiver(), [this, file, reason] { m_failed(file, reason); }, Qt::QueuedConnection);
}

SCheck CErrorsStore::BeginCheck(const std::wstring& file, bool ofDocument)
{
    const SCheck check{file, ++m_checks, ofDocument};
    if (ofDocument)
        m_checkBegun(check);
    return check;
}

void CErrorsStore::EndCheck(const SCheck& check, ECheckEnd end)
{
    if (m_view && !m_checkEnded.empty())
        QMetaObject::invokeMethod(
            m_view->Receiver(), [this, check, end] { m_checkEnded(check, end); }, Qt::QueuedConnection);
}

void CErrorsStore::DeliverPosted()
{
    if (m_view)
        QCoreApplication::sendPostedEvents(m_view->Receiver(), CCAErrorsEvent::EventType);
}

void CErrorsStore::AddErrorsFormBar(const std::wstring& file, const std::vector<SCAError>& errors,
                                    TDetails details)
{
    QMutexLocker locker(&m_lock);
    std::vector<SCAError>& stored = m_errors[file];
    m_details.Append(file, stored.size(), errors.size(), details);
    if (ForgetUntold(file))
        m_added(file, stored);
    stored.insert(stored.end(), errors.begin(), errors.end());
    m_added(file, errors);
}

void CErrorsStore::AddErrorsMT(const std::wstring& file, const std::vector<SCAError>& errors,
                               TDetails details)
{
    QMutexLocker locker(&m_lock);
    ForgetUntold(file);
    m_removed(file);
    m_errors[file] = errors;
    m_details.Replace(file, std::move(details));
    m_added(file, errors);
}

void CErrorsStore::AddErrorsGradually(const std::wstring& file, const std::vector<SCAError>& errors,
                                      TDetails details)
{
    if (!m_view)
        return AddErrorsMT(file, errors, std::move(details));
    QMutexLocker locker(&m_lock);
    m_removed(file);
    m_errors[file] = errors;
    m_details.Replace(file, std::move(details));
    constexpr std::size_t VeryMany = 20000;
    const bool isFirst = m_untold.empty();
    m_untoldErrors = (isFirst ? 0 : m_untoldErrors) + errors.size();
    if (m_untoldErrors > VeryMany && m_untoldErrors - errors.size() <= VeryMany)
        m_view->ExpectMany(true);
    m_untold.insert(file);
    m_toTell.push_back(file);
    if (isFirst)
        QTimer::singleShot(0, m_view->Receiver(), [this] { TellSlice(); });
}

void CErrorsStore::TellSlice()
{
    constexpr int SliceTime = 8; // ms
    QElapsedTimer time;
    time.start();
    while (!m_toTell.empty() && time.elapsed() < SliceTime) {
        const std::wstring file = std::move(m_toTell.front());
        m_toTell.pop_front();
        QMutexLocker locker(&m_lock);
        if (ForgetUntold(file))
            m_added(file, m_errors[file]);
    }
    if (!m_untold.empty())
        QTimer::singleShot(0, m_view->Receiver(), [this] { TellSlice(); });
    else {
        m_toTell.clear();
        m_view->ExpectMany(false);
    }
}

bool CErrorsStore::ForgetUntold(const std::wstring& file)
{
    return m_untold.erase(file) > 0;
}

void CErrorsStore::RemoveErrors(const std::wstring& file)
{
    QMutexLocker locker(&m_lock);
    ForgetUntold(file);
    m_removed(file);
    m_errors.erase(file);
    m_details.Remove(file);
}

void CErrorsStore::RemoveErrorsOf(const std::vector<std::wstring>& files)
{
    // Once the rows are gone, the signals cost nothing.
    if (m_view && !files.empty())
        m_view->RemoveErrorsOf(files);
    for (const std::wstring& file : files)
        RemoveErrors(file);
}

void CErrorsStore::Clear()
{
    QMutexLocker locker(&m_lock);
    m_errors.clear();
    m_details.Clear();
    m_untold.clear();
}

void CErrorsStore::ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors)
{
    if (m_view)
        m_view->ShowHostErrors(file, errors);
}

void CErrorsStore::GetErrors(const std::wstring& file, std::vector<SCAError>& out)
{
    QMutexLocker locker(&m_lock);
    if (const auto found = m_errors.find(file); found != m_errors.end())
        out.assign(found->second.begin(), found->second.end());
}

CErrorsStore::ErrorsTable CErrorsStore::GetAllErrors()
{
    QMutexLocker locker(&m_lock);
    return m_errors;
}

bool CErrorsStore::MayHaveErrors(const std::wstring& file)
{
    // In this order: what is delivered in between is seen by the second look.
    if (CCAErrorsEvent::IsWaiting(file))
        return true;
    QMutexLocker locker(&m_lock);
    const auto found = m_errors.find(file);
    return found != m_errors.end() && !found->second.empty();
}

bool CErrorsStore::HasErrorOnLine(const std::wstring& file, int line)
{
    QMutexLocker locker(&m_lock);
    const auto found = m_errors.find(file);
    return found != m_errors.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [line](const SCAError& error) { return error.pos.start.y == line; });
}

void CErrorsStore::OnFindErrorRegions(const std::wstring& file, const SScheme& span,
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

std::vector<SDiagnostic> CErrorsStore::GetDiagnostics(const std::wstring& file)
{
    QMutexLocker locker(&m_lock);
    std::vector<SDiagnostic> diagnostics;
    const auto found = m_errors.find(file);
    if (found == m_errors.end())
        return diagnostics;
    const TDetails details = m_details.Find(file);
    for (std::size_t i = 0; i < found->second.size(); ++i)
        diagnostics.push_back({found->second[i], details ? (*details)[i] : SDetails()});
    return diagnostics;
}

TDetails CErrorsStore::GetDetails(const std::wstring& file)
{
    QMutexLocker locker(&m_lock);
    return m_details.Find(file);
}

std::wstring CErrorsStore::GetErrorDescription(const SCAError& error)
{
    return TitleOf(error.code);
}

} // namespace Kesh::CodeAnalyzer
