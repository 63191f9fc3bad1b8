#include "Application/Application.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "Editor/TextFile.h"
#include "Files/FilePath.h"
#include "FormatChoice.h"
#include "MessageStrip.h"
#include "Prompts.h"
#include "Texts.h"

#include <QFile>

namespace Kesh::Workbench {

using SyntaxParser::EEncoding;
using SyntaxParser::SSourceFormat;

namespace {

constexpr qint64 LookedAt = 8000; // bytes

QString NameOf(Host::CDocument& document)
{
    return Host::PathToQt(Host::FileName(document.GetPath()));
}

} // namespace

std::wstring CDocumentArea::Refuse(const std::wstring& path)
{
    QFile file(Host::PathToQt(path));
    // What cannot be read is told by whoever reads it; a pipe would wait for its other end.
    if (Host::StampOf(path).size <= 0 || !file.open(QIODevice::ReadOnly) ||
        !SyntaxParser::LooksBinary(file.read(LookedAt).toStdString()))
        return {};
    m_refused = path;
    return Tr("a binary file").toStdWString();
}

void CDocumentArea::OpenAnyway(const std::wstring& path)
{
    try {
        m_application.Documents().OpenFile(path).GetView()->Activate();
    } catch (const Base::CWorkError& fault) {
        Report(path, fault.GetMessage());
    }
}

void CDocumentArea::Report(const std::wstring& path, const std::wstring& reason)
{
    const QString shown = Host::PathToQt(path);
    std::vector<CMessageStrip::SAnswer> answers;
    if (path == m_refused)
        answers.push_back({Tr("&Open anyway"), [this, path] { OpenAnyway(path); }});
    m_refused.clear();
    m_strip->Show(shown + QStringLiteral(": ") + QString::fromStdWString(reason), std::move(answers), shown);
}

void CDocumentArea::ReportUnsaved(const std::wstring& path, const std::wstring& reason)
{
    const QString shown = Host::PathToQt(path);
    std::vector<CMessageStrip::SAnswer> answers;
    answers.push_back({Tr("Save elsewhere..."), [this, path] {
                           if (Host::CDocument* still = m_application.Documents().Find(path))
                               SaveAs(*still);
                       }});
    m_strip->Withdraw(shown);
    m_strip->Show(Tr("Cannot save %1: %2").arg(shown, QString::fromStdWString(reason)), std::move(answers),
                  shown);
}

void CDocumentArea::TellOfLineEnds(Host::CDocument& document)
{
    if (!document.GetFormat().mixedLineEnds)
        return;
    m_strip->Show(Tr("%1 has line ends of several kinds. Saving makes all of them %2.")
                      .arg(NameOf(document), LineEndName(document.GetFormat().lineEnd)),
                  {}, Host::PathToQt(document.GetPath()));
}

bool CDocumentArea::ReopenWith(Host::CDocument& document, EEncoding encoding)
{
    if (document.IsModified() &&
        !m_prompts->Confirm(Tr("Reopening %1 discards its unsaved changes.").arg(NameOf(document)),
                            Tr("&Discard")))
        return false;
    LoadKeepingPlace(document, [&] { document.LoadAs(encoding); });
    return true;
}

void CDocumentArea::ChangeFormat(Host::CDocument& document, const SSourceFormat& format)
{
    document.SetFormat(format);
    m_strip->Withdraw(Host::PathToQt(document.GetPath()));
    CanWrite(document);
    if (CCodeEditor* editor = FindEditor(document.GetPath()))
        UpdateTitle(editor);
}

bool CDocumentArea::CanWrite(Host::CDocument& document)
{
    if (!SyntaxParser::IsSingleByte(document.GetFormat().encoding))
        return true;
    const std::wstring path = document.GetPath();
    const std::wstring text = document.GetBuffer()->GetText(L"\n");
    const auto place = Editor::FindUnwritable(text, document.GetFormat().encoding);
    if (!place)
        return true;
    std::size_t at = 0;
    for (std::int64_t line = 0; line < place->y; ++line)
        at = text.find(L'\n', at) + 1;
    const wchar_t character = text[at + static_cast<std::size_t>(place->x)];
    const auto ifOpen = [this, path](auto action) {
        return [this, path, action] {
            if (Host::CDocument* still = m_application.Documents().Find(path))
                action(*still);
        };
    };
    m_strip->Withdraw(Host::PathToQt(path));
    m_strip->Show(
        Tr("%1 cannot be written as %2: line %3 has the character '%4', which does not exist there.")
            .arg(NameOf(document), EncodingName(document.GetFormat()))
            .arg(place->y + 1)
            .arg(QString::fromWCharArray(&character, 1)),
        {{Tr("&Go there"),
          ifOpen([this, place](Host::CDocument& still) { OpenAt(still.GetPath(), *place); })},
         {Tr("Write as &UTF-8"), ifOpen([this](Host::CDocument& still) {
              SSourceFormat format = still.GetFormat();
              format.encoding = EEncoding::Utf8;
              ChangeFormat(still, format);
          })}},
        Host::PathToQt(path));
    return false;
}

} // namespace Kesh::Workbench
