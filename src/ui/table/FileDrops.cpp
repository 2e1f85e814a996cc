// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileDrops.h"

#include "document/TDocumentDrag.h"

#include <QDropEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kUriList{"text/uri-list"};
constexpr QByteArrayView kFileScheme{"file:"};

bool isOwnRows(const QMimeData &data, const TDocument &document)
{
    return data.hasFormat(TDocumentDrag::fileTableType()) &&
           TDocumentDrag::documentUUID(data) == document.myUUID();
}

} // namespace

namespace FileDrops {

bool isWelcome(const QMimeData &data, const TDocument &document)
{
    if (data.hasFormat(TDocumentDrag::fileTableType()))
        return isOwnRows(data, document);
    return data.hasFormat(kUriList) && data.data(kUriList).contains(kFileScheme);
}

bool accept(QDropEvent &event, const TDocument &document)
{
    const Qt::DropActions possible = event.possibleActions();
    Qt::DropAction action = possible.testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
    if (isOwnRows(*event.mimeData(), document))
        action = Qt::MoveAction;
    // A file manager that may only move would take the files away from their places.
    if (!possible.testFlag(action)) {
        event.ignore();
        return false;
    }
    event.setDropAction(action);
    event.accept();
    return true;
}

} // namespace FileDrops
