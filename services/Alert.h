// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace glimmerpane
{

/** A question or message that the user must answer before going on. */
struct Alert {
    enum class Style {
        Informational,
        Warning,
    };

    QString messageText;
    QString informativeText;
    Style style = Style::Warning;
    QStringList buttons; ///< the first is the default
    bool escapesToFirst = false; ///< Escape presses the first button instead of the last
};

/** Shows alerts. Main thread. */
class AlertPresenterProtocol
{
public:
    virtual ~AlertPresenterProtocol() = default;

    /** Blocks until answered. Returns the index of the button, or -1 if closed without one. */
    virtual int runModal(const Alert &alert) = 0;
};

constexpr int firstAlertButton = 0;

} // namespace glimmerpane
