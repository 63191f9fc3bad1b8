#pragma once

#include <QString>

class QWidget;

namespace Kesh::Workbench {

/// The questions that stop the work until the user has answered.
class IPrompts
{
public:
    enum class ESave { Save, Discard, Cancel };

    virtual ~IPrompts() = default;
    /// What to do with unsaved edits of these files.
    virtual ESave AskSave(const QStringList& names) = 0;
    /// Whether to go on with `action`.
    virtual bool Confirm(const QString& question, const QString& action) = 0;
    /// A path, or the empty text. `start` is the folder or file to begin with.
    virtual QString AskOpenFile(const QString& start) = 0;
    virtual QString AskFolder(const QString& start) = 0;
    virtual QString AskSaveName(const QString& start) = 0;
    /// A line number from 1 to `lines`, or 0.
    virtual int AskLine(int current, int lines) = 0;
};

/// Asks through dialogs over a window.
class CDialogPrompts final : public IPrompts
{
public:
    explicit CDialogPrompts(QWidget* window) : m_window(window) {}

    ESave AskSave(const QStringList& names) override;
    bool Confirm(const QString& question, const QString& action) override;
    QString AskOpenFile(const QString& start) override;
    QString AskFolder(const QString& start) override;
    QString AskSaveName(const QString& start) override;
    int AskLine(int current, int lines) override;

private:
    QWidget* m_window;
};

} // namespace Kesh::Workbench
