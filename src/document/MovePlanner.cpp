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

MovePlanner::Plan MovePlanner::plan(const TFileItem &item, const TEvaluatedName &name,
                                    const TOptions &options)
{
    if (name.base.isNull())
        return {};
    const QString &oldName = item.url.lastPathComponent();
    if (name.tookTooLong)
        return {oldName, {}, text("The regular expression takes too long for this name."), false};
    if (options.keepUnchanged && name.fullName() == oldName)
        return {oldName, {}, {}, true};
    return decide(item, name);
}

MovePlanner::Plan MovePlanner::planAgain(const TFileItem &item, const TEvaluatedName &name,
                                         const QString &takenName)
{
    m_folders.taken(*item.url.folder(), takenName);
    return decide(item, name);
}

MovePlanner::Plan MovePlanner::decide(const TFileItem &item, const TEvaluatedName &name)
{
    const TFolder &folder = *item.url.folder();
    const QString &oldName = item.url.lastPathComponent();
    Plan plan;
    plan.finalName = name.fullName();
    plan.refusal = reasonToRefuseName(plan.finalName);
    // A name that can never stand in the folder is refused as it is, whatever is there. Dots alone
    // are tested with one more dot, like any name without extension: "." meets the parent folder.
    if (!plan.refusal.isEmpty() && plan.finalName != u"." && plan.finalName != u"..")
        return plan;
    const QString base = m_folders.uniqueBase(folder, name.base, name.extension);
    if (base != name.base) {
        plan.uniqueBase = base;
        plan.finalName = TEvaluatedName::joined(base, name.extension);
        plan.refusal = reasonToRefuseName(plan.finalName);
    }
    if (!plan.refusal.isEmpty())
        return plan;
    if (name.extension.isEmpty() && plan.finalName != oldName &&
        m_folders.exists(folder, plan.finalName) &&
        !m_folders.isOwnOtherSpelling(folder, oldName, plan.finalName))
        plan.refusal = textForErrno(EEXIST);
    else
        m_folders.moved(folder, oldName, plan.finalName);
    return plan;
}

void MovePlanner::takeBack(const TFileItem &item, const Plan &plan)
{
    if (plan.moves())
        m_folders.moved(*item.url.folder(), plan.finalName, item.url.lastPathComponent());
}
