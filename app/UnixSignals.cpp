// SPDX-License-Identifier: MIT
#include "app/UnixSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace glimmerpane
{

namespace
{

// A signal handler takes no user data, so the descriptor it writes to must be static.
volatile std::sig_atomic_t wakeUp = -1;

void handleSignal(int)
{
    const eventfd_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
}

} // namespace

void quitOnSignals(QObject *parent)
{
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto *const notifier = new QSocketNotifier(wakeUp, QSocketNotifier::Read, parent);
    QObject::connect(notifier, &QSocketNotifier::activated, parent, [notifier] {
        notifier->setEnabled(false);
        // Unlike quit(), this also ends the event loop of an open alert.
        QCoreApplication::exit(0);
    });
    struct sigaction action{};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    struct sigaction before{};
    sigaction(SIGHUP, &action, &before);
    if (before.sa_handler == SIG_IGN) { // as nohup has it
        sigaction(SIGHUP, &before, nullptr);
    }
}

} // namespace glimmerpane
