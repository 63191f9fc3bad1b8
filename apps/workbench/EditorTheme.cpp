#include "EditorTheme.h"

#include "CodeEditor.h"

#include <QFontDatabase>
#include <Qsci/qscilexerhtml.h>
#include <cmath>
#include <initializer_list>

namespace Kesh::Workbench {

namespace {

/// The least contrast at which text of this size is easily read.
constexpr double LegibleContrast = 4.5;
constexpr int Styles = 128;

double Luminance(const QColor& color)
{
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& a, const QColor& b)
{
    const double la = Luminance(a), lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor Mixed(const QColor& a, const QColor& b, double share)
{
    const auto mix = [share](double x, double y) { return x + (y - x) * share; };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

/// The colour of a style on this palette. Lexers write plain text in black, which is to be the palette's
/// text.
QColor StyleColor(const QColor& color, const QPalette& palette)
{
    constexpr int DarkestColour = 64; // navy blue and its like carry no meaning that is missed
    return color.value() < DarkestColour ? palette.color(QPalette::Text)
                                         : MakeLegible(color, palette.color(QPalette::Base));
}

void ApplyToLexer(QsciLexer& lexer, const QPalette& palette, const QFont& font)
{
    const QColor paper = palette.color(QPalette::Base);
    lexer.setDefaultFont(font);
    lexer.setDefaultPaper(paper);
    lexer.setDefaultColor(palette.color(QPalette::Text));
    for (int style = 0; style < Styles; ++style) {
        if (lexer.description(style).isEmpty())
            continue;
        QFont styled = font;
        styled.setBold(lexer.defaultFont(style).bold());
        styled.setItalic(lexer.defaultFont(style).italic());
        lexer.setFont(styled, style);
        lexer.setPaper(paper, style);
        lexer.setEolFill(false, style);
        lexer.setColor(StyleColor(lexer.defaultColor(style), palette), style);
    }
    if (qobject_cast<QsciLexerHTML*>(&lexer)) {
        // Which names are right is the validator's to say: red is for errors.
        lexer.setColor(lexer.color(QsciLexerHTML::Tag), QsciLexerHTML::UnknownTag);
        lexer.setColor(lexer.color(QsciLexerHTML::Attribute), QsciLexerHTML::UnknownAttribute);
    }
}

} // namespace

QFont EditorFont(int size)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Without a desktop the system's answer may be a font that is not fixed.
    if (!QFontInfo(font).fixedPitch())
        font.setFamily(QStringLiteral("DejaVu Sans Mono"));
    font.setStyleHint(QFont::TypeWriter);
    font.setPointSize(size);
    return font;
}

QPalette MakePalette(EAppearance appearance, const QPalette& system)
{
    if (appearance == EAppearance::System)
        return system;
    const bool dark = appearance == EAppearance::Dark;
    const QColor window = dark ? QColor(45, 45, 48) : QColor(239, 240, 241);
    const QColor base = dark ? QColor(30, 30, 30) : QColor(Qt::white);
    const QColor text = dark ? QColor(220, 220, 220) : QColor(25, 25, 25);
    QPalette palette(window, window);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, Mixed(base, window, 0.5));
    palette.setColor(QPalette::ToolTipBase, Mixed(base, window, 0.7));
    palette.setColor(QPalette::PlaceholderText, MakeLegible(Mixed(text, base, 0.4), base));
    palette.setColor(QPalette::Highlight, QColor(42, 110, 187));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, MakeLegible(QColor(42, 110, 187), window));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, Mixed(text, window, 0.5));
    return palette;
}

QColor MakeLegible(const QColor& color, const QColor& background)
{
    const QColor extreme = Luminance(background) < 0.18 ? Qt::white : Qt::black;
    QColor legible = color;
    for (int step = 1; step <= 20 && Contrast(legible, background) < LegibleContrast; ++step)
        legible = Mixed(color, extreme, step / 20.0);
    return legible;
}

void ApplyTheme(CCodeEditor& editor, int fontSize)
{
    const QPalette palette = editor.palette();
    const QColor paper = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const QFont font = EditorFont(fontSize);
    editor.SetFontSize(fontSize);
    if (QsciLexer* lexer = editor.lexer())
        ApplyToLexer(*lexer, palette, font);
    else
        editor.setFont(font);
    editor.setPaper(paper);
    editor.setColor(text);
    editor.setCaretForegroundColor(text);
    editor.setCaretLineVisible(true);
    editor.setCaretLineBackgroundColor(Mixed(paper, text, 0.06));
    editor.setSelectionBackgroundColor(palette.color(QPalette::Highlight));
    editor.setSelectionForegroundColor(palette.color(QPalette::HighlightedText));
    editor.setMarginsFont(font);
    editor.setMarginsBackgroundColor(palette.color(QPalette::Window));
    editor.setMarginsForegroundColor(Mixed(text, palette.color(QPalette::Window), 0.35));
    editor.setIndentationGuidesForegroundColor(Mixed(paper, text, 0.3));
    editor.setIndentationGuidesBackgroundColor(paper);
    editor.setFoldMarginColors(palette.color(QPalette::Window), palette.color(QPalette::Window));
    constexpr int FirstFoldMarker = QsciScintillaBase::SC_MARKNUM_FOLDEREND;
    constexpr int LastFoldMarker = QsciScintillaBase::SC_MARKNUM_FOLDEROPEN;
    for (int marker = FirstFoldMarker; marker <= LastFoldMarker; ++marker) {
        // The widget's own functions know only markers that it has handed out.
        editor.SendScintilla(QsciScintillaBase::SCI_MARKERSETFORE, marker, palette.color(QPalette::Window));
        editor.SendScintilla(QsciScintillaBase::SCI_MARKERSETBACK, marker,
                             Mixed(text, palette.color(QPalette::Window), 0.5));
    }
    editor.setMatchedBraceBackgroundColor(Mixed(paper, palette.color(QPalette::Highlight), 0.4));
    editor.setMatchedBraceForegroundColor(text);
    editor.setUnmatchedBraceForegroundColor(MakeLegible(Qt::red, paper));
    editor.setUnmatchedBraceBackgroundColor(paper);
    for (const ESeverity severity : {ESeverity::Error, ESeverity::Warning})
        editor.SetMarkColor(severity, ColorOf(severity, paper));
    editor.UpdateMargins();
}

} // namespace Kesh::Workbench
