#pragma once

#include <Qsci/qscilexerhtml.h>

namespace Kesh::Workbench {

/// The widget's lexer for HTML with PHP, which knows the PHP of its own youth, with the words of today.
class CHtmlLexer final : public QsciLexerHTML
{
    Q_OBJECT

public:
    explicit CHtmlLexer(QObject* parent) : QsciLexerHTML(parent) { setFoldCompact(false); }

    const char* keywords(int set) const override;
};

} // namespace Kesh::Workbench
