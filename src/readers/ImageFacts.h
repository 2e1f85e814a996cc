// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

/// What the container of an image says of its pixels, and the blocks of metadata found in it. Each
/// format's reader fills in what its format states and leaves the rest as it is.
struct ImageFacts
{
    qint64 width = 0; ///< of the pixels as stored; 0 when not known
    qint64 height = 0;
    int depth = 0;       ///< bits per sample
    int orientation = 0; ///< as Exif counts it; 0 when the container does not turn the picture
    double dpiWidth = 0;
    double dpiHeight = 0;
    QString colorModel;           ///< "RGB", "Gray", "CMYK", "Lab"
    std::optional<bool> hasAlpha; ///< absent for formats that cannot carry alpha
    bool isIndexed = false;
    bool isFloat = false;
    bool isSrgb = false;      ///< says so without a profile
    QByteArray profile;       ///< the embedded ICC profile
    QByteArray exif;          ///< a TIFF structure with Exif data, without any prefix
    QByteArray xmp;           ///< a packet of XMP
    QVariantMap dictionaries; ///< the format's own categories: "{GIF}" ...
};

inline const QString kModelRgb = QStringLiteral("RGB");
inline const QString kModelGray = QStringLiteral("Gray");
inline const QString kModelCmyk = QStringLiteral("CMYK");
inline const QString kModelLab = QStringLiteral("Lab");
