#include "Languages.h"

#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Texts.h"

#include <QDir>
#include <QFile>
#include <QLocale>

/// In a static library resources stay out unless they are asked for; Q_INIT_RESOURCE wants no namespace.
static void InitResources()
{
    Q_INIT_RESOURCE(workbenchresources);
    Q_INIT_RESOURCE(documents);
}

namespace Kesh::Workbench {

namespace {

const QString English = QStringLiteral("en");
const QString OwnFolder = QStringLiteral(":/translations");
/// A translation is data that a person wrote; a longer file is something else.
constexpr qint64 MaxTranslationBytes = 4 << 20;

} // namespace

std::vector<SLanguage> GetLanguages(const QString& userFolder)
{
    InitResources();
    QStringList names;
    for (const QString& folder : {OwnFolder, userFolder})
        for (const QString& file : QDir(folder).entryList({"*.json"}, QDir::Files, QDir::Name))
            names.append(file.chopped(5));
    names.removeDuplicates();
    std::vector<SLanguage> languages{{QString(), Tr("As the system")}, {English, QStringLiteral("English")}};
    for (const QString& name : names) {
        const QString native = QLocale(name).nativeLanguageName();
        languages.push_back({name, native.isEmpty() ? name : native});
    }
    return languages;
}

QString ChooseLanguage(const QStringList& wanted, const QString& userFolder)
{
    InitResources();
    const auto exists = [&](const QString& name) {
        return QFile::exists(userFolder + '/' + name + QStringLiteral(".json")) ||
               QFile::exists(OwnFolder + '/' + name + QStringLiteral(".json"));
    };
    for (QString full : wanted) {
        full.replace('_', '-');
        const QString language = full.section('-', 0, 0);
        for (const QString& name : {full, language})
            if (name != "C" && exists(name))
                return name;
        if (language == English || language == "C")
            break;
    }
    return English;
}

std::unique_ptr<LangSupport::CTranslations> LoadLanguage(const QString& chosen, const QString& userFolder,
                                                         QString& problem)
{
    const QString name =
        chosen.isEmpty() ? ChooseLanguage(QLocale::system().uiLanguages(), userFolder) : chosen;
    if (name == English)
        return std::make_unique<LangSupport::CTranslations>();
    InitResources();
    for (const QString& folder : {userFolder, OwnFolder}) {
        QFile file(folder + '/' + name + QStringLiteral(".json"));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        try {
            return std::make_unique<LangSupport::CTranslations>(file.read(MaxTranslationBytes).toStdString());
        } catch (const Base::CWorkError& fault) {
            problem = file.fileName() + QStringLiteral(": ") + QString::fromStdWString(fault.GetMessage());
            return std::make_unique<LangSupport::CTranslations>();
        }
    }
    problem = name + QStringLiteral(": there is no such translation");
    return std::make_unique<LangSupport::CTranslations>();
}

} // namespace Kesh::Workbench
