// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/MovePlanner.h"

#include "commonprocs/easyfile.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("MovePlanner", source);
}

} // namespace

MovePlanner::Plan MovePlanner::plan(const TFileItem &item, TEvaluatedName &name,
                                    const TOptions &options)
{
    Plan plan;
    if (name.tookTooLong) {
        plan.finalName = item.url.lastPathComponent();
        plan.refusal = text("The regular expression takes too long for this name.");
        return plan;
    }
    if (options.keepUnchanged && name.fullName() == item.url.lastPathComponent()) {
        plan.finalName = item.url.lastPathComponent();
        plan.unchanged = true;
        return plan;
    }
    return decide(item, name);
}

MovePlanner::Plan MovePlanner::planAgain(const TFileItem &item, TEvaluatedName &name,
                                         const QString &takenName)
{
    m_folders.taken(*item.url.folder(), takenName);
    return decide(item, name);
}

MovePlanner::Plan MovePlanner::decide(const TFileItem &item, TEvaluatedName &name)
{
    const TFolder &folder = *item.url.folder();
    const QString &oldName = item.url.lastPathComponent();
    Plan plan;
    // A name that can never stand in the folder is refused as it is, whatever is there.
    plan.finalName = name.fullName();
    plan.refusal = reasonToRefuseName(plan.finalName);
    if (plan.refusal.isEmpty()) {
        const QString base = m_folders.uniqueBase(folder, name.base, name.extension);
        plan.renamedForUniqueness = base != name.base;
        TRenameOperation::applyUniqueBase(name, removeExtensionFromFilename(oldName), base);
        plan.finalName = name.fullName();
        plan.refusal = reasonToRefuseName(plan.finalName);
    }
    if (!plan.refusal.isEmpty())
        return plan;
    if (!m_folders.canBeChanged(folder))
        plan.refusal = textForErrno(EACCES);
    else if (name.extension.isEmpty() && plan.finalName != oldName &&
             m_folders.exists(folder, plan.finalName))
        plan.refusal = textForErrno(EEXIST);
    else
        m_folders.moved(folder, oldName, plan.finalName);
    return plan;
}

void MovePlanner::takeBack(const TFileItem &item, const Plan &plan)
{
    m_folders.moved(*item.url.folder(), plan.finalName, item.url.lastPathComponent());
}
