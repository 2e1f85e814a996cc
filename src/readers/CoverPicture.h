// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// The picture that an audio or video file carries, as its encoded bytes (JPEG, PNG ...): the front
/// cover where the format tells, else the first picture. Empty when there is none or it exceeds
/// 64 MiB. Goes by contents and opens no other file, as readMedia. Never throws.
QByteArray readCoverPicture(const QByteArray &path);
