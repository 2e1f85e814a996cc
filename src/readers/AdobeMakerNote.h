// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// The camera's maker note, which a DNG keeps in its private data, as a small TIFF structure of its
/// own in which the note lies where it lay in the camera's file, so that its offsets hold. Empty
/// when there is none.
QByteArray tiffOfAdobeMakerNote(const QByteArray &privateData, const QByteArray &make);
