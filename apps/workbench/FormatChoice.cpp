#include "FormatChoice.h"

#include "Application/Document.h"
#include "DocumentArea.h"
#include "Texts.h"

namespace Kesh::Workbench {

using SyntaxParser::EEncoding;
using SyntaxParser::SSourceFormat;

namespace {

struct SChoice
{
    EEncoding encoding;
    bool byteOrderMark;
};

/// UTF-16 goes by its mark: without it nobody else would know the text for one.
constexpr SChoice Choices[] = {{EEncoding::Utf8, false},       {EEncoding::Utf8, true},
                               {EEncoding::Utf16Little, true}, {EEncoding::Utf16Big, true},
                               {EEncoding::Latin1, false},     {EEncoding::Windows1252, false}};

} // namespace

QString EncodingName(const SSourceFormat& format)
{
    switch (format.encoding) {
    case EEncoding::Utf16Little: return QStringLiteral("UTF-16 LE");
    case EEncoding::Utf16Big: return QStringLiteral("UTF-16 BE");
    case EEncoding::Latin1: return QStringLiteral("Latin-1");
    case EEncoding::Windows1252: return QStringLiteral("Windows-1252");
    default: return format.byteOrderMark ? QStringLiteral("UTF-8 BOM") : QStringLiteral("UTF-8");
    }
}

QString LineEndName(SSourceFormat::ELineEnd lineEnd)
{
    switch (lineEnd) {
    case SSourceFormat::ELineEnd::CrLf: return QStringLiteral("CR LF");
    case SSourceFormat::ELineEnd::Cr: return QStringLiteral("CR");
    default: return QStringLiteral("LF");
    }
}

CFormatChoice::CFormatChoice(CDocumentArea& area) : m_area(area)
{
    m_encodings.setObjectName(QStringLiteral("encodings"));
    m_encodings.setTitle(Tr("&Encoding"));
    m_saveWith.setTitle(Tr("&Save with"));
    m_reopenWith.setTitle(Tr("&Reopen with"));
    m_encodings.addMenu(&m_saveWith);
    m_encodings.addMenu(&m_reopenWith);
    m_lineEnds.setObjectName(QStringLiteral("lineEnds"));
    m_lineEnds.setTitle(Tr("Line en&ds"));
    connect(&m_encodings, &QMenu::aboutToShow, this, &CFormatChoice::FillEncodings);
    connect(&m_lineEnds, &QMenu::aboutToShow, this, &CFormatChoice::FillLineEnds);
}

void CFormatChoice::FillEncodings()
{
    m_saveWith.clear();
    m_reopenWith.clear();
    Host::CDocument* document = m_area.GetCurrent();
    if (!document)
        return;
    const QString present = EncodingName(document->GetFormat());
    for (const SChoice& choice : Choices) {
        SSourceFormat format = document->GetFormat();
        format.encoding = choice.encoding;
        format.byteOrderMark = choice.byteOrderMark;
        QAction* action = m_saveWith.addAction(EncodingName(format), this, [this, format] {
            if (Host::CDocument* current = m_area.GetCurrent())
                m_area.ChangeFormat(*current, format);
        });
        action->setCheckable(true);
        action->setChecked(action->text() == present);
    }
    for (const SChoice& choice : Choices) {
        if (choice.encoding == EEncoding::Utf8 && choice.byteOrderMark)
            continue; // a mark is found anyway
        const QString name = EncodingName({choice.encoding});
        m_reopenWith.addAction(name, this, [this, encoding = choice.encoding] {
            if (Host::CDocument* current = m_area.GetCurrent())
                m_area.ReopenWith(*current, encoding);
        });
    }
}

void CFormatChoice::FillLineEnds()
{
    using ELineEnd = SSourceFormat::ELineEnd;
    m_lineEnds.clear();
    Host::CDocument* document = m_area.GetCurrent();
    if (!document)
        return;
    for (const ELineEnd lineEnd : {ELineEnd::Lf, ELineEnd::CrLf, ELineEnd::Cr}) {
        QAction* action = m_lineEnds.addAction(LineEndName(lineEnd), this, [this, lineEnd] {
            if (Host::CDocument* current = m_area.GetCurrent()) {
                SSourceFormat format = current->GetFormat();
                format.lineEnd = lineEnd;
                format.mixedLineEnds = false;
                m_area.ChangeFormat(*current, format);
            }
        });
        action->setCheckable(true);
        action->setChecked(lineEnd == document->GetFormat().lineEnd && !document->GetFormat().mixedLineEnds);
    }
}

} // namespace Kesh::Workbench
