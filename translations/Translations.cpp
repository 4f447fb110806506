// SPDX-License-Identifier: MIT
#include "translations/Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>
#include <optional>

namespace glimmerpane
{

namespace
{

QString catalogue(const QString &language)
{
    return QStringLiteral(":/translations/glimmerpane_%1.qm").arg(language);
}

/**
 * Null for English, whose texts are in the code, so that a preference for it over other languages
 * is respected.
 */
std::optional<QString> languageFor(const QLocale &locale)
{
    if (locale.language() == QLocale::C) {
        return std::nullopt; // LC_ALL=C overrides LANGUAGE, as in gettext
    }
    for (const QString &name : locale.uiLanguages()) {
        QString language = name.section(u'-', 0, 0);
        if (language == u"en") {
            return std::nullopt;
        }
        if (QFile::exists(catalogue(language))) {
            return language;
        }
    }
    return std::nullopt;
}

void install(const QString &file, const QString &folder = {})
{
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (translator->load(file, folder)) {
        QCoreApplication::installTranslator(translator.release());
    }
}

} // namespace

void installTranslations(const QLocale &locale)
{
    if (const auto language = languageFor(locale)) {
        install(QStringLiteral("qtbase_") + *language,
                QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        install(catalogue(*language));
    }
}

} // namespace glimmerpane
