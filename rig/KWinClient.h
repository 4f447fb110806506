// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace glimmerpane::testing
{

/**
 * What Plasma's own programs may do with KWin: list the windows, record one, move the pointer.
 * Every call returns after KWin has handled it.
 */
class KWinClient
{
public:
    struct Window {
        QString id;
        QString title;
        QRect geometry; ///< KWin's units
        std::uint32_t state = 0; ///< bits of org_kde_plasma_window_management_state
        bool isOffered() const; ///< to viewers, by the portal's dialog
    };

    /** `socket` is the path of KWin's socket. Throws a Failure. */
    explicit KWinClient(const QString &socket);
    ~KWinClient();
    Q_DISABLE_COPY_MOVE(KWinClient)

    std::optional<Window> window(const QString &title) const;
    /** The node of PipeWire with its pictures, until this object ends. */
    uint record(const Window &window) const;

    void moveTo(QPoint place) const;
    void press() const { button(true); } ///< the left button
    void release() const { button(false); }

private:
    struct Connection;
    void button(bool isPressed) const;

    std::unique_ptr<Connection> connection_;
};

} // namespace glimmerpane::testing
