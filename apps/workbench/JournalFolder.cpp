#include "JournalFolder.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>

namespace Kesh::Workbench {

namespace fs = std::filesystem;
using SyntaxParser::SSourceFormat;

namespace {

const std::string LockName = "lock";
const std::string SessionName = "session.json";
const std::string TextEnding = ".text";
const std::string FolderPrefix = "window-";
const std::string UnreadyPrefix = "new-"; ///< of a folder whose lock is not held yet

[[noreturn]] void Fail(const std::string& reason, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(reason), line, "apps/workbench/JournalFolder");
}

void MakeFolder(const std::string& path)
{
    // What was nobody else's to read stays so.
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        Fail(std::strerror(errno), __LINE__);
}

/// Nothing when another window has it.
std::optional<Host::CDescriptor> Lock(const std::string& folder, int flags)
{
    Host::CDescriptor file(::open((folder + '/' + LockName).c_str(), O_RDWR | O_CLOEXEC | flags, 0600));
    if (!file || ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return file;
}

/// JSON knows no bytes that are no text, which file names may have.
QString PathToJson(const std::wstring& path)
{
    return QString::fromLatin1(QByteArray::fromStdString(Host::PathToBytes(path)).toPercentEncoding("/"));
}

std::wstring PathFromJson(const QJsonValue& value)
{
    return Host::PathFromBytes(QByteArray::fromPercentEncoding(value.toString().toLatin1()).toStdString());
}

QJsonObject ToJson(const SUnsavedText& text)
{
    const Host::SFileStamp& stamp = text.base.stamp;
    const auto number = [](long long value) { return QString::number(value); };
    return {{"path", PathToJson(text.path)},
            {"noted", number(text.noted)},
            {"encoding", static_cast<int>(text.format.encoding)},
            {"byteOrderMark", text.format.byteOrderMark},
            {"lineEnd", static_cast<int>(text.format.lineEnd)},
            {"stamp", QJsonArray{number(stamp.seconds), number(stamp.nanoseconds), number(stamp.size),
                                 number(stamp.changeSeconds), number(stamp.changeNanoseconds),
                                 number(stamp.inode), number(stamp.device)}},
            {"hash", QString::fromLatin1(text.base.hash.toHex())}};
}

SUnsavedText TextFromJson(const QJsonObject& json)
{
    SUnsavedText text;
    text.path = PathFromJson(json["path"]);
    text.noted = json["noted"].toString().toLongLong();
    text.format.encoding = static_cast<SyntaxParser::EEncoding>(json["encoding"].toInt());
    text.format.byteOrderMark = json["byteOrderMark"].toBool();
    text.format.lineEnd = static_cast<SSourceFormat::ELineEnd>(json["lineEnd"].toInt());
    const QJsonArray stamp = json["stamp"].toArray();
    Host::SFileStamp& to = text.base.stamp;
    int at = 0;
    for (long long* part : {&to.seconds, &to.nanoseconds, &to.size, &to.changeSeconds, &to.changeNanoseconds,
                            &to.inode, &to.device})
        *part = stamp[at++].toString().toLongLong();
    text.base.hash = QByteArray::fromHex(json["hash"].toString().toLatin1());
    return text;
}

QJsonObject ToJson(const SSession& session)
{
    QJsonArray files;
    for (const SSession::SFile& file : session.files) {
        QJsonArray folds;
        for (const int line : file.folds)
            folds.append(line);
        files.append(QJsonObject{{"path", PathToJson(Host::PathFromQt(file.path))},
                                 {"line", file.line},
                                 {"column", file.column},
                                 {"folds", folds}});
    }
    return {{"project", PathToJson(Host::PathFromQt(session.project))},
            {"current", session.current},
            {"files", files}};
}

SSession SessionFromJson(const QJsonObject& json)
{
    SSession session;
    session.project = Host::PathToQt(PathFromJson(json["project"]));
    session.current = json["current"].toInt(-1);
    for (const QJsonValue& value : json["files"].toArray()) {
        SSession::SFile file{
            Host::PathToQt(PathFromJson(value["path"])), value["line"].toInt(), value["column"].toInt(), {}};
        for (const QJsonValue& line : value["folds"].toArray())
            file.folds.append(line.toInt());
        session.files.push_back(file);
    }
    return session;
}

QByteArray Compact(const QJsonObject& json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

/// Throws when it is no such file.
QJsonObject Parsed(std::string_view bytes)
{
    const auto document = QJsonDocument::fromJson(QByteArray(bytes.data(), static_cast<int>(bytes.size())));
    if (!document.isObject())
        Fail("is no journal", __LINE__);
    return document.object();
}

SUnsavedText ReadText(const std::wstring& file)
{
    std::string bytes = Host::ReadFileBytes(file);
    const std::size_t end = bytes.find('\n');
    if (end == std::string::npos)
        Fail("is no journal", __LINE__);
    SUnsavedText text = TextFromJson(Parsed(std::string_view(bytes).substr(0, end)));
    text.text = bytes.substr(end + 1);
    return text;
}

} // namespace

CJournalFolder CJournalFolder::Create(const std::wstring& place)
{
    const std::string parent = Host::PathToBytes(place);
    std::error_code ignored;
    fs::create_directories(fs::path(parent).parent_path(), ignored);
    MakeFolder(parent);
    const std::string name = QUuid::createUuid().toString(QUuid::Id128).toStdString();
    const std::string unready = parent + '/' + UnreadyPrefix + name;
    const std::string folder = parent + '/' + FolderPrefix + name;
    MakeFolder(unready);
    std::optional<Host::CDescriptor> lock = Lock(unready, O_CREAT);
    // Only now others may find it.
    if (!lock || ::rename(unready.c_str(), folder.c_str()) != 0)
        Fail(std::strerror(errno), __LINE__);
    return CJournalFolder(Host::PathFromBytes(folder), std::move(*lock));
}

std::vector<CJournalFolder> CJournalFolder::TakeAbandoned(const std::wstring& place)
{
    std::vector<CJournalFolder> taken;
    std::error_code error;
    for (fs::directory_iterator entry(Host::PathToBytes(place), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path().string();
        if (!entry->path().filename().string().starts_with(FolderPrefix))
            continue;
        if (std::optional<Host::CDescriptor> lock = Lock(path, 0))
            taken.push_back(CJournalFolder(Host::PathFromBytes(path), std::move(*lock)));
    }
    return taken;
}

void CJournalFolder::WriteText(int number, const SUnsavedText& text) const
{
    Host::CFileReplacement file(m_path + L'/' + std::to_wstring(number) +
                                Base::CCommonString::FromUtf8(TextEnding));
    const QByteArray head = Compact(ToJson(text));
    file.Write({head.constData(), static_cast<std::size_t>(head.size())});
    file.Write("\n");
    file.Write(text.text);
    file.Commit();
}

void CJournalFolder::RemoveText(int number) const
{
    const std::string file = Host::PathToBytes(m_path) + '/' + std::to_string(number) + TextEnding;
    if (::unlink(file.c_str()) != 0 && errno != ENOENT)
        Fail(std::strerror(errno), __LINE__);
}

void CJournalFolder::WriteSession(const SSession& session, bool isKept) const
{
    QJsonObject json = ToJson(session);
    json["noted"] = QString::number(QDateTime::currentMSecsSinceEpoch());
    json["isKept"] = isKept;
    Host::WriteFileBytes(m_path + L'/' + Base::CCommonString::FromUtf8(SessionName),
                         Compact(json).toStdString());
}

SJournal CJournalFolder::Read(bool& isComplete) const
{
    SJournal journal;
    isComplete = true;
    const std::string folder = Host::PathToBytes(m_path);
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const std::wstring file = Host::PathFromBytes(entry->path().string());
        try {
            if (name == SessionName) {
                const QJsonObject json = Parsed(Host::ReadFileBytes(file));
                journal.session = SessionFromJson(json);
                journal.noted = json["noted"].toString().toLongLong();
                journal.isKept = json["isKept"].toBool();
            } else if (name.ends_with(TextEnding)) {
                journal.texts.push_back(ReadText(file));
            }
        } catch (const Base::CWorkError&) {
            isComplete = false;
        }
    }
    isComplete = isComplete && !error;
    std::sort(journal.texts.begin(), journal.texts.end(),
              [](const SUnsavedText& a, const SUnsavedText& b) { return a.noted < b.noted; });
    return journal;
}

void CJournalFolder::Remove()
{
    std::error_code ignored;
    fs::remove_all(Host::PathToBytes(m_path), ignored);
    m_lock = Host::CDescriptor();
}

} // namespace Kesh::Workbench
