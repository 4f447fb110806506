// SPDX-License-Identifier: MIT
#include "storage/SwitchFile.h"

#include <QtConcurrent>

#include <utility>

namespace glimmerpane
{

namespace
{

constexpr auto on = "on";
constexpr auto off = "off";

} // namespace

SwitchFile::SwitchFile(SettingsFile file)
    : file_(std::move(file))
{
    thread_.setMaxThreadCount(1);
}

bool SwitchFile::isOn() const
{
    return file_.read() == QByteArray(on);
}

QFuture<void> SwitchFile::save(bool isOn)
{
    return QtConcurrent::run(&thread_,
                             [file = file_, isOn] { file.write(QByteArray(isOn ? on : off)); });
}

} // namespace glimmerpane
