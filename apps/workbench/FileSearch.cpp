#include "FileSearch.h"

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Findings/CheckedFiles.h"
#include "SyntaxParser/SourceText.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <functional>

namespace Kesh::Workbench {

namespace {

constexpr std::size_t MaxBatch = 1000; // a short piece of work for the list
constexpr int DeliveryTime = 50;       // ms
constexpr int MaxLineLength = 300;     // characters of a line that are shown
constexpr int ShownBefore = 80;        // of them in front of what was found

QRegularExpression MakePattern(const SSearchOrder& order)
{
    QString pattern = order.regExp ? order.text : QRegularExpression::escape(order.text);
    if (order.wholeWords)
        pattern = QStringLiteral("\\b(?:%1)\\b").arg(pattern);
    QRegularExpression::PatternOptions options =
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    if (!order.matchCase)
        options |= QRegularExpression::CaseInsensitiveOption;
    return QRegularExpression(pattern, options);
}

/// The position behind `from`, whose place is `at`, in characters and not in units of UTF-16.
SyntaxParser::CIterator Advance(const QString& text, int from, int to, SyntaxParser::CIterator at)
{
    for (int i = from; i < to; ++i) {
        if (text[i] == '\n')
            at = {0, at.y + 1};
        else if (!text[i].isLowSurrogate())
            ++at.x;
    }
    return at;
}

QString ExcerptAround(const QString& text, int start)
{
    const int lineStart = text.lastIndexOf('\n', start - 1) + 1;
    int lineEnd = text.indexOf('\n', start);
    if (lineEnd < 0)
        lineEnd = text.size();
    const int from = start - lineStart > ShownBefore ? start - ShownBefore : lineStart;
    return text.mid(from, std::min(lineEnd - from, MaxLineLength)).simplified();
}

/// The work in the thread.
class CWork
{
public:
    /// The flag is to be taken back once the list has the hits.
    using TFlag = std::shared_ptr<std::atomic<bool>>;
    using TDeliver = std::function<void(std::vector<SSearchHit>, TFlag waits)>;

    CWork(SSearchOrder order, QRegularExpression pattern, std::shared_ptr<std::atomic<bool>> cancelled,
          TDeliver deliver)
        : m_order(std::move(order)),
          m_pattern(std::move(pattern)),
          m_cancelled(std::move(cancelled)),
          m_deliver(std::move(deliver))
    {
    }

    void Run()
    {
        m_pattern.optimize();
        m_sinceDelivery.start();
        for (const std::wstring& file : ProjectManager::FindFiles(m_order.folder, MakeQuery())) {
            if (*m_cancelled || m_hits >= CFileSearch::MaxHits)
                break;
            SearchFile(file);
        }
        Deliver();
    }

    int GetFiles() const { return m_files; }
    bool IsComplete() const { return m_hits < CFileSearch::MaxHits; }

private:
    ProjectManager::SFileQuery MakeQuery()
    {
        ProjectManager::SFileQuery query = Findings::CheckedFiles(m_order.folder, m_order.rules);
        query.takesFile = [this, prefix = m_order.folder + L'/'](const std::wstring& below) {
            const std::wstring path = prefix + below;
            const Findings::TRules rules = m_order.rules->For(path);
            if (rules->settings.Excludes(path))
                return false;
            if (!m_order.files.empty())
                return Configuration::MatchesPathOrFolder(m_order.files, Host::PathToBytes(below));
            return rules->settings.include.empty() || rules->settings.Includes(path);
        };
        query.isCancelled = [this] { return m_cancelled->load(); };
        return query;
    }

    void SearchFile(const std::wstring& file)
    {
        QString text;
        const auto unsaved = m_order.unsaved.find(file);
        if (unsaved != m_order.unsaved.end()) {
            text = QString::fromStdWString(unsaved->second);
        } else {
            try {
                const std::string_view bytes = Host::ReadFileInto(m_bytes, file);
                if (SyntaxParser::LooksBinary(bytes))
                    return;
                text = QString::fromStdWString(SyntaxParser::DecodeSource(bytes));
            } catch (const Base::CWorkError&) {
                return; // has gone, or is not ours to read
            }
        }
        ++m_files;
        SearchText(file, text);
    }

    void SearchText(const std::wstring& file, const QString& text)
    {
        int at = 0;
        SyntaxParser::CIterator place{0, 0};
        for (auto matches = m_pattern.globalMatch(text); matches.hasNext() && !*m_cancelled;) {
            const QRegularExpressionMatch match = matches.next();
            if (match.capturedLength() == 0)
                continue; // nothing to be seen there
            place = Advance(text, at, match.capturedStart(), place);
            at = match.capturedStart();
            m_batch.push_back(
                {file, {place, Advance(text, at, match.capturedEnd(), place)}, ExcerptAround(text, at)});
            if (++m_hits >= CFileSearch::MaxHits)
                return;
            if (m_batch.size() >= MaxBatch || (m_sinceDelivery.elapsed() > DeliveryTime && !*m_waits))
                Deliver();
        }
    }

    void Deliver()
    {
        m_sinceDelivery.restart();
        if (m_batch.empty())
            return;
        while (*m_waits && !*m_cancelled) // the list is to take them one after another
            QThread::msleep(1);
        *m_waits = true;
        m_deliver(std::move(m_batch), m_waits);
        m_batch.clear();
    }

    SSearchOrder m_order;
    QRegularExpression m_pattern;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    TDeliver m_deliver;
    TFlag m_waits = std::make_shared<std::atomic<bool>>(false); ///< the list has not taken the last hits yet
    std::string m_bytes;
    std::vector<SSearchHit> m_batch;
    QElapsedTimer m_sinceDelivery;
    int m_hits = 0;
    int m_files = 0;
};

} // namespace

CFileSearch::CFileSearch() = default;

CFileSearch::~CFileSearch()
{
    Stop();
    for (const auto& thread : m_threads)
        thread->wait();
}

QString CFileSearch::Start(SSearchOrder order)
{
    Stop();
    QRegularExpression pattern = MakePattern(order);
    if (!pattern.isValid())
        return pattern.errorString();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    const auto deliver = [this, cancelled = m_cancelled](std::vector<SSearchHit> hits,
                                                         const CWork::TFlag& waits) {
        QMetaObject::invokeMethod(
            this,
            [this, cancelled, waits, hits = std::move(hits)] {
                if (!*cancelled)
                    emit found(hits);
                *waits = false;
            },
            Qt::QueuedConnection);
    };
    const auto work = std::make_shared<CWork>(std::move(order), std::move(pattern), m_cancelled, deliver);
    QThread* thread = m_threads.emplace_back(QThread::create([work] { work->Run(); })).get();
    connect(thread, &QThread::finished, this, [this, thread, work, cancelled = m_cancelled] {
        thread->wait(); // for what it has counted
        OnEnded(thread, cancelled, work->GetFiles(), work->IsComplete());
    });
    thread->start();
    return {};
}

void CFileSearch::OnEnded(QThread* thread, const std::shared_ptr<std::atomic<bool>>& cancelled, int files,
                          bool complete)
{
    const auto ended = std::find_if(m_threads.begin(), m_threads.end(),
                                    [&](const auto& candidate) { return candidate.get() == thread; });
    ended->release()->deleteLater();
    m_threads.erase(ended);
    if (*cancelled)
        return;
    m_cancelled.reset();
    emit finished(files, complete);
}

void CFileSearch::Stop()
{
    // Its thread ends soon; nobody needs to wait for that.
    if (m_cancelled)
        *m_cancelled = true;
    m_cancelled.reset();
}

} // namespace Kesh::Workbench
