#include "Commands.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"

#include <QFile>
#include <QStringList>
#include <cstdio>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

constexpr const char* Page = ":/documents/errors.md";

/// The sections of the list of errors by code: from its heading to the next one.
QStringList SectionOf(const QStringList& lines, const QString& code)
{
    const int begin = lines.indexOf("## " + code);
    if (begin < 0)
        return {};
    int end = begin + 1;
    while (end < lines.size() && !lines[end].startsWith("## "))
        ++end;
    return lines.mid(begin, end - begin);
}

/// Markdown as a terminal shows it.
void Print(const QStringList& section, bool colored)
{
    const QString bold = colored ? "\x1B[1m" : "";
    const QString plain = colored ? "\x1B[0m" : "";
    bool code = false;
    QString text;
    for (const QString& line : section) {
        if (line.startsWith("```"))
            code = !code;
        else if (code)
            text += "    " + line + '\n';
        else if (line.startsWith("## "))
            text += bold + "Error " + line.mid(3) + plain + '\n';
        else
            text += QString(line).remove("**") + '\n';
    }
    const std::string bytes = text.trimmed().toStdString() + '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

} // namespace

int RunExplain(const SOptions& options)
{
    QFile file(Page);
    file.open(QIODevice::ReadOnly);
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    const QStringList section = SectionOf(lines, Host::PathToQt(Host::PathFromBytes(options.code)).trimmed());
    if (section.isEmpty()) {
        QStringList codes;
        for (const QString& line : lines)
            if (line.startsWith("## ") && line.size() > 3 && line[3].isDigit())
                codes += line.mid(3);
        std::fprintf(stderr, "code-analyzer: there is no error \"%s\"; the errors are %s\n",
                     Printable(Host::PathFromBytes(options.code)).c_str(),
                     codes.join(", ").toUtf8().constData());
        return ExitFailed;
    }
    Print(section, WantsColor(EColor::Auto, stdout));
    return ExitClean;
}

} // namespace Kesh::CommandLine
