#pragma once

#include "LangSupport/Translations.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace Kesh::Workbench {

struct SLanguage
{
    QString name;  ///< as it is kept in the settings; "" is the system's
    QString title; ///< as its speakers call it
};

/// That of the system, English, the languages that come with the program, and those in the user's own folder.
std::vector<SLanguage> GetLanguages(const QString& userFolder);

/// The first of these languages ("de-AT", "en") that there is a translation for; "en" when there is none.
QString ChooseLanguage(const QStringList& wanted, const QString& userFolder);

/// The texts of a language; one in the user's folder precedes the program's own. Sets `problem`, and answers
/// English, when the file is missing or bad.
std::unique_ptr<LangSupport::CTranslations> LoadLanguage(const QString& name, const QString& userFolder,
                                                         QString& problem);

} // namespace Kesh::Workbench
