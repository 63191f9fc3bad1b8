#include "SettingsDialog.h"

#include "Configuration/NamePresets.h"
#include "DialogSize.h"
#include "Texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>

namespace Kesh::Workbench {

namespace {

constexpr int MinColumnWidth = 75;
constexpr int MaxColumnWidth = 4000;

QPlainTextEdit* MakeNameEdit(const QStringList& names, const char* objectName)
{
    auto* edit = new QPlainTextEdit(names.join(QStringLiteral(" ")));
    edit->setObjectName(QLatin1String(objectName));
    edit->setTabChangesFocus(true);
    edit->setMaximumHeight(edit->fontMetrics().height() * 2);
    return edit;
}

QLabel* MakeNote(const char* text)
{
    auto* note = new QLabel(Tr(text));
    note->setWordWrap(true);
    // A form does not ask wrapped text for its height.
    const int width = note->fontMetrics().averageCharWidth() * 60;
    note->setMinimumSize(width, note->heightForWidth(width));
    return note;
}

} // namespace

CSettingsDialog::CSettingsDialog(const SChoices& choices, const std::vector<SLanguage>& languages,
                                 QWidget* parent)
    : QDialog(parent),
      m_language(new QComboBox),
      m_appearance(new QComboBox),
      m_fontSize(new QSpinBox),
      m_hotExit(new QCheckBox(Tr("&Keep unsaved changes when quitting, without asking"))),
      m_grammar(new QCheckBox(Tr("Check PHP against its whole &grammar"))),
      m_markup(new QCheckBox(Tr("Check HTML and CSS &beyond their names"))),
      m_checksMarkup(new QCheckBox(Tr("Check the &HTML and CSS of a project's files too"))),
      m_tags(MakeNameEdit(choices.customTags, "customTags")),
      m_attributes(MakeNameEdit(choices.customAttributes, "customAttributes"))
{
    setWindowTitle(Tr("Settings"));
    for (const SLanguage& language : languages) {
        m_language->addItem(language.title, language.name);
        if (language.name == choices.language)
            m_language->setCurrentIndex(m_language->count() - 1);
    }
    m_appearance->addItems({Tr("As the system"), Tr("Light"), Tr("Dark")});
    m_appearance->setCurrentIndex(static_cast<int>(choices.appearance));
    m_fontSize->setRange(6, 72);
    m_fontSize->setValue(choices.fontSize);
    m_fontSize->setSuffix(QStringLiteral(" pt"));

    m_hotExit->setObjectName(QStringLiteral("hotExit"));
    m_hotExit->setChecked(choices.hotExit);
    m_grammar->setObjectName(QStringLiteral("grammar"));
    m_grammar->setChecked(choices.grammar);
    m_markup->setObjectName(QStringLiteral("markup"));
    m_markup->setChecked(choices.markup);

    auto* widths = new QHBoxLayout;
    for (std::size_t column = 0; column < 3; ++column) {
        auto* width = new QSpinBox;
        width->setRange(MinColumnWidth, MaxColumnWidth);
        width->setValue(column < choices.columnWidths.size() ? choices.columnWidths[column] : MinColumnWidth);
        width->setSuffix(QStringLiteral(" px"));
        widths->addWidget(width);
        m_widths.push_back(width);
    }

    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->addRow(Tr("&Language:"), m_language);
    form->addRow(MakeNote("The language changes when the program is started again."));
    form->addRow(Tr("&Appearance:"), m_appearance);
    form->addRow(Tr("&Font size:"), m_fontSize);
    form->addRow(m_hotExit);
    form->addRow(m_grammar);
    form->addRow(m_markup);
    m_checksMarkup->setChecked(choices.checksMarkup);
    form->addRow(m_checksMarkup);
    form->addRow(new QLabel(Tr("Names of frameworks:")));
    form->addRow(MakePresets(choices.presets));
    form->addRow(Tr("Your own HTML &tags:"), m_tags);
    form->addRow(Tr("Your own HTML attrib&utes:"), m_attributes);
    form->addRow(MakeNote("Names that the HTML check accepts besides the standard ones, with blanks "
                          "between them; * stands for any characters: x:*. A change restarts the code "
                          "validator, which then checks the project anew."));
    auto* widthsTitle = new QLabel(Tr("&Columns of the error list:"));
    widthsTitle->setBuddy(m_widths.front());
    form->addRow(widthsTitle, widths);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(Tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(Tr("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // On a small screen the page scrolls, and the buttons stay.
    auto* scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll);
    layout->addWidget(buttons);
    page->ensurePolished();
    const QSize wanted = page->sizeHint() + QSize(scroll->verticalScrollBar()->sizeHint().width() + 24,
                                                  buttons->sizeHint().height() + 30);
    ResizeOnScreen(*this, wanted);
}

QLayout* CSettingsDialog::MakePresets(const QStringList& chosen)
{
    constexpr int Columns = 5;
    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(0);
    for (const Configuration::SNamePreset& preset : Configuration::NamePresets()) {
        const QString name = QString::fromUtf8(preset.name.data(), static_cast<int>(preset.name.size()));
        auto* box = new QCheckBox(name);
        box->setObjectName(QStringLiteral("preset ") + name);
        box->setChecked(chosen.contains(name));
        const int number = static_cast<int>(m_presets.size());
        grid->addWidget(box, number / Columns, number % Columns);
        m_presets.push_back(box);
    }
    return grid;
}

SChoices CSettingsDialog::GetChoices() const
{
    SChoices choices;
    choices.language = m_language->currentData().toString();
    choices.appearance = static_cast<EAppearance>(m_appearance->currentIndex());
    choices.fontSize = m_fontSize->value();
    choices.hotExit = m_hotExit->isChecked();
    choices.grammar = m_grammar->isChecked();
    choices.markup = m_markup->isChecked();
    choices.checksMarkup = m_checksMarkup->isChecked();
    choices.customTags = SplitNames(m_tags->toPlainText());
    choices.customAttributes = SplitNames(m_attributes->toPlainText());
    for (const QCheckBox* preset : m_presets)
        if (preset->isChecked())
            choices.presets.append(preset->text());
    for (const QSpinBox* width : m_widths)
        choices.columnWidths.push_back(width->value());
    return choices;
}

} // namespace Kesh::Workbench
