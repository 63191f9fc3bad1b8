#include "Comparison.h"

#include "Application/Document.h"
#include "DialogSize.h"
#include "EditorTheme.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "SyntaxParser/SourceText.h"
#include "Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSyntaxHighlighter>
#include <QVBoxLayout>
#include <algorithm>
#include <dtl/dtl.hpp>
#include <vector>

namespace Kesh::Workbench {

namespace {

using TLines = std::vector<QString>;

constexpr int Around = 3;                 // lines that stay
constexpr std::size_t MaxCompared = 4000; // lines

TLines LinesOf(const QString& text)
{
    const QStringList lines = text.split('\n');
    return {lines.begin(), lines.end()};
}

/// All of the lines, those that stay among them; where some were replaced, the old ones come first.
QStringList Differences(const TLines& before, const TLines& after)
{
    QStringList all, added;
    const auto endRun = [&] {
        all += added;
        added.clear();
    };
    if (before.size() + after.size() > MaxCompared) {
        for (const QString& line : before)
            all.append('-' + line);
        for (const QString& line : after)
            all.append('+' + line);
        return all;
    }
    dtl::Diff<QString, TLines> diff(before, after);
    diff.compose();
    for (const auto& [line, step] : diff.getSes().getSequence()) {
        if (step.type == dtl::SES_COMMON)
            endRun();
        (step.type == dtl::SES_ADD ? added : all)
            .append((step.type == dtl::SES_ADD      ? '+'
                     : step.type == dtl::SES_DELETE ? '-'
                                                    : ' ') +
                    line);
    }
    endRun();
    return all;
}

class CHighlighter final : public QSyntaxHighlighter
{
public:
    CHighlighter(QTextDocument& text, const QColor& paper)
        : QSyntaxHighlighter(&text),
          m_removed(MakeLegible(QColor(200, 40, 40), paper)),
          m_added(MakeLegible(QColor(20, 130, 40), paper))
    {
    }

protected:
    void highlightBlock(const QString& line) override
    {
        if (line.startsWith('-') || line.startsWith('+'))
            setFormat(0, line.size(), line.startsWith('-') ? m_removed : m_added);
    }

private:
    QColor m_removed;
    QColor m_added;
};

} // namespace

QStringList CompareLines(const QString& before, const QString& after)
{
    const TLines old = LinesOf(before), now = LinesOf(after);
    const std::size_t least = std::min(old.size(), now.size());
    std::size_t front = 0, back = 0;
    while (front < least && old[front] == now[front])
        ++front;
    while (back < least - front && old[old.size() - 1 - back] == now[now.size() - 1 - back])
        ++back;
    const auto middle = [&](const TLines& lines) {
        return TLines(lines.begin() + static_cast<std::ptrdiff_t>(front),
                      lines.end() - static_cast<std::ptrdiff_t>(back));
    };
    QStringList all;
    for (std::size_t i = front - std::min<std::size_t>(front, Around); i < front; ++i)
        all.append(' ' + old[i]);
    all += Differences(middle(old), middle(now));
    for (std::size_t i = 0; i < std::min<std::size_t>(back, Around); ++i)
        all.append(' ' + old[old.size() - back + i]);
    // Of long stretches that stay only their ends are of interest.
    QStringList shown;
    const QString gap = QStringLiteral("...");
    if (front > Around)
        shown.append(gap);
    int last = -1; // line that differs
    for (int i = 0; i < all.size(); ++i) {
        const int next = i + Around < all.size() ? i + Around : all.size() - 1;
        if (!all[i].startsWith(' '))
            last = i;
        bool isNear = last >= 0 && i - last <= Around;
        for (int ahead = i; !isNear && ahead <= next; ++ahead)
            isNear = !all[ahead].startsWith(' ');
        if (isNear)
            shown.append(all[i]);
        else if (shown.isEmpty() || shown.last() != gap)
            shown.append(gap);
    }
    if (back > Around)
        shown.append(gap);
    return shown;
}

void ShowComparison(Host::CDocument& document, int fontSize, QWidget* parent)
{
    const std::wstring path = document.GetPath();
    const QString disk = QString::fromStdWString(SyntaxParser::DecodeSource(Host::ReadFileBytes(path)));
    const QString here = QString::fromStdWString(document.GetBuffer()->GetText(L"\n"));
    auto* dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("comparison"));
    dialog->setWindowTitle(Tr("Differences in %1").arg(Host::PathToQt(Host::FileName(path))));
    auto* legend = new QLabel(Tr("- as it is on disk") + '\n' + Tr("+ as it is here"));
    auto* text = new QPlainTextEdit(CompareLines(disk, here).join('\n'));
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(EditorFont(fontSize));
    text->setAccessibleName(dialog->windowTitle());
    new CHighlighter(*text->document(), text->palette().color(QPalette::Base));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(Tr("Close"));
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(legend);
    layout->addWidget(text);
    layout->addWidget(buttons);
    ResizeOnScreen(*dialog,
                   {dialog->fontMetrics().averageCharWidth() * 100, dialog->fontMetrics().height() * 26});
    dialog->show();
}

} // namespace Kesh::Workbench
