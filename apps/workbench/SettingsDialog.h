#pragma once

#include "Languages.h"
#include "Preferences.h"

#include <QDialog>
#include <vector>

class QCheckBox;
class QComboBox;
class QLayout;
class QPlainTextEdit;
class QSpinBox;

namespace Kesh::Workbench {

/// Lets the user change the choices. They take effect when the dialog is accepted, but for the language,
/// which needs a restart.
class CSettingsDialog final : public QDialog
{
    Q_OBJECT

public:
    CSettingsDialog(const SChoices& choices, const std::vector<SLanguage>& languages, QWidget* parent);

    SChoices GetChoices() const;

private:
    QLayout* MakePresets(const QStringList& chosen);

    QComboBox* m_language;
    QComboBox* m_appearance;
    QSpinBox* m_fontSize;
    QCheckBox* m_hotExit;
    QCheckBox* m_grammar;
    QCheckBox* m_markup;
    QCheckBox* m_checksMarkup;
    std::vector<QCheckBox*> m_presets;
    QPlainTextEdit* m_tags;
    QPlainTextEdit* m_attributes;
    std::vector<QSpinBox*> m_widths;
};

} // namespace Kesh::Workbench
