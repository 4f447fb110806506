// SPDX-License-Identifier: MIT
#pragma once

#include "model/AreaSize.h"

#include <QCoreApplication>
#include <QString>

#include <expected>
#include <optional>

class QCommandLineParser;

namespace glimmerpane
{

/** What the command line asks for about the area's size and about areas with names. */
struct AreaOptions {
    std::optional<QString> use; ///< a name, as are the next two
    std::optional<QString> saveAs;
    std::optional<QString> forget;
    std::optional<AreaSize> size;
    bool list = false;
    bool json = false; ///< for the list

    bool changeArea() const { return use || size; }
    /** Whether these concern only what is stored, so that no program need run. */
    bool concernOnlyStored() const { return !changeArea() && asksForSomething(); }
    bool asksForSomething() const { return changeArea() || saveAs || forget || list; }

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::AreaOptions)
};

/** Makes the parser know these options. */
void addAreaOptions(QCommandLineParser &parser);

/** Reads what was parsed. The error is for the user. */
std::expected<AreaOptions, QString> areaOptions(const QCommandLineParser &parser);

} // namespace glimmerpane
