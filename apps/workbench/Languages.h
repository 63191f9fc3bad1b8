#pragma once

#include "LangSupport/Translations.h"

#include <QString>
#include <memory>
#include <vector>

namespace Kesh::Workbench {

struct SLanguage
{
    QString name;  ///< as it is kept in the settings; "" is English
    QString title; ///< as its speakers call it
};

/// English, the languages that come with the program, and those in the user's own folder.
std::vector<SLanguage> GetLanguages(const QString& userFolder);

/// The texts of a language; one in the user's folder precedes the program's own. Sets `problem`, and answers
/// English, when the file is missing or bad.
std::unique_ptr<LangSupport::CTranslations> LoadLanguage(const QString& name, const QString& userFolder,
                                                         QString& problem);

} // namespace Kesh::Workbench
