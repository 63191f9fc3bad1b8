#pragma once

#include "SyntaxParser/SourceText.h"

#include <QMenu>
#include <QObject>
#include <QString>

namespace Kesh::Workbench {

class CDocumentArea;

/// The menus that show how the file in front is written, and change it. GUI thread only.
class CFormatChoice final : public QObject
{
    Q_OBJECT

public:
    /// The area is not owned and outlives this.
    explicit CFormatChoice(CDocumentArea& area);

    QMenu& GetEncodingMenu() { return m_encodings; }
    QMenu& GetLineEndMenu() { return m_lineEnds; }

private:
    void FillEncodings();
    void FillLineEnds();

    CDocumentArea& m_area;
    QMenu m_encodings;
    QMenu m_saveWith;
    QMenu m_reopenWith;
    QMenu m_lineEnds;
};

/// As the user knows it: "UTF-8 BOM".
QString EncodingName(const SyntaxParser::SSourceFormat& format);
QString LineEndName(SyntaxParser::SSourceFormat::ELineEnd lineEnd);

} // namespace Kesh::Workbench
