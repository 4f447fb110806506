// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"

#include <QByteArray>

#include <optional>

namespace glimmerpane
{

/** One compact JSON object; every number reads back bit for bit. Null if a field is not finite. */
std::optional<QByteArray> toJson(const CaptureFrame &frame);

/** Null unless `json` is an object whose four members are numbers; other members are ignored. */
std::optional<CaptureFrame> captureFrameFromJson(const QByteArray &json);

} // namespace glimmerpane
